#include "windowing/Messages.h"

#include "system/Border.h"

#include <algorithm>
#include <iterator>

#include <commctrl.h>

namespace tessera {
namespace {

// Notifications that controls send while they paint, measure or look for texts.
bool asksForDisplay(const NMHDR& header)
{
    static constexpr UINT kCodes[] = {
        LVN_GETDISPINFOA, LVN_GETDISPINFOW, LVN_ODFINDITEMA,   LVN_ODFINDITEMW,
        LVN_ODCACHEHINT,  TVN_GETDISPINFOA, TVN_GETDISPINFOW,  NM_CUSTOMDRAW,
        TTN_GETDISPINFOA, TTN_GETDISPINFOW, CBEN_GETDISPINFOA, CBEN_GETDISPINFOW,
        LVN_GETINFOTIPA,  TVN_GETINFOTIPA,  TTN_SHOW,          TTN_POP};
    return std::find(std::begin(kCodes), std::end(kCodes), header.code) != std::end(kCodes);
}

// What stands in for the answer of a handler that failed.
Handled afterFailure(UINT message)
{
    switch (message) {
    case WM_CREATE:
        return -1; // no window
    case WM_NCCREATE:
        return FALSE;
    case WM_COMMAND:
        return 0;
    default:
        return kDefault;
    }
}

} // namespace

bool runsByItself(const Message& message)
{
    switch (message.id) {
    case WM_TIMER:
    case WM_PAINT:
    case WM_ERASEBKGND:
    case WM_NCPAINT:
    case WM_PRINTCLIENT:
    case WM_DRAWITEM:
    case WM_MEASUREITEM:
    case WM_SETCURSOR:
    case WM_NCHITTEST:
    case WM_MOUSEMOVE:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_DESTROY:
    case WM_NCDESTROY:
        return true;
    case WM_NOTIFY:
        return asksForDisplay(*reinterpret_cast<const NMHDR*>(message.lParam));
    default:
        return false;
    }
}

Handled routeGuarded(MessageTarget& target, const Message& message) noexcept
{
    const Handled fallback = afterFailure(message.id);
    if (runsByItself(message)) {
        return quietBorder(fallback, [&] { return target.route(message); });
    }
    return userBorder(message.window, fallback, [&] { return target.route(message); });
}

} // namespace tessera
