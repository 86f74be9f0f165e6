#pragma once

#include "base/Files.h"

#include <atomic>
#include <functional>

namespace tessera {

// Scanners and indexers hold a file for a moment when it was just written or closed. What opens or renames
// is tried again meanwhile, for two seconds at most and not after `terminating` was set; all else goes
// straight to the files that are given.
class PatientFiles final : public FileSystem {
public:
    // `beforePause`, if any, is called before each pause, which takes 20 ms.
    PatientFiles(FileSystem& files, const std::atomic<bool>& terminating,
                 std::function<void()> beforePause = {})
        : m_files(files), m_terminating(terminating), m_beforePause(std::move(beforePause))
    {
    }

    bool exists(const std::string& path) override { return m_files.exists(path); }
    std::optional<FileInfo> info(const std::string& path) override { return m_files.info(path); }
    std::optional<std::vector<std::uint8_t>> readAll(const std::string& path) override;
    std::optional<std::vector<std::uint8_t>> readBeginning(const std::string& path, std::size_t most) override
    {
        return m_files.readBeginning(path, most);
    }
    std::unique_ptr<OutputFile> create(const std::string& path) override;
    std::unique_ptr<OutputFile> createNew(const std::string& path) override;
    std::unique_ptr<OutputFile> openForUpdate(const std::string& path) override;
    bool rename(const std::string& from, const std::string& to) override;
    bool remove(const std::string& path) override { return m_files.remove(path); }
    bool removeTemporary(const std::string& path) override { return m_files.removeTemporary(path); }
    std::optional<std::string> findFirst(const std::string& pattern) override
    {
        return m_files.findFirst(pattern);
    }
    std::vector<std::string> findAll(const std::string& pattern) override { return m_files.findAll(pattern); }
    bool heldByAnother() const override { return m_files.heldByAnother(); }

private:
    template <class Call>
    auto patiently(Call call);

    FileSystem& m_files;
    const std::atomic<bool>& m_terminating;
    std::function<void()> m_beforePause;
};

} // namespace tessera
