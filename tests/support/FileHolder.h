#pragma once

#include <string>
#include <thread>
#include <windows.h>

namespace tessera::test {

// As a scanner does: opens a file that is there, shares it with nobody, and lets go after a while.
class FileHolder {
public:
    FileHolder(const std::string& path, DWORD milliseconds)
        : m_file(CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)),
          m_thread([file = m_file, milliseconds] {
              Sleep(milliseconds);
              CloseHandle(file);
          })
    {
    }
    ~FileHolder() { m_thread.join(); }
    FileHolder(const FileHolder&) = delete;
    FileHolder& operator=(const FileHolder&) = delete;

    bool holds() const { return m_file != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_file;
    std::thread m_thread;
};

} // namespace tessera::test
