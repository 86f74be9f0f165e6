#pragma once

#include "library/Records.h"

#include <cstddef>
#include <windows.h>

namespace tessera {

class Commands;

// What a pane says about the library as a whole: how many albums and artists there are, or how
// to begin when there are none. Counts once, so that painting needs no record.
class LibrarySummary {
public:
    void count(const Library& library);
    void clear() { *this = {}; }
    std::size_t albums() const { return m_albums; }
    // In the middle of the place, on the background that is there.
    void draw(HDC dc, const RECT& place, Commands& commands) const;

private:
    std::size_t m_albums = 0;
    std::size_t m_artists = 0;
};

} // namespace tessera
