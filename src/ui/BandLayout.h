#pragma once

#include "windowing/ToolBar.h"

#include <vector>

namespace tessera {

// Keeps a rebar's bands in one row of a given height: the first one takes what the others leave,
// and where room is short the last ones give way first.
class BandLayout {
public:
    explicit BandLayout(const ReBar& rebar) : m_rbr(rebar) {}

    // Widths of the child in pixels: what it likes to have, what it can live with.
    void add(const Control& child, const char* title, int ideal, int least);
    // Grows the last band until the row is that high; the others are centred beside it.
    void fillHeight(int height) const;
    void fitWidth(int width) const;
    void setColours(COLORREF background) const;

private:
    struct Widths {
        int ideal;
        int least;
    };

    REBARBANDINFOA band(std::size_t index, UINT mask) const;
    void setBand(std::size_t index, const REBARBANDINFOA& band) const;
    int headerWidth(std::size_t index) const;

    const ReBar& m_rbr;
    std::vector<Widths> m_bands;
};

} // namespace tessera
