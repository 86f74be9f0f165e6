#pragma once

#include "library/Records.h"

#include <string>
#include <string_view>
#include <vector>

namespace tessera {

class TokenParser;

// One line for each track, an empty one before a new disc, every line ending with LF. Tracks whose
// lines would be below the last line that is allowed, and those from the first on whose host file
// fails or is missing, are not read: "... and N more" stands for them. "" when no track was read.
std::string balloonBody(const std::vector<Track*>& tracks, std::string_view trackTokens,
                        const TokenParser& parser, int maximumLines);

// Cut at LF, CR LF and CR; a break at the end starts no line.
std::vector<std::string> textLines(std::string_view text);

} // namespace tessera
