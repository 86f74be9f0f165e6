#include "shell/ControlWindow.h"

#include "shell/TesseraMain.h"
#include "system/Border.h"
#include "windowing/Control.h"
#include "windowing/Drawing.h"

#include <array>

namespace tessera {

namespace {

constexpr UINT kFocusMoved = WM_APP + 1;
constexpr const char* kMark = "TesseraControl"; // a property of every control's window
constexpr int kThemedBand = 32;
constexpr int kClassicBand = 29;

bool isThemedSystem()
{
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExA(&version);
    return version.dwMajorVersion > 5 || (version.dwMajorVersion == 5 && version.dwMinorVersion >= 1);
}

HWND controlAbove(HWND window)
{
    while (window && !GetPropA(window, kMark)) {
        window = GetParent(window);
    }
    return window;
}

// Only tells: the focus has not moved yet when the hook is called.
LRESULT CALLBACK focusHook(int code, WPARAM wParam, LPARAM lParam) noexcept
{
    if (code == HCBT_SETFOCUS) {
        for (const HWND window : {reinterpret_cast<HWND>(wParam), reinterpret_cast<HWND>(lParam)}) {
            if (const HWND control = controlAbove(window)) {
                PostMessageA(control, kFocusMoved, 0, 0);
            }
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

} // namespace

std::span<const MapEntry<ControlWindow>> ControlWindow::messageMap()
{
    static constexpr std::array<MapEntry<ControlWindow>, 10> kMap{{
        {WM_CREATE, &ControlWindow::onCreate},
        {WM_DESTROY, &ControlWindow::onDestroy},
        {WM_SIZE, &ControlWindow::onSize},
        {WM_SETCURSOR, &ControlWindow::onSetCursor},
        {WM_SHOWWINDOW, &ControlWindow::onShow},
        {WM_SETFOCUS, &ControlWindow::onFocus},
        {WM_MOUSEACTIVATE, &ControlWindow::onMouseActivate},
        {kFocusMoved, &ControlWindow::onFocusMoved},
        {WM_ERASEBKGND, &ControlWindow::onErase},
        {WM_PAINT, &ControlWindow::onPaint},
    }};
    return kMap;
}

WindowClass ControlWindow::windowClass() const
{
    return {.name = "TesseraInterface", .background = GetSysColorBrush(COLOR_BTNFACE)};
}

bool ControlWindow::createAt(HWND parent, const RECT& place)
{
    const ActivationContext context = ActivationContext::ofModule();
    const ActivationScope scope(context);
    initCommonControls();
    const WindowStyle style{WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, WS_EX_CONTROLPARENT};
    return create(parent, 0, place, style, "Tessera 2.0");
}

void ControlWindow::setMain(TesseraMain* main)
{
    m_main = main;
    m_notice.clear();
    InvalidateRect(handle(), nullptr, TRUE);
}

void ControlWindow::showNotice(const std::string& notice)
{
    m_notice = notice;
    InvalidateRect(handle(), nullptr, TRUE);
}

bool ControlWindow::holdsFocus() const
{
    const HWND focus = GetFocus();
    return handle() && focus && (focus == handle() || IsChild(handle(), focus));
}

void ControlWindow::layout()
{
    const RECT client = clientRect();
    if (m_main && client.right > 0 && client.bottom > 0) {
        m_main->layoutPanes({client.right, client.bottom});
    }
}

Handled ControlWindow::onCreate(const Message&)
{
    m_themed = isThemedSystem();
    m_bandHeight = scaled(m_themed ? kThemedBand : kClassicBand, handle());
    SetPropA(handle(), kMark, reinterpret_cast<HANDLE>(1));
    watchFocus();
    return kDefault;
}

void ControlWindow::watchFocus()
{
    m_focusHook = SetWindowsHookExA(WH_CBT, focusHook, nullptr, GetCurrentThreadId());
}

Handled ControlWindow::onDestroy(const Message&)
{
    if (m_focusHook) {
        UnhookWindowsHookEx(m_focusHook);
        m_focusHook = nullptr;
    }
    RemovePropA(handle(), kMark);
    m_events.windowGoing();
    return kDefault;
}

Handled ControlWindow::onSize(const Message&)
{
    layout();
    return kDefault;
}

Handled ControlWindow::onSetCursor(const Message&)
{
    if (!m_main || !m_main->isBusy()) {
        return kDefault;
    }
    SetCursor(LoadCursorA(nullptr, IDC_WAIT));
    return TRUE;
}

Handled ControlWindow::onShow(const Message&)
{
    return 0;
}

// The focus belongs to what the current pane wants it in.
Handled ControlWindow::onFocus(const Message&)
{
    m_focusInside = true;
    m_events.focusChanged(true);
    const HWND target = m_main ? m_main->focusTarget() : nullptr;
    if (target && GetFocus() == handle()) {
        SetFocus(target);
    }
    return 0;
}

Handled ControlWindow::onMouseActivate(const Message& message)
{
    m_focusInside = true;
    m_events.focusChanged(true);
    return defaultProcessing(message);
}

Handled ControlWindow::onFocusMoved(const Message&)
{
    const bool inside = holdsFocus();
    if (inside != m_focusInside) {
        m_focusInside = inside;
        m_events.focusChanged(inside);
    }
    return 0;
}

Handled ControlWindow::onErase(const Message& message)
{
    fillRect(reinterpret_cast<HDC>(message.wParam), clientRect(),
             m_main ? m_main->frameFace() : GetSysColor(COLOR_BTNFACE));
    return 1;
}

Handled ControlWindow::onPaint(const Message&)
{
    const PaintScope paint(handle());
    if (!m_notice.empty()) {
        const DcScope state(paint.dc());
        SelectObject(paint.dc(), defaultFont());
        SetBkMode(paint.dc(), TRANSPARENT);
        SetTextColor(paint.dc(), GetSysColor(COLOR_BTNTEXT));
        drawLine(paint.dc(), m_notice, clientRect(), DT_CENTER | DT_VCENTER);
    }
    return 0;
}

} // namespace tessera
