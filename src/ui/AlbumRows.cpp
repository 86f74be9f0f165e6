#include "ui/AlbumRows.h"

namespace tessera {

namespace {

constexpr std::size_t kMostRows = 1000; // some screens full

} // namespace

void AlbumRows::setWidths(const Widths& widths)
{
    if (widths == m_widths)
        return;
    m_widths = widths;
    clear();
}

const AlbumRows::Row& AlbumRows::row(std::uint32_t place, Album& album, HDC dc)
{
    if (m_rows.size() == kMostRows && !m_rows.contains(place))
        clear();
    const auto [found, isNew] = m_rows.try_emplace(place);
    if (isNew) {
        const auto& texts = columnTexts(album);
        for (std::size_t column = 0; column < kColumnCount; ++column)
            found->second[column] = fitLine(dc, texts[column], m_widths[column]);
    }
    return found->second;
}

} // namespace tessera
