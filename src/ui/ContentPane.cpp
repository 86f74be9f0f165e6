#include "ui/ContentPane.h"

#include "base/Errors.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <array>

namespace tessera {

namespace {

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
    : m_id(id), m_pszUnit(unit), m_commands(commands), m_caption{title, ""}
{
}

std::span<const MapEntry<ContentPane>> ContentPane::messageMap()
{
    static constexpr std::array<MapEntry<ContentPane>, 6> kMap{{
        {kActivateMessage, &ContentPane::onActivate},
        {WM_SIZE, &ContentPane::onSize},
        {WM_ERASEBKGND, &ContentPane::onErase},
        {WM_PAINT, &ContentPane::onPaint},
        {WM_SETFOCUS, &ContentPane::onFocus},
        {WM_LBUTTONDOWN, &ContentPane::onClick},
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

void ContentPane::settingsChanged()
{
    m_captionHeight = 0;
    layoutContent(contentRect());
    InvalidateRect(handle(), nullptr, FALSE);
}

void ContentPane::setStatus(const std::string& status)
{
    if (status == m_caption.status)
        return;
    m_caption.status = status;
    const RECT bar = captionRect();
    InvalidateRect(handle(), &bar, FALSE);
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
    const RECT content = contentRect();
    fillRect(buffer.dc(), content, m_commands.treeBackground());
    paintContent(buffer.dc(), content);
    m_caption.draw(buffer.dc(), captionRect(), m_commands);
    return 0;
}

Handled ContentPane::onClick(const Message&)
{
    SetFocus(focusWindow());
    return 0;
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
