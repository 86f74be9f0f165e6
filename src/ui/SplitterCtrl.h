#pragma once

#include "windowing/Window.h"

namespace tessera {

// A vertical bar moves left and right, a horizontal one up and down.
enum class SplitterOrientation { Horizontal, Vertical };

// A bar between two areas of its parent. The user drags it, or puts it back to the middle by a double
// click; Escape or a lost capture leaves it where it was. It moves only itself and sends the parent a
// WM_NOTIFY with code 0 when it has been created or moved; the parent then lays out what is around it.
class SplitterCtrl final : public Mapped<SplitterCtrl> {
public:
    static constexpr int kThickness = 7; // pixels at every resolution

    static std::span<const MapEntry<SplitterCtrl>> messageMap();

    SplitterCtrl() = default;
    ~SplitterCtrl() override { destroy(); }

    // A visible child over the parent's client area. Limits and position are percentages of the
    // parent's extent; the colour fills the bar and draws the tracker. Raises the assertion of the
    // unit and answers false when the window cannot be had.
    bool create(HWND parent, UINT id, SplitterOrientation orientation, int minimum, int maximum,
                double position, COLORREF colour);
    // Puts the bar at its position inside the rectangle, in the parent's client coordinates.
    void layout(const RECT& area);

    double position() const { return m_dPosition; } // percent
    // Seen at the next layout; the parent is not told. Limited to minimum and maximum.
    void setPosition(double percent);
    void setColour(COLORREF colour);
    bool dragging() const { return m_bDragging; }

private:
    WindowClass windowClass() const override;
    void loadCursors();
    bool isVertical() const { return m_orientation == SplitterOrientation::Vertical; }
    double clamped(double percent) const;
    void updatePixelLimits();
    RECT placeInParent() const;
    POINT parentPoint(const Message& message) const;

    void beginDrag();
    void drawTracker() const;
    void endDrag(); // takes the tracker away
    void drop(POINT point);
    void notifyParent() const;

    Handled onPaint(const Message& message);
    Handled onErase(const Message&) { return 1; }
    Handled onSetCursor(const Message& message);
    Handled onButtonDown(const Message& message);
    Handled onMouseMove(const Message& message);
    Handled onButtonUp(const Message& message);
    Handled onDoubleClick(const Message& message);
    Handled onDragLost(const Message& message);
    Handled onFocus(const Message& message);
    Handled onKeyDown(const Message& message);
    Handled onDialogCode(const Message& message);

    // Cursors of the system, shared by all bars: west-east and north-south.
    inline static HCURSOR m_hCursor1 = nullptr;
    inline static HCURSOR m_hCursor2 = nullptr;

    SplitterOrientation m_orientation = SplitterOrientation::Vertical;
    int m_nMinimum = 0; // percent
    int m_nMaximum = 100;
    double m_dPosition = 50;
    COLORREF m_clrBar = 0;
    int m_nMinimumPixel = 0;
    int m_nMaximumPixel = 0;
    bool m_bDragging = false;
    bool m_bLocked = false;      // the parent's painting waits while the tracker is on it
    POINT m_ptTracker{};         // in the parent's client coordinates
    HWND m_hFocusBack = nullptr; // had the focus before the drag
};

} // namespace tessera
