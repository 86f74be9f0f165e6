#pragma once

#include "base/Text.h"

#include <string_view>

namespace tessera {

// Calls `each` with every line of a text file, trailing white space removed.
template <class Each>
void forEachLine(std::string_view text, Each each)
{
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        each(trimRight(text.substr(0, end)));
        if (end == std::string_view::npos)
            return;
        text.remove_prefix(end + 1);
    }
}

inline bool isBlankOrComment(std::string_view line)
{
    return line.empty() || line.front() == ';' || line.front() == '#';
}

} // namespace tessera
