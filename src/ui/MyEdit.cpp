#include "ui/MyEdit.h"

#include "tokens/TokenParser.h"
#include "ui/TokenMenu.h"
#include "windowing/Control.h"

#include <windowsx.h>

namespace tessera {

void MyEdit::subclass(HWND edit, Kind kind, HWND companion, int item)
{
    m_kind = kind;
    m_hCompanion = companion;
    m_nItem = item;
    attach(edit);
    m_parent.attach(GetParent(edit));
    refresh();
}

std::string MyEdit::preview() const
{
    const std::string text = windowText(handle());
    return m_kind == Kind::Track ? m_tokens.expandTrack(text, m_tokens.sampleTrack(), TokenParser::kPreview)
                                 : m_tokens.expandAlbum(text, m_tokens.sampleAlbum());
}

void MyEdit::refresh() const
{
    std::string text = preview();
    if (m_kind == Kind::AlbumListItem) {
        LVITEMA item{};
        item.pszText = text.data();
        SendMessageA(m_hCompanion, LVM_SETITEMTEXTA, static_cast<WPARAM>(m_nItem),
                     reinterpret_cast<LPARAM>(&item));
    } else {
        SetWindowTextA(m_hCompanion, text.c_str());
    }
    InvalidateRect(m_hCompanion, nullptr, TRUE);
    UpdateWindow(m_hCompanion);
}

std::span<const MapEntry<MyEdit>> MyEdit::messageMap()
{
    static constexpr MapEntry<MyEdit> map[] = {
        {WM_CONTEXTMENU, &MyEdit::onContextMenu},
        {WM_SETTEXT, &MyEdit::onSetText},
    };
    return map;
}

// Every change by the user is told to the parent.
Handled MyEdit::Parent::route(const Message& message)
{
    if (message.id == WM_COMMAND && HIWORD(message.wParam) == EN_CHANGE &&
        reinterpret_cast<HWND>(message.lParam) == m_edit.handle()) {
        m_edit.refresh();
    }
    return kDefault;
}

// A multi-line edit tells nobody that its text was set.
Handled MyEdit::onSetText(const Message& message)
{
    const LRESULT result = defaultProcessing(message);
    refresh();
    return result;
}

Handled MyEdit::onContextMenu(const Message& message)
{
    POINT screen{GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)};
    const bool byKey = screen.x == -1 && screen.y == -1;
    if (byKey) {
        screen = caretPoint();
    }
    const std::string token = chooseToken(screen);
    if (!token.empty()) {
        insertToken(token, byKey ? caretCharacter() : characterAt(screen));
    }
    return 0;
}

std::string MyEdit::chooseToken(POINT screen)
{
    return m_kind == Kind::Track ? ShowTrackTokenMenu(handle(), screen)
                                 : ShowAlbumTokenMenu(handle(), screen);
}

// Beyond the text: a number that is too large.
int MyEdit::characterAt(POINT screen) const
{
    ScreenToClient(handle(), &screen);
    return LOWORD(SendMessageA(handle(), EM_CHARFROMPOS, 0, MAKELPARAM(screen.x, screen.y)));
}

int MyEdit::caretCharacter() const
{
    DWORD end = 0;
    SendMessageA(handle(), EM_GETSEL, 0, reinterpret_cast<LPARAM>(&end));
    return static_cast<int>(end);
}

POINT MyEdit::caretPoint() const
{
    POINT point{};
    if (GetFocus() == handle()) {
        GetCaretPos(&point);
    }
    ClientToScreen(handle(), &point);
    return point;
}

// By replacing an empty selection, so that the user can take it back.
void MyEdit::insertToken(const std::string& token, int character)
{
    SendMessageA(handle(), EM_SETSEL, static_cast<WPARAM>(character), character);
    SendMessageA(handle(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(token.c_str()));
}

} // namespace tessera
