#pragma once

#include "artwork/Decoder.h"
#include "windowing/Window.h"

#include <functional>
#include <optional>

namespace tessera {

class Commands;

// One picture, as large as the box allows, its proportions kept, in the middle. What is no picture
// shows the default cover.
class PictureBox final : public Mapped<PictureBox> {
public:
    static std::span<const MapEntry<PictureBox>> messageMap();
    // Reads the picture, or none. False: cannot be had now, ask again.
    using Source = std::function<bool(std::optional<Picture>&)>;

    explicit PictureBox(Commands& commands) : m_commands(commands) {}

    // Hidden. False when there is no window.
    bool createBox(HWND parent, UINT id);
    // The source is asked once, when the box is painted, and holds what it reads from until there is
    // another. None: the box is empty.
    void setSource(Source source);
    void settingsChanged();
    void move(const RECT& place) const;
    void show(bool visible) const;
    // From time to time while the box is visible: what could not be had is asked for again.
    void tick();

private:
    WindowClass windowClass() const override { return {.name = "TesseraPictureBox"}; }
    Handled onPaint(const Message& message);
    Handled onSize(const Message& message);
    Handled onErase(const Message&) { return 1; }
    void load();
    void take(std::optional<Picture> picture);
    void drawPicture(HDC dc, const RECT& area);
    bool isFitted(const RECT& area) const;

    Commands& m_commands;
    Source m_source;
    std::optional<Picture> m_picture; // opaque, no larger than the screen
    Picture m_fitted;                 // the whole box
    bool m_loaded = false;
    bool m_loading = false;
    bool m_missed = false;
    unsigned m_generation = 0; // of the source
};

} // namespace tessera
