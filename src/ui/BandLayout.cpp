#include "ui/BandLayout.h"

#include "ui/Colours.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr int kBandBorders = 8; // of a band with an edge round its child

REBARBANDINFOA emptyBand(UINT mask)
{
    REBARBANDINFOA band{};
    band.cbSize = REBARBANDINFOA_V6_SIZE;
    band.fMask = mask;
    return band;
}

} // namespace

void BandLayout::add(const Control& child, const char* title, int ideal, int least)
{
    const RECT own = child.rect();
    if (m_rbr.addBand({child.handle(), title, ideal, least, static_cast<int>(own.bottom - own.top)}))
        m_bands.push_back({ideal, least});
}

REBARBANDINFOA BandLayout::band(std::size_t index, UINT mask) const
{
    REBARBANDINFOA band = emptyBand(mask);
    m_rbr.send(RB_GETBANDINFOA, index, reinterpret_cast<LPARAM>(&band));
    return band;
}

void BandLayout::setBand(std::size_t index, const REBARBANDINFOA& band) const
{
    m_rbr.send(RB_SETBANDINFOA, index, reinterpret_cast<LPARAM>(&band));
}

int BandLayout::headerWidth(std::size_t index) const
{
    return static_cast<int>(band(index, RBBIM_HEADERSIZE).cxHeader) + kBandBorders;
}

void BandLayout::fillHeight(int height) const
{
    const int missing = height - m_rbr.height();
    if (m_bands.empty() || missing <= 0)
        return;
    REBARBANDINFOA last = band(m_bands.size() - 1, RBBIM_CHILDSIZE);
    last.cyMinChild += static_cast<UINT>(missing);
    setBand(m_bands.size() - 1, last);
}

void BandLayout::fitWidth(int width) const
{
    int left = width;
    for (std::size_t index = 0; index < m_bands.size(); ++index)
        left -= headerWidth(index) + m_bands[index].ideal;
    for (std::size_t index = m_bands.size(); index-- > 0;) {
        const Widths& widths = m_bands[index];
        const int change =
            index == 0 && left > 0 ? left : std::max(std::min(left, 0), widths.least - widths.ideal);
        // A rebar shrinks bands to their least width sooner than it grants them what they ask for.
        REBARBANDINFOA sized = band(index, RBBIM_CHILDSIZE);
        sized.fMask |= RBBIM_SIZE;
        sized.cxMinChild = static_cast<UINT>(index == 0 ? widths.least : widths.ideal + change);
        sized.cx = static_cast<UINT>(headerWidth(index) + widths.ideal + change);
        setBand(index, sized);
        left -= change;
    }
}

void BandLayout::setColours(COLORREF background) const
{
    REBARBANDINFOA coloured = emptyBand(RBBIM_COLORS);
    coloured.clrBack = background;
    coloured.clrFore = readableOn(background);
    for (std::size_t index = 0; index < m_bands.size(); ++index)
        setBand(index, coloured);
    m_rbr.send(RB_SETBKCOLOR, 0, static_cast<LPARAM>(background));
}

} // namespace tessera
