#pragma once

#include "library/Database.h"
#include "ports/Host.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace tessera::bench {

// A made-up music library of a given size: twelve tracks an album or so, four albums an artist,
// every tenth album a compilation. Everything follows from the index.
struct Shape {
    std::int32_t tracks = 100000;
    std::int32_t albums = 8400;
};

inline Shape shapeOf(std::int32_t tracks)
{
    return {tracks, static_cast<std::int32_t>(std::int64_t{tracks} * 8400 / 100000)};
}

class GeneratedLibrary {
public:
    explicit GeneratedLibrary(Shape shape) : m_shape(shape) {}

    Shape shape() const { return m_shape; }
    std::int32_t artists() const { return (m_shape.albums + 3) / 4; }
    std::int32_t firstTrack(std::int32_t album) const; // tracks of an album are consecutive
    std::int32_t albumOf(std::int32_t track) const;

    std::string artist(std::int32_t album) const;
    std::string title(std::int32_t album) const;
    std::string folder(std::int32_t album) const;
    std::string fileName(std::int32_t track) const;

    // A database file of the library without covers, written piece by piece.
    void writeFile(const std::string& fileName) const;

private:
    Shape m_shape;
};

// A message is an error of the bench.
class NoPrompt : public Prompt {
public:
    void message(Severity severity, const std::string& text) override;
    void assertion(const std::string& expression, const std::string& unit, unsigned long line) override;
};

struct Surroundings {
    SilentLog log;
    NoPrompt prompt;
    std::atomic<bool> terminating{false};
    JobContext context(FileSystem& files) { return {files, log, prompt, terminating}; }
};

// Knows every file, and hands out one and the same object.
class OneFileHost : public Host {
public:
    OneFileHost();
    std::unique_ptr<HostPlayback> playback() override { return nullptr; }
    std::unique_ptr<HostFiles> search(const std::string&) override { return nullptr; }
    std::unique_ptr<HostPlaylist> playlist() override { return nullptr; }
    HostFilePtr file(const std::string&) override { return m_file; }
    void drawSkin(std::int32_t) override {}
    std::int32_t skin(std::int32_t, std::int32_t) override { return 0; }
    std::int32_t colour(std::string_view, std::string_view) override { return -1; }

private:
    HostFilePtr m_file;
};

// Where files go that nobody reads: the build without the disk.
class NullFiles : public FileSystem {
public:
    bool exists(const std::string&) override { return false; }
    std::optional<FileInfo> info(const std::string&) override { return std::nullopt; }
    std::optional<std::vector<std::uint8_t>> readAll(const std::string&) override { return std::nullopt; }
    std::optional<std::vector<std::uint8_t>> readBeginning(const std::string&, std::size_t) override
    {
        return std::nullopt;
    }
    std::unique_ptr<OutputFile> create(const std::string&) override;
    std::unique_ptr<OutputFile> createNew(const std::string& path) override { return create(path); }
    std::unique_ptr<OutputFile> openForUpdate(const std::string&) override { return nullptr; }
    bool rename(const std::string&, const std::string&) override { return true; }
    bool remove(const std::string&) override { return true; }
    bool removeTemporary(const std::string&) override { return true; }
    std::optional<std::string> findFirst(const std::string&) override { return std::nullopt; }
    std::vector<std::string> findAll(const std::string&) override { return {}; }
    bool heldByAnother() const override { return false; }
};

} // namespace tessera::bench
