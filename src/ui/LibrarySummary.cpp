#include "ui/LibrarySummary.h"

#include "base/Text.h"
#include "ui/Colours.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

#include <string>

namespace tessera {

namespace {

constexpr int kPadding = 12;

std::string counted(std::size_t count, const char* noun)
{
    return format("%u %s%s", static_cast<unsigned>(count), noun, count == 1 ? "" : "s");
}

struct Lines {
    std::string heading;
    std::string text;
};

Lines linesFor(std::size_t albums, std::size_t artists)
{
    if (albums == 0)
        return {"No albums to show yet",
                "Create an album database from your music library, or open one, with the "
                "buttons at the top left."};
    return {counted(albums, "album") + " by " + counted(artists, "artist"), ""};
}

int drawCentred(HDC dc, HFONT font, const std::string& text, RECT place)
{
    const SelectScope selected(dc, font);
    return drawFormatted(dc, text, place, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
}

} // namespace

void LibrarySummary::count(const Library& library)
{
    m_albums = library.albums.size();
    m_artists = library.artists.size();
}

void LibrarySummary::draw(HDC dc, const RECT& place, Commands& commands) const
{
    const Lines lines = linesFor(m_albums, m_artists);
    const DcScope restore(dc);
    SetBkMode(dc, TRANSPARENT);
    const int padding = scaled(kPadding, dc);
    RECT line = place;
    InflateRect(&line, -padding, 0);
    // A little above the middle looks centred.
    line.top += (place.bottom - place.top) * 2 / 5;
    SetTextColor(dc, commands.treeText());
    line.top += drawCentred(dc, commands.boldListFont(), lines.heading, line) + padding / 2;
    SetTextColor(dc, mixed(commands.treeText(), commands.treeBackground(), 35));
    drawCentred(dc, commands.comboFont(), lines.text, line);
}

} // namespace tessera
