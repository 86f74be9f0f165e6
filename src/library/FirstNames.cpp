#include "library/FirstNames.h"

#include "library/Lines.h"

namespace tessera {

std::set<std::string> parseFirstNames(std::string_view bytes)
{
    const std::string text = textOfFile(bytes);
    std::set<std::string> names;
    forEachLine(text, [&](std::string_view line) {
        if (!isBlankOrComment(line))
            names.insert(toUpper(line));
    });
    return names;
}

} // namespace tessera
