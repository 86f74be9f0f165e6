#pragma once

#include "windowing/Window.h"

#include <string>
#include <windows.h>

namespace tessera {

// What the in-place edit and button tell their list.
struct InPlaceReport {
    enum class Event { Key = 1, Click = 2, FocusLost = 3 };
    HWND sender = nullptr;
    Event event = Event::Key;
    WPARAM key = 0;          // of Key
    HWND newFocus = nullptr; // of FocusLost; null: another program
    POINT cursor{};          // screen coordinates
};

// Registered message to the list: 0, const InPlaceReport* (a CarriedPointer). Answers true when a key is used
// up.
UINT inPlaceMessage();

// What edit and button share: the keys that belong to the list and not to the dialog round it, and
// the reports.
class InPlaceControl : public Subclass {
public:
    Handled route(const Message& message) override;
    void hide() const { ShowWindow(handle(), SW_HIDE); }

protected:
    void create(HWND list, const char* windowClass, const char* text, DWORD style);
    void place(const RECT& rect) const;
    bool report(InPlaceReport::Event event, WPARAM key = 0, HWND newFocus = nullptr) const;
};

// The borderless edit over a row of an editable list; made hidden.
class CInPlaceEdit : public InPlaceControl {
public:
    void create(HWND list);
    std::string text() const;
    // Replaces the text, selects all of it and takes the focus.
    void setText(const std::string& text) const;
    void show(const RECT& rect, const std::string& text) const;

    Handled route(const Message& message) override;

private:
    LRESULT centreText(const Message& message);
    void paintMargin() const;
};

} // namespace tessera
