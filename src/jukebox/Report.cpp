#include "jukebox/Report.h"

#include "base/Clock.h"
#include "base/Text.h"

#include <cstdio>

namespace tessera::jukebox {

Report::Report() : m_start(tickCount()) {}

unsigned Report::elapsedMs() const
{
    return tickCount() - m_start;
}

void Report::step(const std::string& text)
{
    print(format("[%7.3f s] ", elapsedMs() / 1000.0) + text);
}

void Report::message(const std::string& text)
{
    print("message: " + onOneLine(text));
}

void Report::line(const std::string& text)
{
    print(text);
}

void Report::print(const std::string& text)
{
    const std::lock_guard guard(m_lock);
    std::fprintf(stdout, "%s\n", text.c_str());
    std::fflush(stdout);
}

std::string onOneLine(const std::string& text)
{
    std::string line;
    for (const char letter : text) {
        if (letter == '\n') {
            line += "\\n";
        } else if (letter != '\r') {
            line += letter;
        }
    }
    return line;
}

} // namespace tessera::jukebox
