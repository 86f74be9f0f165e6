#pragma once

#include "jukebox/Player.h"
#include "jukebox/Skin.h"
#include "windowing/Control.h"
#include "windowing/Drawing.h"
#include "windowing/Window.h"

#include <array>

namespace tessera::jukebox {

// The strip with the five buttons, what is playing, and how far it has come. Buttons go to the
// parent as commands.
class TransportBar : public Mapped<TransportBar> {
public:
    TransportBar(const Library& library, Player& player, const Palette& colours)
        : m_library(library), m_player(player), m_colours(colours)
    {
    }
    static std::span<const MapEntry<TransportBar>> messageMap();

    int height() const { return scaled(58, handle()); }
    // Shows what the player does now.
    void refresh();

protected:
    WindowClass windowClass() const override { return {"MJTransport", CS_DBLCLKS | CS_HREDRAW}; }

private:
    static constexpr std::size_t kButtonCount = 5;

    Handled onCreate(const Message& message);
    Handled onSize(const Message& message);
    Handled onErase(const Message&) { return 1; }
    Handled onPaint(const Message& message);
    Handled onDrawItem(const Message& message);
    Handled onCommand(const Message& message);
    Handled onLeftButton(const Message& message);

    void drawButton(const DRAWITEMSTRUCT& item) const;
    void drawTexts(HDC dc, const RECT& place) const;
    void drawProgress(HDC dc) const;
    RECT progressPlace() const;
    RECT textPlace() const;
    std::string timeText() const;

    const Library& m_library;
    Player& m_player;
    Palette m_colours;
    NowPlaying m_now;
    std::array<Button, kButtonCount> m_buttons;
    ToolTip m_tips;
    FontHandle m_titleFont;
    FontHandle m_textFont;
};

} // namespace tessera::jukebox
