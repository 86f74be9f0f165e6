// Keyboard, wheel and finding by typing.

#include "base/Text.h"
#include "ui/AlbumList.h"
#include "ui/CommandKeys.h"
#include "ui/Commands.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr UINT kSubstring = 4;    // LVFI_SUBSTRING, which older headers lack
constexpr WPARAM kControlA = 1;   // the character
constexpr int kPointerInset = 30; // pixels above and left of an item's bottom-right corner

enum class KeyAction { None, Menu, Enter, SelectAll };

using Keys = CommandKeys;
constexpr struct {
    WPARAM key;
    unsigned modifiers;
    KeyAction action;
} kKeys[] = {
    {VK_APPS, Keys::kNone, KeyAction::Menu},       {VK_F10, Keys::kShift, KeyAction::Menu},
    {VK_RETURN, Keys::kNone, KeyAction::Enter},    {VK_RETURN, Keys::kShift, KeyAction::Enter},
    {VK_RETURN, Keys::kControl, KeyAction::Enter}, {'A', Keys::kControl, KeyAction::SelectAll},
};

KeyAction actionOf(WPARAM key)
{
    const auto found = std::ranges::find_if(kKeys, [key, modifiers = Keys::held()](const auto& each) {
        return each.key == key && each.modifiers == modifiers;
    });
    return found == std::end(kKeys) ? KeyAction::None : found->action;
}

} // namespace

Handled AlbumList::onKeyDown(const Message& message)
{
    switch (actionOf(message.wParam)) {
    case KeyAction::Menu:
        menuAtItem();
        return 0;
    case KeyAction::Enter:
        notifyParent(NM_RETURN);
        return 0;
    case KeyAction::SelectAll:
        m_lvw.select(-1);
        return 0;
    default:
        return kDefault;
    }
}

// Of the keys above.
Handled AlbumList::onCharacter(const Message& message)
{
    return isEnter(message.wParam) || message.wParam == kControlA ? Handled(0) : kDefault;
}

// No dialog or container takes them.
Handled AlbumList::onDialogCode(const Message& message)
{
    const auto* const key = reinterpret_cast<const MSG*>(message.lParam);
    const bool isKey =
        key && key->message >= WM_KEYFIRST && key->message <= WM_KEYLAST && key->message != WM_CHAR;
    return isKey && actionOf(key->wParam) != KeyAction::None ? Handled(DLGC_WANTMESSAGE) : kDefault;
}

// The menu is up already; the key's release would bring another one.
Handled AlbumList::onKeyUp(const Message& message)
{
    return message.wParam == VK_APPS ? Handled(0) : kDefault;
}

Handled AlbumList::onContextMenu(const Message& message)
{
    if (message.lParam != -1)
        return kDefault;
    menuAtItem();
    return 0;
}

void AlbumList::menuAtItem()
{
    const int item = m_lvw.focused();
    if (item < 0)
        return;
    m_lvw.makeVisible(item);
    RECT whole = partOf(item, LVIR_BOUNDS);
    const RECT client = m_lvw.clientRect();
    RECT place{};
    if (!IntersectRect(&place, &whole, &client)) // a row may be wider than the list
        place = whole;
    POINT pointer{place.right - kPointerInset, place.bottom - kPointerInset};
    ClientToScreen(m_lvw.handle(), &pointer);
    SetCursorPos(static_cast<int>(pointer.x), static_cast<int>(pointer.y));
    notifyParent(NM_RCLICK);
}

void AlbumList::notifyParent(UINT code) const
{
    NMITEMACTIVATE activate{};
    activate.hdr = {m_lvw.handle(), static_cast<UINT_PTR>(GetDlgCtrlID(m_lvw.handle())), code};
    activate.iItem = m_lvw.focused();
    SendMessageA(GetParent(m_lvw.handle()), WM_NOTIFY, activate.hdr.idFrom,
                 reinterpret_cast<LPARAM>(&activate));
}

Handled AlbumList::onWheel(const Message& message)
{
    if ((LOWORD(message.wParam) & MK_CONTROL) == 0)
        return kDefault;
    SendMessageA(GetParent(m_lvw.handle()), WM_MOUSEWHEEL, message.wParam, message.lParam);
    return 0;
}

Handled AlbumList::onFind(NMLVFINDITEMA& find, bool wide)
{
    constexpr UINT kByText = LVFI_STRING | LVFI_PARTIAL | kSubstring;
    if ((find.lvfi.flags & kByText) == 0 || !find.lvfi.psz || m_commands.isBusy())
        return -1;
    const std::string typed =
        wide ? toCodePage(reinterpret_cast<const char16_t*>(find.lvfi.psz)) : find.lvfi.psz;
    return findPrefix(typed, find.iStart, (find.lvfi.flags & LVFI_WRAP) != 0);
}

// By the album's title; where no album is called that, by its artist.
int AlbumList::findPrefix(const std::string& prefix, int start, bool wrap) const
{
    const int found = findIn(false, prefix, start, wrap);
    return found >= 0 ? found : findIn(true, prefix, start, wrap);
}

int AlbumList::findIn(bool artist, const std::string& prefix, int start, bool wrap) const
{
    const std::string lower = toLower(prefix);
    const int all = static_cast<int>(m_places.size());
    const int from = start < 0 || start >= all ? 0 : start;
    for (int step = 0; step < (wrap ? all : all - from); ++step) {
        const int item = (from + step) % all;
        if (m_catalogue.begins(m_places[static_cast<std::size_t>(item)], artist, lower))
            return item;
    }
    return -1;
}

} // namespace tessera
