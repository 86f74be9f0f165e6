#pragma once

#include "library/Database.h"
#include "library/Format.h"
#include "library/KeptDatabases.h"

#include <memory>
#include <string>

namespace tessera {

// A file that is written under a temporary name beside its target, which nobody can foresee, and takes its
// place when it is whole; removed otherwise.
class NewFile {
public:
    NewFile(FileSystem& files, const std::string& target);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    // False when the folder refuses the temporary file, or the target may not be replaced.
    bool isOpen() const { return m_output != nullptr; }
    OutputFile& output() { return *m_output; }
    const std::string& temporaryName() const { return m_temporary; }
    struct Outcome {
        bool placed = false;  // else the new file is complete under its temporary name
        std::string previous; // then: the target's name when it could not be put back
    };
    // Closes the file and puts it in the target's place, which becomes what the plan says.
    Outcome takePlace(const Replacement& plan);

private:
    const std::string* keepTarget(const Replacement& plan, bool moved);

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
        : m_library(library),
          m_flags(flags),
          m_file(file),
          m_writer(file, kBuffer, ts2::kLargestFile),
          m_context(context)
    {
    }

    // Everything, to the medium. A missing thumbnail file is told and leaves its record short.
    bool write();
    // Whether it was refused because no load could hold the file.
    bool tooLarge() const { return m_writer.tooLarge(); }

private:
    static constexpr std::size_t kBuffer = std::size_t{64} * 1024;

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
