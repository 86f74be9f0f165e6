#pragma once

#include "ui/ListBoxEx.h"
#include "windowing/Control.h"
#include "windowing/ImageList.h"

namespace tessera {

// The strip above an editable list: its caption and four small buttons, new, delete, move up and
// move down. It takes over a static control, whose text is the caption. The list must outlive it.
class CListBoxExBuddy : public Mapped<CListBoxExBuddy, Subclass> {
public:
    static constexpr int kButtons = 4;

    explicit CListBoxExBuddy(CListBoxEx& list) : m_list(list) {}

    void subclass(HWND strip);
    void setBackground(COLORREF colour);
    RECT buttonRect(int button) const;
    int hotButton() const { return m_nHot; } // kButtons: none
    bool isPressed() const { return m_bPressed; }

    static std::span<const MapEntry<CListBoxExBuddy>> messageMap();

private:
    Handled onHitTest(const Message& message);
    Handled onErase(const Message& message);
    Handled onPaint(const Message& message);
    Handled onMouseMove(const Message& message);
    Handled onButtonDown(const Message& message);
    Handled onButtonUp(const Message& message);
    Handled onCaptureChanged(const Message& message);
    Handled onSize(const Message& message);

    void makeToolTips();
    void placeToolTips() const;
    int buttonAt(POINT point) const;
    void setHot(int button);
    void act(int button);
    void drawButton(HDC dc, int button) const;

    CListBoxEx& m_list;
    COLORREF m_clrBackground = GetSysColor(COLOR_BTNFACE);
    ImageList m_imlButtons;
    HWND m_hToolTips = nullptr; // owned by the strip's window
    int m_nHot = kButtons;
    int m_nPressedButton = kButtons;
    bool m_bPressed = false;
};

} // namespace tessera
