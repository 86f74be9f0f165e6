#pragma once

#include "jukebox/Player.h"
#include "jukebox/Skin.h"
#include "windowing/Drawing.h"
#include "windowing/ListView.h"
#include "windowing/Window.h"

namespace tessera::jukebox {

// The playlist as a table; the entry that plays is marked. A double click or Enter plays.
class PlaylistView : public Mapped<PlaylistView> {
public:
    PlaylistView(const Library& library, Player& player, const Palette& colours)
        : m_library(library), m_player(player), m_colours(colours)
    {
    }
    static std::span<const MapEntry<PlaylistView>> messageMap();

    // Shows the playlist as it is now.
    void refresh();
    HWND list() const { return m_list.handle(); }

protected:
    WindowClass windowClass() const override { return {"MJPlaylist"}; }

private:
    Handled onCreate(const Message& message);
    Handled onSize(const Message& message);
    Handled onErase(const Message&) { return 1; }
    Handled onSetFocus(const Message& message);
    Handled onDisplayInfo(NMHDR& header);
    Handled onDraw(NMHDR& header);
    Handled onActivate(NMHDR& header);

    std::string cell(std::int32_t row, int column) const;
    void fitColumns();

    const Library& m_library;
    Player& m_player;
    Palette m_colours;
    ListView m_list;
    FontHandle m_boldFont;
    std::int32_t m_current = -1; // the row that is marked
    std::string m_cellText;      // lives until the list asks again
};

} // namespace tessera::jukebox
