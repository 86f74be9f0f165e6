#include "ui/BalloonWindow.h"

#include "ui/BalloonText.h"
#include "ui/Colours.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <array>

namespace tessera {

namespace {

constexpr UINT_PTR kTimer = 1;
constexpr DWORD kShowMs = 150;
// Pixels at 96 dpi.
constexpr int kMargin = 8;
constexpr int kPictureGap = 10;
constexpr int kTitleGap = 4;
constexpr int kStem = 12;
constexpr int kCorner = 10; // diameter
constexpr int kTextWidth = 420;
constexpr UINT kLineFlags = DT_SINGLELINE | DT_NOPREFIX | DT_EXPANDTABS | DT_END_ELLIPSIS;

// The tooltip font of the user and the same in bold.
class Fonts {
public:
    Fonts()
    {
        NONCLIENTMETRICSA metrics{};
        metrics.cbSize = sizeof metrics;
        SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
        m_plain = makeFont(metrics.lfStatusFont);
        metrics.lfStatusFont.lfWeight = FW_BOLD;
        m_bold = makeFont(metrics.lfStatusFont);
    }
    HFONT plain() const { return m_plain.get(); }
    HFONT bold() const { return m_bold.get(); }

private:
    FontHandle m_plain;
    FontHandle m_bold;
};

using Lines = std::vector<std::string>;

int lineHeight(HDC dc, HFONT font)
{
    const SelectScope selected(dc, font);
    TEXTMETRICA metrics{};
    GetTextMetricsA(dc, &metrics);
    return static_cast<int>(metrics.tmHeight);
}

int widthOf(HDC dc, HFONT font, const Lines& lines)
{
    const SelectScope selected(dc, font);
    int width = 0;
    for (const std::string& line : lines) {
        RECT extent{};
        drawFormatted(dc, line, extent, (kLineFlags & ~static_cast<UINT>(DT_END_ELLIPSIS)) | DT_CALCRECT);
        width = std::max(width, static_cast<int>(extent.right));
    }
    return width;
}

// Lines one below the other, none cut through; answers where the next would begin.
LONG drawLines(HDC dc, HFONT font, const Lines& lines, RECT place)
{
    const SelectScope selected(dc, font);
    const LONG height = lineHeight(dc, font);
    for (const std::string& line : lines) {
        if (place.top + height > place.bottom)
            break;
        RECT area{place.left, place.top, place.right, place.top + height};
        drawFormatted(dc, line, area, kLineFlags);
        place.top += height;
    }
    return place.top;
}

RECT workAreaAt(POINT point)
{
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    if (GetMonitorInfoA(MonitorFromPoint(point, MONITOR_DEFAULTTONEAREST), &monitor))
        return monitor.rcWork;
    return {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

SIZE sizeOf(HICON icon)
{
    ICONINFO info{};
    if (!icon || !GetIconInfo(icon, &info))
        return {};
    const BitmapHandle colour(info.hbmColor);
    const BitmapHandle mask(info.hbmMask);
    BITMAP bitmap{};
    GetObjectA(colour ? colour.get() : mask.get(), sizeof bitmap, &bitmap);
    return {bitmap.bmWidth, colour ? bitmap.bmHeight : bitmap.bmHeight / 2};
}

// As it is, or smaller in the same shape where it would fill the screen.
SIZE fitted(SIZE picture, SIZE most)
{
    if (picture.cx > most.cx)
        picture = {most.cx, std::max(1L, static_cast<LONG>(MulDiv(picture.cy, most.cx, picture.cx)))};
    if (picture.cy > most.cy)
        picture = {std::max(1L, static_cast<LONG>(MulDiv(picture.cx, most.cy, picture.cy))), most.cy};
    return picture;
}

// What the body of the balloon needs.
SIZE bodySize(HDC dc, const Fonts& fonts, const Lines& title, const Lines& body, SIZE icon)
{
    const int text = std::max(widthOf(dc, fonts.bold(), title), widthOf(dc, fonts.plain(), body));
    LONG height = static_cast<LONG>(title.size()) * lineHeight(dc, fonts.bold()) +
                  static_cast<LONG>(body.size()) * lineHeight(dc, fonts.plain());
    if (!title.empty() && !body.empty())
        height += scaled(kTitleGap, dc);
    const LONG picture = icon.cx > 0 ? icon.cx + scaled(kPictureGap, dc) : 0;
    const LONG margins = 2L * scaled(kMargin, dc);
    return {std::min(text, scaled(kTextWidth, dc)) + picture + margins, std::max(height, icon.cy) + margins};
}

RegionHandle shapeOf(const BalloonPlace& place, HDC dc)
{
    const RECT& body = place.body;
    const int corner = scaled(kCorner, dc);
    RegionHandle shape(
        CreateRoundRectRgn(body.left, body.top, body.right + 1, body.bottom + 1, corner, corner));
    if (!place.hasStem)
        return shape;
    const LONG half = scaled(kStem, dc) / 2;
    const LONG middleX = std::clamp(place.tip.x, body.left, body.right - 1);
    const LONG middleY = std::clamp(place.tip.y, body.top, body.bottom - 1);
    const bool vertical = place.side == BalloonSide::Above || place.side == BalloonSide::Below;
    const POINT across = vertical ? POINT{half, 0} : POINT{0, half};
    const POINT corners[] = {
        place.tip, {middleX + across.x, middleY + across.y}, {middleX - across.x, middleY - across.y}};
    const RegionHandle stem(CreatePolygonRgn(corners, 3, WINDING));
    CombineRgn(shape.get(), shape.get(), stem.get(), RGN_OR);
    return shape;
}

bool systemAnimatesTips()
{
    BOOL animates = FALSE;
    SystemParametersInfoA(SPI_GETTOOLTIPANIMATION, 0, &animates, 0);
    return animates != FALSE;
}

} // namespace

std::span<const MapEntry<BalloonWindow>> BalloonWindow::messageMap()
{
    static constexpr std::array<MapEntry<BalloonWindow>, 9> kMap{{
        {WM_PAINT, &BalloonWindow::onPaint},
        {WM_ERASEBKGND, &BalloonWindow::onErase},
        {WM_PRINTCLIENT, &BalloonWindow::onPrintClient},
        {WM_TIMER, &BalloonWindow::onTimer},
        {WM_MOUSEACTIVATE, &BalloonWindow::onMouseActivate},
        {WM_LBUTTONDOWN, &BalloonWindow::onClick},
        {WM_RBUTTONDOWN, &BalloonWindow::onClick},
        {WM_MBUTTONDOWN, &BalloonWindow::onClick},
        {WM_ACTIVATEAPP, &BalloonWindow::onActivateApp},
    }};
    return kMap;
}

WindowClass BalloonWindow::windowClass() const
{
    if (m_hasShadow)
        return {"BalloonHelpClassDS", CS_DROPSHADOW | CS_SAVEBITS};
    return {"BalloonHelpClass", CS_SAVEBITS};
}

int BalloonWindow::bodyLinesFor(HWND owner, const RECT& item, POINT anchor, int titleLines)
{
    const WindowDc screen(owner);
    const Fonts fonts;
    const int margins = 2 * scaled(kMargin, screen.dc());
    const int width = scaled(kTextWidth, screen.dc()) + margins;
    const SIZE room = balloonRoom(item, workAreaAt(anchor), scaled(kStem, screen.dc()), width);
    const int title = titleLines * lineHeight(screen.dc(), fonts.bold()) + scaled(kTitleGap, screen.dc());
    return (static_cast<int>(room.cy) - margins - title) / lineHeight(screen.dc(), fonts.plain());
}

bool BalloonWindow::createBalloon(HWND owner, const std::string& title, const std::string& body,
                                  const RECT& item, POINT anchor, unsigned options, HICON icon,
                                  unsigned timeOut)
{
    destroy();
    m_title = textLines(title);
    m_body = textLines(body);
    m_options = options;
    m_timeOut = timeOut;
    m_icon.reset(icon ? CopyIcon(icon) : nullptr);
    if (m_title.empty() && m_body.empty() && !m_icon)
        return false;
    const RECT work = workAreaAt(anchor);
    m_iconSize = fitted(sizeOf(m_icon.get()), {(work.right - work.left) / 3, (work.bottom - work.top) / 2});
    {
        const WindowDc screen(owner);
        const SIZE size = bodySize(screen.dc(), Fonts(), m_title, m_body, m_iconSize);
        m_place = placeBalloon(size, item, anchor, work, scaled(kStem, screen.dc()));
    }
    m_hasShadow = (options & kBalloonShadow) != 0;
    const std::string text = title + '\n' + body;
    if (!createShaped(owner, m_place, text)) {
        m_hasShadow = false; // systems that do not know the class style refuse it
        if (!createShaped(owner, m_place, text))
            return false;
    }
    if (m_timeOut != 0)
        SetTimer(handle(), kTimer, m_timeOut, nullptr);
    showAnimated();
    return handle() != nullptr;
}

// The text is for those who read windows without seeing them.
bool BalloonWindow::createShaped(HWND owner, const BalloonPlace& place, const std::string& text)
{
    const WindowStyle style{WS_POPUP, WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE};
    if (!create(GetAncestor(owner, GA_ROOT), 0, place.window, style, text))
        return false;
    RegionHandle shape = shapeOf(place, WindowDc(handle()).dc());
    if (SetWindowRgn(handle(), shape.get(), FALSE))
        (void)shape.release(); // the window's from now on
    return true;
}

// Looked up by its name: without it the balloon simply appears.
void BalloonWindow::showAnimated()
{
    using AnimateFunction = BOOL(WINAPI*)(HWND, DWORD, DWORD);
    AnimateFunction animate = nullptr;
    if ((m_options & kBalloonAnimated) != 0 && systemAnimatesTips()) {
        const FARPROC found = GetProcAddress(GetModuleHandleA("USER32.DLL"), "AnimateWindow");
        animate = reinterpret_cast<AnimateFunction>(reinterpret_cast<void*>(found));
    }
    if (animate)
        animate(handle(), kShowMs, AW_BLEND);
    if (!handle()) // closed meanwhile
        return;
    SetWindowPos(handle(), HWND_TOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    UpdateWindow(handle());
}

void BalloonWindow::setIcon(HICON icon)
{
    IconHandle copy(icon ? CopyIcon(icon) : nullptr);
    const SIZE before = sizeOf(m_icon.get());
    const SIZE size = sizeOf(copy.get());
    if (!copy || size.cx != before.cx || size.cy != before.cy)
        return;
    m_icon = std::move(copy);
    InvalidateRect(handle(), nullptr, FALSE);
}

Handled BalloonWindow::onPaint(const Message&)
{
    const PaintScope paint(handle());
    const DoubleBuffer buffer(paint.dc(), clientRect());
    draw(buffer.dc());
    return 0;
}

// Animation draws the window by this.
Handled BalloonWindow::onPrintClient(const Message& message)
{
    draw(reinterpret_cast<HDC>(message.wParam));
    return 0;
}

void BalloonWindow::draw(HDC dc) const
{
    const DcScope restore(dc);
    const Fonts fonts;
    const COLORREF ground = GetSysColor(COLOR_INFOBK);
    const COLORREF ink = GetSysColor(COLOR_INFOTEXT);
    fillRect(dc, clientRect(), ground);
    const RegionHandle shape = shapeOf(m_place, dc);
    const BrushHandle border(CreateSolidBrush(mixed(ground, ink, 60)));
    FrameRgn(dc, shape.get(), border.get(), 1, 1);

    RECT place = m_place.body;
    InflateRect(&place, -scaled(kMargin, dc), -scaled(kMargin, dc));
    if (m_icon) {
        DrawIconEx(dc, place.left, place.top, m_icon.get(), m_iconSize.cx, m_iconSize.cy, 0, nullptr,
                   DI_NORMAL);
        place.left += m_iconSize.cx + scaled(kPictureGap, dc);
    }
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, ink);
    place.top = drawLines(dc, fonts.bold(), m_title, place);
    if (!m_title.empty())
        place.top += scaled(kTitleGap, dc);
    drawLines(dc, fonts.plain(), m_body, place);
}

Handled BalloonWindow::onTimer(const Message& message)
{
    if (message.wParam != kTimer)
        return kDefault;
    destroy();
    return 0;
}

Handled BalloonWindow::onClick(const Message&)
{
    if ((m_options & kBalloonClosesOnClick) != 0)
        destroy();
    return 0;
}

Handled BalloonWindow::onActivateApp(const Message& message)
{
    if (message.wParam == 0 && (m_options & kBalloonClosesOnDeactivation) != 0)
        destroy();
    return 0;
}

} // namespace tessera
