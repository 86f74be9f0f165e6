#pragma once

#include "library/Database.h"
#include "tokens/TokenParser.h"

#include <functional>
#include <string>
#include <vector>

namespace tessera {

// Candidate paths from the TAB-separated patterns; as typed when no album is given.
std::vector<std::string> expandArtworkPatterns(const TokenParser& tokens, std::string_view patterns,
                                               const Album* album);

// True when the file is a picture that drawing will be able to decode.
using PictureCheck = std::function<bool(const std::string& path)>;

// Finds a cover for every album. Answers 1 for each album that got a path, and 1 more when the
// picture could be decoded.
std::int32_t locateAllArtwork(Library& library, const TokenParser& tokens, std::string_view patterns,
                              const PictureCheck& isPicture, JobContext& context);

} // namespace tessera
