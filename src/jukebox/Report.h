#pragma once

#include <mutex>
#include <string>

namespace tessera::jukebox {

// The lines that a walk prints, each flushed at once; any thread may print. Texts are UTF-8.
class Report {
public:
    Report();
    void step(const std::string& text);    // "[  1.234 s] text"
    void message(const std::string& text); // "message: text", line breaks as \n
    void line(const std::string& text);
    unsigned elapsedMs() const;

private:
    void print(const std::string& text);
    std::mutex m_lock; // guards the standard output
    unsigned m_start;
};

// Line breaks become \n, carriage returns go.
std::string onOneLine(const std::string& text);

} // namespace tessera::jukebox
