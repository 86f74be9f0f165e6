#include "ui/InPlaceEdit.h"

#include "system/Module.h"
#include "windowing/CarriedPointer.h"
#include "windowing/Control.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

UINT inPlaceMessage()
{
    static const UINT message = RegisterWindowMessageA("ipc_CtrlMsg");
    return message;
}

namespace {

bool isListKey(WPARAM key)
{
    return key == VK_RETURN || key == VK_ESCAPE || key == VK_TAB;
}

bool isPressOfListKey(LPARAM lParam)
{
    const auto* press = reinterpret_cast<const MSG*>(lParam);
    return press && (press->message == WM_KEYDOWN || press->message == WM_CHAR) && isListKey(press->wParam);
}

} // namespace

void InPlaceControl::create(HWND list, const char* windowClass, const char* text, DWORD style)
{
    attach(CreateWindowExA(0, windowClass, text, style | WS_CHILD, 0, 0, 0, 0, list, nullptr,
                           moduleInstance(), nullptr));
}

void InPlaceControl::place(const RECT& rect) const
{
    SetWindowPos(handle(), HWND_TOP, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
                 SWP_SHOWWINDOW | SWP_FRAMECHANGED | SWP_NOACTIVATE);
}

bool InPlaceControl::report(InPlaceReport::Event event, WPARAM key, HWND newFocus) const
{
    InPlaceReport report{handle(), event, key, newFocus, {}};
    GetCursorPos(&report.cursor);
    const CarriedPointer carried(&report);
    return SendMessageA(GetParent(handle()), inPlaceMessage(), 0, reinterpret_cast<LPARAM>(&report)) != 0;
}

Handled InPlaceControl::route(const Message& message)
{
    switch (message.id) {
    case WM_GETDLGCODE:
        if (isPressOfListKey(message.lParam)) {
            return defaultProcessing(message) | DLGC_WANTMESSAGE;
        }
        return kDefault;
    case WM_KEYDOWN:
        return report(InPlaceReport::Event::Key, message.wParam) ? Handled(0) : kDefault;
    case WM_CHAR:
        return isListKey(message.wParam) ? Handled(0) : kDefault; // the press did it; no beep
    case WM_KILLFOCUS: {
        const LRESULT result = defaultProcessing(message);
        report(InPlaceReport::Event::FocusLost, 0, reinterpret_cast<HWND>(message.wParam));
        return result;
    }
    case WM_SETFOCUS:
        // A dialog that becomes active again remembers a control that is hidden by now.
        if (!IsWindowVisible(handle()) && IsWindowVisible(GetParent(handle()))) {
            SetFocus(GetParent(handle()));
            return 0;
        }
        return kDefault;
    default:
        return kDefault;
    }
}

void CInPlaceEdit::create(HWND list)
{
    InPlaceControl::create(list, "EDIT", "", ES_AUTOHSCROLL | ES_LEFT);
}

std::string CInPlaceEdit::text() const
{
    return windowText(handle());
}

void CInPlaceEdit::setText(const std::string& text) const
{
    SetWindowTextA(handle(), text.c_str());
    SetFocus(handle());
    SendMessageA(handle(), EM_SETSEL, 0, -1);
}

void CInPlaceEdit::show(const RECT& rect, const std::string& text) const
{
    place(rect);
    SendMessageA(handle(), EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(1, 2));
    setText(text);
}

Handled CInPlaceEdit::route(const Message& message)
{
    switch (message.id) {
    case WM_NCCALCSIZE:
        return centreText(message);
    case WM_NCPAINT:
        paintMargin();
        return 0;
    default:
        return InPlaceControl::route(message);
    }
}

// A single-line edit draws its text at the top; the part above it is kept out of the client area,
// so that the text stands where the row's text stood.
LRESULT CInPlaceEdit::centreText(const Message& message)
{
    auto& rect = *reinterpret_cast<RECT*>(message.lParam);
    const WindowDc screen(handle());
    const SelectScope font(screen.dc(), reinterpret_cast<HFONT>(SendMessageA(handle(), WM_GETFONT, 0, 0)));
    rect.top += std::max(0L, (rect.bottom - rect.top - textSize(screen.dc(), "X").cy) / 2);
    return 0;
}

void CInPlaceEdit::paintMargin() const
{
    RECT whole{};
    GetWindowRect(handle(), &whole);
    POINT client{};
    ClientToScreen(handle(), &client);
    const HDC dc = GetWindowDC(handle());
    fillRect(dc, {0, 0, whole.right - whole.left, client.y - whole.top}, GetSysColor(COLOR_WINDOW));
    ReleaseDC(handle(), dc);
}

} // namespace tessera
