#pragma once

#include <string>
#include <windows.h>

#include <commctrl.h>

namespace tessera {

// A thin wrapper that refers to a standard control; the control's window belongs to its parent.
// Without a window every call does nothing.
class Control {
public:
    Control() = default;
    explicit Control(HWND handle) : m_handle(handle) {}

    HWND handle() const { return m_handle; }
    explicit operator bool() const { return m_handle != nullptr; }
    void attach(HWND handle) { m_handle = handle; }
    void destroy();

    void setFont(HFONT font, bool redraw = true) const;
    std::string text() const;
    void setText(const std::string& text) const;
    void enable(bool enabled) const { EnableWindow(m_handle, enabled); }
    void show(bool visible) const { ShowWindow(m_handle, visible ? SW_SHOWNA : SW_HIDE); }
    // Whether it is drawn as the user's theme says, or plain, in the system's colours or those that its
    // parent gives.
    void useVisualStyle(bool use) const;
    void move(const RECT& place) const;
    void invalidate(bool erase = true) const { InvalidateRect(m_handle, nullptr, erase); }
    RECT rect() const; // in the parent's client coordinates
    RECT clientRect() const;

    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return m_handle ? SendMessageA(m_handle, message, wParam, lParam) : 0;
    }

protected:
    // A visible child with the system's dialog font.
    bool createControl(const char* windowClass, HWND parent, UINT id, const RECT& place, DWORD style,
                       DWORD extended = 0, const std::string& text = "");
    HWND m_handle = nullptr;
};

// The font of the system's own dialogs; nobody deletes it.
HFONT defaultFont();
// Registers the window classes of the common controls; any number of times.
void initCommonControls();
std::string windowText(HWND window);

class Edit : public Control {
public:
    using Control::Control;
    bool create(HWND parent, UINT id, const RECT& place, DWORD style = ES_AUTOHSCROLL,
                DWORD extended = WS_EX_CLIENTEDGE);
    void select(int first, int last) const { send(EM_SETSEL, static_cast<WPARAM>(first), last); }
    void replaceSelection(const std::string& text) const;
    void setLimit(int characters) const { send(EM_LIMITTEXT, static_cast<WPARAM>(characters)); }
};

class Button : public Control {
public:
    using Control::Control;
    bool create(HWND parent, UINT id, const RECT& place, const std::string& text,
                DWORD style = BS_PUSHBUTTON);
    bool checked() const { return send(BM_GETCHECK) == BST_CHECKED; }
    void setChecked(bool on) const { send(BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED); }
};

class Static : public Control {
public:
    using Control::Control;
    bool create(HWND parent, UINT id, const RECT& place, const std::string& text, DWORD style = SS_NOPREFIX);
};

class ListBox : public Control {
public:
    using Control::Control;
    bool create(HWND parent, UINT id, const RECT& place, DWORD style = LBS_NOTIFY | WS_VSCROLL,
                DWORD extended = WS_EX_CLIENTEDGE);
    int count() const { return static_cast<int>(send(LB_GETCOUNT)); }
    int add(const std::string& text) const;
    int insert(int index, const std::string& text) const;
    void remove(int index) const { send(LB_DELETESTRING, static_cast<WPARAM>(index)); }
    void clear() const { send(LB_RESETCONTENT); }
    std::string itemText(int index) const;
    void setItemText(int index, const std::string& text) const;            // the selection stays
    int selection() const { return static_cast<int>(send(LB_GETCURSEL)); } // -1: none
    void select(int index) const { send(LB_SETCURSEL, static_cast<WPARAM>(index)); }
    RECT itemRect(int index) const;
};

class StatusBar : public Control {
public:
    using Control::Control;
    bool create(HWND parent, UINT id);
    void setPart(int part, const std::string& text) const;
};

class ToolTip : public Control {
public:
    using Control::Control;
    bool create(HWND owner);
    void addTool(HWND control, const std::string& text) const;
};

} // namespace tessera
