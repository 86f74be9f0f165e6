#pragma once

#include "library/Database.h"

#include <memory>
#include <string>

namespace tessera {

// A file that is written under a temporary name beside its target and takes its place when it is
// whole; removed otherwise.
class NewFile {
public:
    NewFile(FileSystem& files, const std::string& target);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    // False when the folder refuses the temporary file, or the target may not be replaced.
    bool isOpen() const { return m_output != nullptr; }
    OutputFile& output() { return *m_output; }
    // Closes the file and puts it in the target's place; the previous file becomes `previousName`
    // unless that is empty. False when the system refused; the target is then as it was.
    bool takePlace(const std::string& previousName);

private:
    FileSystem& m_files;
    std::string m_target;
    std::string m_temporary;
    std::unique_ptr<OutputFile> m_output;
    bool m_remove = false;
};

// Writes the sections of a database. Each step answers false when the file refused it.
class DatabaseWriter {
public:
    DatabaseWriter(Library& library, std::uint32_t flags, OutputFile& file, JobContext& context)
        : m_library(library), m_flags(flags), m_file(file), m_writer(file), m_context(context)
    {
    }

    // Everything, to the medium. A missing thumbnail file is told and leaves its record short.
    bool write();

private:
    bool writeHeader();
    bool writeTracks();
    bool writeAlbums();
    bool writeArtists();
    bool writeImages();
    void writeImage(Album& album);

    Library& m_library;
    std::uint32_t m_flags;
    OutputFile& m_file;
    BufferedWriter m_writer;
    JobContext& m_context;
};

// One record, its flags as they stand.
void writeAlbum(BufferedWriter& writer, const Album& album);

// Number of albums with an image.
std::uint32_t imageCount(const Library& library);

} // namespace tessera
