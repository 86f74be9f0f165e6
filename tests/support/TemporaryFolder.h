#pragma once

#include <filesystem>
#include <string>

namespace tessera {

// A folder of the running test's own, empty at first and gone with the object.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::string& name)
        : m_path(std::filesystem::temp_directory_path() / ("tessera-" + name))
    {
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path() const { return m_path.string(); }
    // With a backslash between, as the product writes paths.
    std::string file(const std::string& name) const { return path() + "\\" + name; }

private:
    std::filesystem::path m_path;
};

} // namespace tessera
