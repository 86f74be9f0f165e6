#include "ui/AlbumBalloon.h"

#include "base/Errors.h"
#include "library/TrackOrder.h"
#include "tokens/TokenParser.h"
#include "ui/BalloonText.h"
#include "ui/Commands.h"

#include <algorithm>
#include <array>

namespace tessera {

namespace {

constexpr unsigned kTimeOut = 30'000; // milliseconds
constexpr unsigned kOptions =
    kBalloonShadow | kBalloonAnimated | kBalloonClosesOnClick | kBalloonClosesOnDeactivation;

// Tick counts go round after 49 days.
bool hasPassed(DWORD deadline)
{
    return deadline == 0 || static_cast<LONG>(GetTickCount() - deadline) > 0;
}

bool isInMenuOrDrag()
{
    GUITHREADINFO thread{};
    thread.cbSize = sizeof thread;
    const DWORD modes = GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE | GUI_INMOVESIZE;
    return GetGUIThreadInfo(GetCurrentThreadId(), &thread) &&
           ((thread.flags & modes) != 0 || thread.hwndCapture != nullptr);
}

// The part of the item that the list shows.
RECT visiblePart(HWND list, const RECT& item)
{
    RECT client{};
    GetClientRect(list, &client);
    MapWindowPoints(list, nullptr, reinterpret_cast<POINT*>(&client), 2);
    RECT part{};
    IntersectRect(&part, &item, &client);
    return part;
}

class BusyScope {
public:
    explicit BusyScope(bool& busy) : m_busy(busy) { m_busy = true; }
    ~BusyScope() { m_busy = false; }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

private:
    bool& m_busy;
};

} // namespace

AlbumBalloon::AlbumBalloon(Commands& commands) : m_commands(commands)
{
    m_commands.covers().addListener(*this);
}

AlbumBalloon::~AlbumBalloon()
{
    hide();
    m_commands.covers().removeListener(*this);
}

std::span<const MapEntry<AlbumBalloon>> AlbumBalloon::messageMap()
{
    static constexpr std::array<MapEntry<AlbumBalloon>, 11> kMap{{
        {WM_MOUSEMOVE, &AlbumBalloon::onMouseMove},
        {WM_LBUTTONDOWN, &AlbumBalloon::onInput},
        {WM_RBUTTONDOWN, &AlbumBalloon::onInput},
        {WM_MBUTTONDOWN, &AlbumBalloon::onInput},
        {WM_MOUSEWHEEL, &AlbumBalloon::onInput},
        {WM_KEYDOWN, &AlbumBalloon::onInput},
        {WM_HSCROLL, &AlbumBalloon::onInput},
        {WM_VSCROLL, &AlbumBalloon::onInput},
        {WM_SIZE, &AlbumBalloon::onGone},
        {WM_SHOWWINDOW, &AlbumBalloon::onGone},
        {WM_DESTROY, &AlbumBalloon::onGone},
    }};
    return kMap;
}

void AlbumBalloon::hide()
{
    detach();
    m_window.destroy();
    m_album = nullptr;
}

void AlbumBalloon::track(HWND list, const BalloonTarget& target, POINT screen, bool moved)
{
    if (m_busy)
        return;
    const bool inView = WindowFromPoint(screen) == list;
    Album* const album = inView ? target.album : nullptr;
    if (album != m_rested)
        m_rested = nullptr;
    if (m_album && (!isShown() || album != m_album || !mayShow(target)))
        hide();
    if (moved || !album || m_rested || !mayShow(target) || !hasPassed(m_deadline))
        return;
    showAlbumBalloon(list, {album, visiblePart(list, target.item)}, screen);
}

bool AlbumBalloon::mayShow(const BalloonTarget& target) const
{
    return target.album && m_commands.balloon().enabled && !m_commands.isBusy() && GetActiveWindow() &&
           IsWindowEnabled(GetActiveWindow()) && !isInMenuOrDrag();
}

void AlbumBalloon::showAlbumBalloon(HWND list, const BalloonTarget& target, POINT anchor)
{
    const BusyScope busy(m_busy);
    hide();
    m_rested = target.album;
    try {
        if (!createAlbumBalloon(list, target, anchor))
            return;
    } catch (const HostError&) {
        return; // what the host does not tell is not shown
    }
    m_album = target.album;
    m_item = target.item;
    attach(list);
    const auto delay = static_cast<DWORD>(std::max(m_commands.balloon().delay, 0));
    m_deadline = delay == 0 ? 0 : std::max<DWORD>(GetTickCount() + delay, 1);
}

bool AlbumBalloon::createAlbumBalloon(HWND list, const BalloonTarget& target, POINT anchor)
{
    const BalloonSettings& settings = m_commands.balloon();
    const TokenParser& parser = m_commands.tokens();
    const std::string title = parser.expandAlbum(settings.headingTokens, *target.album);
    const int lines =
        BalloonWindow::bodyLinesFor(list, target.item, anchor, static_cast<int>(textLines(title).size()));
    const auto tracks = tracksInOrder(*target.album, m_commands.general().sortTracksByLocation);
    const std::string body = balloonBody(tracks, settings.trackTokens, parser, lines);
    if (!IsWindow(list)) // gone inside a call of the host
        return false;
    const IconHandle icon = albumIcon(*target.album);
    return m_window.createBalloon(list, title, body, target.item, anchor, kOptions, icon.get(), kTimeOut);
}

// Empty-handed when balloons show no picture or there is none.
IconHandle AlbumBalloon::albumIcon(Album& album) const
{
    const BalloonSettings& settings = m_commands.balloon();
    if (!settings.showArtwork || settings.width <= 0 || settings.height <= 0)
        return {};
    Covers& covers = m_commands.covers();
    const int index = covers.imageIndex(album);
    if (index < 0 || !covers.balloon())
        return {};
    return IconHandle(ImageList_GetIcon(covers.balloon(), index, ILD_NORMAL));
}

void AlbumBalloon::coversArrived(const std::vector<Album*>& albums)
{
    if (isShown() && m_album && std::find(albums.begin(), albums.end(), m_album) != albums.end())
        m_window.setIcon(albumIcon(*m_album).get());
}

Handled AlbumBalloon::onInput(const Message&)
{
    hide();
    return kDefault;
}

// A move that waited in the queue may be older than the balloon: the pointer itself must be off the
// item too.
Handled AlbumBalloon::onMouseMove(const Message& message)
{
    POINT point{static_cast<short>(LOWORD(message.lParam)), static_cast<short>(HIWORD(message.lParam))};
    ClientToScreen(message.window, &point);
    POINT now = point;
    GetCursorPos(&now);
    if (!PtInRect(&m_item, point) && !PtInRect(&m_item, now))
        hide();
    return kDefault;
}

Handled AlbumBalloon::onGone(const Message&)
{
    hide();
    return kDefault;
}

} // namespace tessera
