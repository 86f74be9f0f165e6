#include "windowing/Control.h"

#include "system/Handle.h"
#include "system/Module.h"

#include <algorithm>

namespace tessera {

HFONT defaultFont()
{
    return static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

void initCommonControls()
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES | ICC_COOL_CLASSES |
                                                           ICC_USEREX_CLASSES | ICC_DATE_CLASSES};
    InitCommonControlsEx(&classes);
}

std::string windowText(HWND window)
{
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window)) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

bool Control::createControl(const char* windowClass, HWND parent, UINT id, const RECT& place, DWORD style,
                            DWORD extended, const std::string& text)
{
    initCommonControls();
    m_handle = CreateWindowExA(extended, windowClass, text.c_str(), style | WS_CHILD | WS_VISIBLE, place.left,
                               place.top, place.right - place.left, place.bottom - place.top, parent,
                               reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), moduleInstance(), nullptr);
    setFont(defaultFont(), false);
    return m_handle != nullptr;
}

void Control::destroy()
{
    if (m_handle) {
        DestroyWindow(m_handle);
        m_handle = nullptr;
    }
}

void Control::setFont(HFONT font, bool redraw) const
{
    send(WM_SETFONT, reinterpret_cast<WPARAM>(font), MAKELPARAM(redraw, 0));
}

std::string Control::text() const
{
    return windowText(m_handle);
}

void Control::setText(const std::string& text) const
{
    SetWindowTextA(m_handle, text.c_str());
}

void Control::useVisualStyle(bool use) const
{
    const ModuleHandle library(loadSystemLibrary("uxtheme.dll"));
    using SetTheme = HRESULT(WINAPI*)(HWND, LPCWSTR, LPCWSTR);
    const auto setTheme = library ? reinterpret_cast<SetTheme>(reinterpret_cast<void*>(
                                        GetProcAddress(library.get(), "SetWindowTheme")))
                                  : nullptr;
    const wchar_t* const none = use ? nullptr : L" ";
    if (setTheme)
        setTheme(m_handle, none, none);
}

void Control::move(const RECT& place) const
{
    MoveWindow(m_handle, place.left, place.top, place.right - place.left, place.bottom - place.top, TRUE);
}

RECT Control::rect() const
{
    RECT rect{};
    GetWindowRect(m_handle, &rect);
    MapWindowPoints(nullptr, GetParent(m_handle), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

RECT Control::clientRect() const
{
    RECT rect{};
    GetClientRect(m_handle, &rect);
    return rect;
}

bool Edit::create(HWND parent, UINT id, const RECT& place, DWORD style, DWORD extended)
{
    return createControl("EDIT", parent, id, place, style | WS_TABSTOP, extended);
}

void Edit::replaceSelection(const std::string& text) const
{
    send(EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
}

bool Button::create(HWND parent, UINT id, const RECT& place, const std::string& text, DWORD style)
{
    return createControl("BUTTON", parent, id, place, style | WS_TABSTOP, 0, text);
}

bool Static::create(HWND parent, UINT id, const RECT& place, const std::string& text, DWORD style)
{
    return createControl("STATIC", parent, id, place, style, 0, text);
}

bool ListBox::create(HWND parent, UINT id, const RECT& place, DWORD style, DWORD extended)
{
    return createControl("LISTBOX", parent, id, place, style | WS_TABSTOP, extended);
}

int ListBox::add(const std::string& text) const
{
    return static_cast<int>(send(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str())));
}

int ListBox::insert(int index, const std::string& text) const
{
    return static_cast<int>(
        send(LB_INSERTSTRING, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.c_str())));
}

std::string ListBox::itemText(int index) const
{
    const LRESULT length = send(LB_GETTEXTLEN, static_cast<WPARAM>(index));
    if (length <= 0) { // also when there is no such row
        return "";
    }
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    const LRESULT copied =
        send(LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(std::max<LRESULT>(copied, 0)));
    return text;
}

void ListBox::setItemText(int index, const std::string& text) const
{
    const int selected = selection();
    remove(index);
    insert(index, text);
    select(selected);
}

RECT ListBox::itemRect(int index) const
{
    RECT rect{};
    send(LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&rect));
    return rect;
}

bool StatusBar::create(HWND parent, UINT id)
{
    return createControl(STATUSCLASSNAMEA, parent, id, {}, SBARS_SIZEGRIP);
}

void StatusBar::setPart(int part, const std::string& text) const
{
    send(SB_SETTEXTA, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(text.c_str()));
}

bool ToolTip::create(HWND owner)
{
    initCommonControls();
    m_handle = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr,
                               WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                               CW_USEDEFAULT, CW_USEDEFAULT, owner, nullptr, moduleInstance(), nullptr);
    return m_handle != nullptr;
}

void ToolTip::addTool(HWND control, const std::string& text) const
{
    TTTOOLINFOA tool{};
    tool.cbSize = TTTOOLINFOA_V1_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = GetParent(control);
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = const_cast<char*>(text.c_str());
    send(TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
}

} // namespace tessera
