#pragma once

#include "library/Records.h"
#include "ui/FittedLine.h"

#include <array>
#include <unordered_map>

namespace tessera {

// The texts of the details view as its columns have room for them. Made when a row is first drawn;
// those of rows that were drawn long ago are dropped.
class AlbumRows {
public:
    using Row = std::array<FittedLine, kColumnCount>;
    using Widths = std::array<int, kColumnCount>; // of the texts, pixels

    // What was made for other widths is dropped.
    void setWidths(const Widths& widths);
    void drop(std::uint32_t place) { m_rows.erase(place); }
    void clear() { m_rows.clear(); }
    // `dc` has the font selected. Valid until the next call.
    const Row& row(std::uint32_t place, Album& album, HDC dc);

private:
    Widths m_widths{};
    std::unordered_map<std::uint32_t, Row> m_rows; // by the album's place in the catalogue
};

} // namespace tessera
