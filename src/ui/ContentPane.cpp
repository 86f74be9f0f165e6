#include "ui/ContentPane.h"

#include "base/Errors.h"
#include "ui/Commands.h"
#include "ui/ids.h"
#include "windowing/Drawing.h"
#include "windowing/ListView.h"

#include <algorithm>
#include <array>
#include <vector>

namespace tessera {

namespace {

constexpr int kHandCursor = 32649; // IDC_HAND

// Beside the space bar, which presses every button.
constexpr CommandKeys::Key kMenuKeys[] = {
    {VK_RETURN, CommandKeys::kNone, controlId::kCaptionMenu},
    {VK_DOWN, CommandKeys::kNone, controlId::kCaptionMenu},
};
constexpr CommandKeys::Key kOfferKeys[] = {{VK_RETURN, CommandKeys::kNone, controlId::kCaptionOffer}};

POINT clickPlace(const Message& message)
{
    return {static_cast<short>(LOWORD(message.lParam)), static_cast<short>(HIWORD(message.lParam))};
}

// On the parent itself, or left behind in a sibling that was hidden.
bool focusIsHomeless(HWND parent)
{
    HWND window = GetFocus();
    if (window == nullptr || window == parent)
        return window != nullptr;
    if (!IsChild(parent, window))
        return false;
    while (GetParent(window) != parent)
        window = GetParent(window);
    return (GetWindowLongA(window, GWL_STYLE) & WS_VISIBLE) == 0;
}

} // namespace

ContentPane::ContentPane(int id, const char* unit, const std::string& title, Commands& commands)
    : m_id(id), m_pszUnit(unit), m_commands(commands)
{
    m_caption.title = title;
}

std::span<const MapEntry<ContentPane>> ContentPane::messageMap()
{
    static constexpr std::array<MapEntry<ContentPane>, 13> kMap{{
        {kActivateMessage, &ContentPane::onActivate},
        {WM_SIZE, &ContentPane::onSize},
        {WM_ERASEBKGND, &ContentPane::onErase},
        {WM_PAINT, &ContentPane::onPaint},
        {WM_PRINTCLIENT, &ContentPane::onPrint},
        {WM_SETFOCUS, &ContentPane::onFocus},
        {WM_LBUTTONDOWN, &ContentPane::onClick},
        {WM_RBUTTONUP, &ContentPane::onRightButtonUp},
        {WM_CONTEXTMENU, &ContentPane::onContextMenu},
        {controlId::kCaptionMenu, &ContentPane::onCaptionMenu},
        {controlId::kCaptionOffer, &ContentPane::onCaptionOffer},
        {WM_SETCURSOR, &ContentPane::onSetCursor},
        {WM_DRAWITEM, &ContentPane::onDrawItem},
    }};
    return kMap;
}

bool ContentPane::createWindow(HWND parent)
{
    const WindowStyle style{WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, WS_EX_CONTROLPARENT};
    const bool created = create(parent, static_cast<UINT>(m_id), {}, style, m_caption.title);
    if (!created)
        assertionFailed("this->GetSafeHwnd()", m_pszUnit, __LINE__);
    return created;
}

// A list first: the host may end the plug-in inside its call.
void ContentPane::skinControls()
{
    std::vector<HWND> controls;
    for (HWND each = GetWindow(handle(), GW_CHILD); each; each = GetWindow(each, GW_HWNDNEXT))
        controls.push_back(each);
    for (const HWND control : controls) {
        if (IsWindow(control))
            m_commands.skinControl(control);
    }
}

void ContentPane::settingsChanged()
{
    m_captionHeight = 0;
    layoutCaption();
    layoutContent(contentRect());
    InvalidateRect(handle(), nullptr, FALSE);
}

std::string ContentPane::exportText(int item, int column) const
{
    return ListView(exportList()).text(item, column);
}

void ContentPane::setStatus(const std::string& status)
{
    if (status == m_caption.status)
        return;
    m_caption.status = status;
    if (!m_lblStatus && m_lblStatus.create(handle(), controlId::kStatus, {}, status, SS_OWNERDRAW)) {
        m_commands.skinControl(m_lblStatus.handle());
        layoutCaption();
    }
    // Past the control, which would draw it at once; it changes with every key stroke of a search.
    DefWindowProcA(m_lblStatus.handle(), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(status.c_str()));
    m_lblStatus.invalidate(false);
}

void ContentPane::layoutCaption()
{
    const WindowDc dc(handle());
    const RECT bar = captionRect();
    m_btnMenu.move(m_caption.titlePlace(dc.dc(), bar, m_commands));
    m_btnOffer.move(m_caption.offerPlace(dc.dc(), bar, m_commands));
    m_lblStatus.move(m_caption.statusPlace(dc.dc(), bar, m_commands));
    m_lblStatus.invalidate(false);
}

void ContentPane::addCaptionMenu()
{
    m_caption.hasMenu = true;
    m_btnMenu.create(handle(), controlId::kCaptionMenu, {}, m_caption.title, BS_OWNERDRAW);
    m_btnOffer.create(handle(), controlId::kCaptionOffer, {}, "", BS_OWNERDRAW);
    m_btnOffer.show(false);
    m_captionKeys[0].attachTo(m_btnMenu.handle(), kMenuKeys);
    m_captionKeys[1].attachTo(m_btnOffer.handle(), kOfferKeys);
}

void ContentPane::setOffer(const std::string& offer, UINT command)
{
    if (offer.empty() && m_btnOffer && GetFocus() == m_btnOffer.handle())
        SetFocus(focusWindow());
    m_caption.offer = offer;
    m_offered = command;
    m_btnOffer.setText(offer);
    m_btnOffer.show(!offer.empty());
    layoutCaption();
}

RECT ContentPane::captionRect() const
{
    if (m_captionHeight == 0)
        m_captionHeight = m_caption.height(m_commands);
    RECT bar = clientRect();
    bar.bottom = std::min(bar.bottom, m_captionHeight);
    return bar;
}

RECT ContentPane::contentRect() const
{
    RECT content = clientRect();
    content.top = captionRect().bottom;
    return content;
}

Handled ContentPane::onActivate(const Message& message)
{
    if (message.wParam != 0)
        showPane();
    else
        hidePane();
    return 0;
}

// The focus goes with the panes: one that hides hands it to the parent, the next one takes it there.
void ContentPane::showPane()
{
    const bool takesFocus = focusIsHomeless(GetParent(handle()));
    ShowWindow(handle(), SW_SHOWNA);
    if (takesFocus)
        SetFocus(focusWindow());
}

void ContentPane::hidePane()
{
    const HWND focus = GetFocus();
    const bool hadFocus = focus == handle() || IsChild(handle(), focus);
    ShowWindow(handle(), SW_HIDE);
    if (hadFocus)
        SetFocus(GetParent(handle()));
}

Handled ContentPane::onSize(const Message&)
{
    layoutCaption();
    layoutContent(contentRect());
    InvalidateRect(handle(), nullptr, FALSE);
    return 0;
}

// Painting covers everything.
Handled ContentPane::onErase(const Message&)
{
    return 1;
}

Handled ContentPane::onPaint(const Message&)
{
    const PaintScope paint(handle());
    const DoubleBuffer buffer(paint.dc(), clientRect());
    draw(buffer.dc());
    return 0;
}

// What shows through a control that asks for its background.
Handled ContentPane::onPrint(const Message& message)
{
    draw(reinterpret_cast<HDC>(message.wParam));
    return 0;
}

void ContentPane::draw(HDC dc)
{
    const RECT content = contentRect();
    fillRect(dc, content, m_commands.treeBackground());
    paintContent(dc, content);
    m_caption.draw(dc, captionRect(), m_commands);
}

Handled ContentPane::onDrawItem(const Message& message)
{
    const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(message.lParam);
    const bool isButton = isCaptionButton(item.hwndItem);
    if (!isButton && item.hwndItem != m_lblStatus.handle())
        return kDefault;
    const DoubleBuffer buffer(item.hDC, item.rcItem);
    if (item.hwndItem == m_btnMenu.handle())
        m_caption.drawTitle(buffer.dc(), item.rcItem, m_commands);
    else if (isButton)
        m_caption.drawOffer(buffer.dc(), item.rcItem, m_commands);
    else
        m_caption.drawStatus(buffer.dc(), item.rcItem, m_commands);
    if (isButton && (item.itemState & (ODS_FOCUS | ODS_NOFOCUSRECT)) == ODS_FOCUS)
        PaneCaption::drawFocus(buffer.dc(), item.rcItem, m_commands);
    return TRUE;
}

Handled ContentPane::onClick(const Message&)
{
    SetFocus(focusWindow());
    return 0;
}

Handled ContentPane::onRightButtonUp(const Message& message)
{
    const RECT bar = captionRect();
    if (!m_btnMenu || !PtInRect(&bar, clickPlace(message)))
        return kDefault;
    openCaptionMenu();
    return 0;
}

Handled ContentPane::onContextMenu(const Message& message)
{
    if (!isCaptionButton(reinterpret_cast<HWND>(message.wParam)))
        return kDefault;
    openCaptionMenu();
    return 0;
}

// Behind the character of the key that asks for it, which the menu would take for its own.
void ContentPane::onCaptionMenu(const Command&)
{
    PostMessageA(handle(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(m_btnMenu.handle()), -1);
}

void ContentPane::onCaptionOffer(const Command&)
{
    PostMessageA(handle(), WM_COMMAND, m_offered, 0);
}

bool ContentPane::isCaptionButton(HWND window) const
{
    return window && (window == m_btnMenu.handle() || window == m_btnOffer.handle());
}

// The hand where a click does something.
Handled ContentPane::onSetCursor(const Message& message)
{
    if (LOWORD(message.lParam) != HTCLIENT || !isCaptionButton(reinterpret_cast<HWND>(message.wParam)))
        return kDefault;
    SetCursor(LoadCursorA(nullptr, MAKEINTRESOURCEA(kHandCursor)));
    return TRUE;
}

void ContentPane::openCaptionMenu()
{
    if (!m_btnMenu || m_commands.isBusy())
        return;
    const Menu menu = captionMenu();
    if (!menu)
        return;
    const RECT title = m_btnMenu.rect();
    POINT place{title.left, title.bottom};
    ClientToScreen(handle(), &place);
    const HWND self = handle();
    UINT command = 0;
    m_commands.runLoop([&] { command = menu.track(self, place); });
    if (command != 0 && IsWindow(self))
        SendMessageA(self, WM_COMMAND, command, 0);
}

Handled ContentPane::onFocus(const Message&)
{
    const HWND target = focusWindow();
    if (target == handle())
        return kDefault;
    SetFocus(target);
    return 0;
}

} // namespace tessera
