#pragma once

#include "artwork/Covers.h"
#include "ui/BalloonWindow.h"
#include "windowing/Window.h"

namespace tessera {

class Commands;

// What lies under the pointer: an album and its item in screen coordinates; no album: nothing.
struct BalloonTarget {
    Album* album = nullptr;
    RECT item{};
};

// The balloon of the album that the pointer rests on. Hears what goes on in the list while it is
// shown: a click, a key, scrolling and leaving the item close it.
class AlbumBalloon final : public Mapped<AlbumBalloon, Subclass>, private CoverListener {
public:
    static std::span<const MapEntry<AlbumBalloon>> messageMap();

    explicit AlbumBalloon(Commands& commands);
    ~AlbumBalloon() override;

    // Every tick of the pane's cursor tracking, with the list's item below the pointer (a list-view
    // hit test; whether the list is what the user sees there is looked up here). Opens no box.
    void track(HWND list, const BalloonTarget& target, POINT screen, bool moved);
    // Also when the pane hides, its records go or its items change.
    void hide();
    bool isShown() const { return m_window.handle() != nullptr; }
    const BalloonWindow& window() const { return m_window; }

private:
    bool mayShow(const BalloonTarget& target) const;
    void showAlbumBalloon(HWND list, const BalloonTarget& target, POINT anchor);
    bool createAlbumBalloon(HWND list, const BalloonTarget& target, POINT anchor);
    IconHandle albumIcon(Album& album) const;
    void coversArrived(const std::vector<Album*>& albums) override;
    void imageListsRebuilt() override {}
    Handled onInput(const Message& message);
    Handled onMouseMove(const Message& message);
    Handled onGone(const Message& message);

    Commands& m_commands;
    BalloonWindow m_window;
    Album* m_album = nullptr;       // of the balloon that is shown
    const void* m_rested = nullptr; // the album whose rest is over: no second balloon before it is left
    RECT m_item{};                  // of the balloon that is shown, on screen
    DWORD m_deadline = 0;           // tick count that the next balloon waits for; 0: none
    bool m_busy = false;            // host calls may let messages in
};

} // namespace tessera
