#pragma once

#include "library/Records.h"
#include "ui/FittedLine.h"

#include <string>
#include <vector>

namespace tessera {

class TokenParser;

// The caption lines of a picture view, each cut with an ellipsis where the cell ends. Made once per
// album and kept until they are dropped.
class AlbumCaptions {
public:
    using Lines = std::vector<FittedLine>;

    explicit AlbumCaptions(const TokenParser& tokens) : m_tokens(tokens) {}

    // Another template, cell or number of albums: what was made is dropped. Lines that do not fit as
    // a whole are not there; that may be all.
    void reset(std::string pattern, int width, int mostLines, std::size_t albums);
    void drop(std::size_t place)
    {
        if (place < m_captions.size())
            m_captions[place].clear();
    }
    // `dc` has the font of the captions selected.
    const Lines& lines(std::size_t place, const Album& album, HDC dc);

private:
    Lines make(const Album& album, HDC dc) const;

    const TokenParser& m_tokens;
    std::string m_pattern;
    int m_width = 0;
    std::size_t m_mostLines = 0;
    std::vector<Lines> m_captions; // empty: not made yet
};

} // namespace tessera
