#include "windowing/Messages.h"

#include "system/Border.h"

#include <algorithm>
#include <iterator>

#include <commctrl.h>

namespace tessera {
namespace {

// Notifications that controls send while they paint, measure, look for texts or change focus.
bool comesByItself(const NMHDR& header)
{
    static constexpr UINT kCodes[] = {
        LVN_GETDISPINFOA, LVN_GETDISPINFOW, LVN_ODFINDITEMA,   LVN_ODFINDITEMW,   LVN_ODCACHEHINT,
        TVN_GETDISPINFOA, TVN_GETDISPINFOW, CBEN_GETDISPINFOA, CBEN_GETDISPINFOW, TTN_GETDISPINFOA,
        TTN_GETDISPINFOW, LVN_GETINFOTIPA,  TVN_GETINFOTIPA,   NM_CUSTOMDRAW,     NM_SETFOCUS,
        NM_KILLFOCUS,     TTN_SHOW,         TTN_POP,           RBN_HEIGHTCHANGE,  RBN_CHILDSIZE};
    return std::find(std::begin(kCodes), std::end(kCodes), header.code) != std::end(kCodes);
}

bool startedByUser(const Message& message)
{
    switch (message.id) {
    case WM_COMMAND:
    case WM_SYSCOMMAND:
    case WM_INITDIALOG:
    case WM_CLOSE:
    case WM_CONTEXTMENU:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
    case WM_HOTKEY:
    case WM_APPCOMMAND:
    case WM_DROPFILES:
        return true;
    case WM_NOTIFY:
        return !comesByItself(*reinterpret_cast<const NMHDR*>(message.lParam));
    default: // our own messages are sent on behalf of the user
        return (message.id >= WM_KEYFIRST && message.id <= WM_KEYLAST) || message.id >= WM_USER;
    }
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

Handled routeGuarded(MessageTarget& target, const Message& message) noexcept
{
    const Handled fallback = afterFailure(message.id);
    if (startedByUser(message)) {
        return userBorder(message.window, fallback, [&] { return target.route(message); });
    }
    return quietBorder(fallback, [&] { return target.route(message); });
}

} // namespace tessera
