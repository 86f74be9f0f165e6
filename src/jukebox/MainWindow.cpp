#include "jukebox/MainWindow.h"

#include "jukebox/CommandIds.h"

#include <algorithm>
#include <array>
#include <windowsx.h>

namespace tessera::jukebox {

namespace {

constexpr UINT kLoadPlugin = WM_APP + 1;
constexpr UINT kPlayerChanged = WM_APP + 2;
constexpr UINT_PTR kTimer = 1;
constexpr UINT kTimerMs = 250;
constexpr int kBarHeight = 5;
constexpr SIZE kFirstSize = {1100, 760};
constexpr SIZE kSmallest = {560, 360};

struct MediaCommand {
    int appCommand;
    UINT command;
};
constexpr std::array kMediaCommands = {
    MediaCommand{APPCOMMAND_MEDIA_NEXTTRACK, kNext},
    MediaCommand{APPCOMMAND_MEDIA_PREVIOUSTRACK, kPrevious},
    MediaCommand{APPCOMMAND_MEDIA_STOP, kStop},
    MediaCommand{APPCOMMAND_MEDIA_PLAY_PAUSE, kPause},
};

constexpr std::array kKeys = {
    ACCEL{FVIRTKEY | FCONTROL, 'P', static_cast<WORD>(kPlay)},
    ACCEL{FVIRTKEY | FCONTROL, 'U', static_cast<WORD>(kPause)},
    ACCEL{FVIRTKEY | FCONTROL, 'S', static_cast<WORD>(kStop)},
    ACCEL{FVIRTKEY | FCONTROL, 'B', static_cast<WORD>(kPrevious)},
    ACCEL{FVIRTKEY | FCONTROL, 'F', static_cast<WORD>(kNext)},
    ACCEL{FVIRTKEY | FCONTROL, 'L', static_cast<WORD>(kPlayLibrary)},
    ACCEL{FVIRTKEY, VK_F6, static_cast<WORD>(kSwitchFocus)},
};

// A line without a command is a title of the menu bar; one without a text a separator.
struct MenuLine {
    UINT command;
    const char* text;
};
constexpr std::array kMenu = {
    MenuLine{0, "&File"},
    MenuLine{kExit, "E&xit\tAlt+F4"},
    MenuLine{0, "&Playback"},
    MenuLine{kPlay, "&Play\tCtrl+P"},
    MenuLine{kPause, "P&ause\tCtrl+U"},
    MenuLine{kStop, "&Stop\tCtrl+S"},
    MenuLine{0, nullptr},
    MenuLine{kPrevious, "Pre&vious\tCtrl+B"},
    MenuLine{kNext, "&Next\tCtrl+F"},
    MenuLine{0, nullptr},
    MenuLine{kPlayLibrary, "Play whole &library\tCtrl+L"},
    MenuLine{kClearPlaylist, "&Clear playlist"},
    MenuLine{0, "&View"},
    MenuLine{kShowPlugin, "&Plug-in"},
    MenuLine{kShowPlaylist, "Play&list"},
    MenuLine{0, nullptr},
    MenuLine{kSwitchFocus, "&Switch between them\tF6"},
};

MenuHandle buildMenu()
{
    MenuHandle bar(CreateMenu());
    HMENU popup = nullptr;
    for (const MenuLine& line : kMenu) {
        if (!line.text) {
            AppendMenuA(popup, MF_SEPARATOR, 0, nullptr);
        } else if (line.command != 0) {
            AppendMenuA(popup, MF_STRING, line.command, line.text);
        } else {
            popup = CreatePopupMenu(); // the bar's from the next line on
            AppendMenuA(bar.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(popup), line.text);
        }
    }
    CheckMenuItem(bar.get(), kShowPlugin, MF_CHECKED);
    CheckMenuItem(bar.get(), kShowPlaylist, MF_CHECKED);
    return bar;
}

std::string counted(std::size_t number, const char* thing)
{
    return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

} // namespace

MainWindow::MainWindow(HostState& state)
    : m_state(state),
      m_colours(palette(state.skinned)),
      m_transport(state.library, state.player, m_colours),
      m_plugin(m_colours),
      m_playlist(state.library, state.player, m_colours)
{
}

MainWindow::~MainWindow()
{
    m_state.player.onChange({});
}

WindowClass MainWindow::windowClass() const
{
    WindowClass kind{"MJFrame"};
    kind.icon = LoadIconA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(1));
    return kind;
}

std::span<const MapEntry<MainWindow>> MainWindow::messageMap()
{
    using M = MainWindow;
    static constexpr std::array kMap = {
        MapEntry<M>{WM_CREATE, &M::onCreate},
        MapEntry<M>{WM_SIZE, &M::onSize},
        MapEntry<M>{WM_GETMINMAXINFO, &M::onMinimum},
        MapEntry<M>{WM_ERASEBKGND, &M::onErase},
        MapEntry<M>{WM_TIMER, &M::onTimer},
        MapEntry<M>{kLoadPlugin, &M::onLoadPlugin},
        MapEntry<M>{kPlayerChanged, &M::onPlayerChanged},
        MapEntry<M>{WM_APPCOMMAND, &M::onAppCommand},
        MapEntry<M>{WM_ACTIVATE, &M::onActivate},
        MapEntry<M>{WM_CLOSE, &M::onClose},
        MapEntry<M>{WM_DESTROY, &M::onDestroy},
        MapEntry<M>{WM_SETCURSOR, &M::onSetCursor},
        MapEntry<M>{WM_LBUTTONDOWN, &M::onLeftDown},
        MapEntry<M>{WM_MOUSEMOVE, &M::onMouseMove},
        MapEntry<M>{WM_LBUTTONUP, &M::onLeftUp},
        MapEntry<M>{IdRange{kPrevious, kNext}, &M::onTransport},
        MapEntry<M>{kPlayLibrary, &M::onPlayLibrary},
        MapEntry<M>{kClearPlaylist, &M::onClearPlaylist},
        MapEntry<M>{kExit, &M::onExit},
        MapEntry<M>{kShowPlugin, &M::onTogglePlugin},
        MapEntry<M>{kShowPlaylist, &M::onTogglePlaylist},
        MapEntry<M>{kSwitchFocus, &M::onSwitchFocus},
    };
    return kMap;
}

bool MainWindow::open()
{
    const int width = std::min(scaled(kFirstSize.cx, WindowDc().dc()), GetSystemMetrics(SM_CXSCREEN));
    const int height = std::min(scaled(kFirstSize.cy, WindowDc().dc()), GetSystemMetrics(SM_CYSCREEN));
    const int left = (GetSystemMetrics(SM_CXSCREEN) - width) / 2;
    const int top = (GetSystemMetrics(SM_CYSCREEN) - height) / 3;
    // The title is what other programs look for; it never changes.
    const WindowStyle style{WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT};
    if (!create(nullptr, 0, {left, top, left + width, top + height}, style, "MEDIA JUKEBOX")) {
        return false;
    }
    layOut();
    showLibraryCounts();
    refresh();
    ShowWindow(handle(), SW_SHOWDEFAULT);
    UpdateWindow(handle());
    return PostMessageA(handle(), kLoadPlugin, 0, 0) != FALSE;
}

Handled MainWindow::onCreate(const Message& message)
{
    const HWND window = message.window;
    m_menu = buildMenu();
    SetMenu(window, m_menu.get());
    const WindowStyle pane{WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, WS_EX_CONTROLPARENT};
    const bool made = m_transport.create(window, kTransportId, {}, pane) &&
                      m_plugin.create(window, kPluginAreaId, {}, pane) &&
                      m_playlist.create(window, kPlaylistId, {}, pane) && m_status.create(window, kStatusId);
    if (!made) {
        return -1;
    }
    m_plugin.onKeyLeftOver([this](const MSG& key) {
        if (key.message == WM_KEYDOWN && key.wParam == VK_TAB) {
            focusPlaylist();
            return true;
        }
        return false;
    });
    m_state.player.onChange([window] { PostMessageA(window, kPlayerChanged, 0, 0); });
    SetTimer(window, kTimer, kTimerMs, nullptr);
    return 0;
}

void MainWindow::showLibraryCounts()
{
    m_status.setPart(0, "Library: " + counted(m_state.library.size(), "track") + " in " +
                            counted(m_state.library.albumCount(), "album"));
}

void MainWindow::run()
{
    const HACCEL keys = CreateAcceleratorTableA(const_cast<ACCEL*>(kKeys.data()), kKeys.size());
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        const bool ours = message.hwnd == handle() || IsChild(handle(), message.hwnd);
        if (m_plugin.translate(message) || (ours && TranslateAcceleratorA(handle(), keys, &message))) {
            continue;
        }
        if (ours && !keepsItsKeys(message) && IsDialogMessageA(handle(), &message)) {
            continue;
        }
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    DestroyAcceleratorTable(keys);
}

// Inside the plug-in the keys are the plug-in's; Enter plays the entry of the playlist.
bool MainWindow::keepsItsKeys(const MSG& message) const
{
    const bool isEnter = message.message == WM_KEYDOWN && message.wParam == VK_RETURN;
    return IsChild(m_plugin.handle(), message.hwnd) || (isEnter && message.hwnd == m_playlist.list());
}

Handled MainWindow::onSize(const Message&)
{
    layOut();
    return kDefault;
}

Handled MainWindow::onMinimum(const Message& message)
{
    auto& limits = *reinterpret_cast<MINMAXINFO*>(message.lParam);
    limits.ptMinTrackSize = {scaled(kSmallest.cx, message.window), scaled(kSmallest.cy, message.window)};
    return 0;
}

int MainWindow::barTop() const
{
    const int bottom = m_status.rect().top;
    const int top = m_transport.height();
    if (!m_showPlaylist) {
        return bottom;
    }
    const int bar = scaled(kBarHeight, handle());
    const int wanted = m_showPlugin ? scaled(m_playlistHeight, handle()) : bottom - top - bar;
    return std::max(top, bottom - wanted - bar);
}

void MainWindow::layOut()
{
    if (IsIconic(handle()) || !m_status) {
        return;
    }
    m_status.send(WM_SIZE);
    const int width = clientRect().right;
    const int parts[] = {width * 35 / 100, width * 75 / 100, -1};
    m_status.send(SB_SETPARTS, 3, reinterpret_cast<LPARAM>(parts));
    const int top = m_transport.height();
    const int bar = barTop();
    const auto place = [](HWND window, int x, int y, int right, int bottom, bool shown) {
        MoveWindow(window, x, y, right - x, std::max(bottom - y, 0), TRUE);
        ShowWindow(window, shown ? SW_SHOWNA : SW_HIDE);
    };
    place(m_transport.handle(), 0, 0, width, top, true);
    place(m_plugin.handle(), 0, top, width, bar, m_showPlugin);
    place(m_playlist.handle(), 0, bar + scaled(kBarHeight, handle()), width, m_status.rect().top,
          m_showPlaylist);
    InvalidateRect(handle(), nullptr, TRUE);
}

Handled MainWindow::onErase(const Message& message)
{
    fillRect(reinterpret_cast<HDC>(message.wParam), clientRect(), m_colours.face);
    return 1;
}

Handled MainWindow::onTimer(const Message&)
{
    m_state.player.advance();
    if (m_state.player.state() == PlayState::Playing) {
        m_transport.refresh();
    }
    return 0;
}

Handled MainWindow::onLoadPlugin(const Message&)
{
    m_plugin.load(m_state);
    return 0;
}

Handled MainWindow::onPlayerChanged(const Message& message)
{
    // One look is enough for all changes that were posted meanwhile.
    MSG more;
    while (PeekMessageA(&more, message.window, kPlayerChanged, kPlayerChanged, PM_REMOVE)) {
    }
    refresh();
    return 0;
}

void MainWindow::refresh()
{
    const NowPlaying now = m_state.player.now();
    m_transport.refresh();
    m_playlist.refresh();
    RedrawWindow(m_transport.handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
    m_status.setPart(1, "Playlist: " + counted(static_cast<std::size_t>(now.entries), "track"));
    constexpr std::array kStates = {"Stopped", "Playing", "Paused"};
    m_status.setPart(2, kStates[static_cast<std::size_t>(now.state)]);
}

void MainWindow::perform(UINT command)
{
    switch (command) {
    case kPrevious:
        return m_state.player.previous();
    case kPlay:
        return m_state.player.play();
    case kPause:
        return m_state.player.pause();
    case kStop:
        return m_state.player.stop();
    default:
        return m_state.player.next();
    }
}

void MainWindow::onTransport(const Command& command)
{
    perform(command.id);
}

void MainWindow::onPlayLibrary(const Command&)
{
    m_state.player.clear();
    m_state.player.add(m_state.library.search(L""));
    m_state.player.playEntry(0);
}

void MainWindow::onClearPlaylist(const Command&)
{
    m_state.player.stop();
    m_state.player.clear();
}

Handled MainWindow::onAppCommand(const Message& message)
{
    const int wanted = GET_APPCOMMAND_LPARAM(message.lParam);
    const auto known =
        std::find_if(kMediaCommands.begin(), kMediaCommands.end(),
                     [wanted](const MediaCommand& media) { return media.appCommand == wanted; });
    if (known == kMediaCommands.end()) {
        return kDefault;
    }
    const bool starts = known->command == kPause && m_state.player.state() == PlayState::Stopped;
    perform(starts ? kPlay : known->command);
    return TRUE;
}

Handled MainWindow::onActivate(const Message& message)
{
    if (LOWORD(message.wParam) == WA_INACTIVE) {
        m_lastFocus = GetFocus();
    } else if (m_lastFocus && IsChild(handle(), m_lastFocus)) {
        SetFocus(m_lastFocus);
    } else {
        focusPlaylist();
    }
    return 0;
}

void MainWindow::focusPlaylist()
{
    SetFocus(m_showPlaylist ? m_playlist.list() : m_transport.handle());
}

void MainWindow::onExit(const Command&)
{
    PostMessageA(handle(), WM_CLOSE, 0, 0);
}

void MainWindow::onTogglePlugin(const Command&)
{
    m_showPlugin = !m_showPlugin;
    CheckMenuItem(m_menu.get(), kShowPlugin, m_showPlugin ? MF_CHECKED : MF_UNCHECKED);
    layOut();
}

void MainWindow::onTogglePlaylist(const Command&)
{
    m_showPlaylist = !m_showPlaylist;
    CheckMenuItem(m_menu.get(), kShowPlaylist, m_showPlaylist ? MF_CHECKED : MF_UNCHECKED);
    layOut();
}

void MainWindow::onSwitchFocus(const Command&)
{
    const bool inPlugin = IsChild(m_plugin.handle(), GetFocus()) != FALSE;
    if (inPlugin || !m_showPlugin || !m_plugin.isLoaded()) {
        focusPlaylist();
    } else {
        m_plugin.focusPlugin();
    }
}

// The plug-in pumps messages while it stops: a second close must not come in between.
Handled MainWindow::onClose(const Message& message)
{
    if (m_closing) {
        return 0;
    }
    m_closing = true;
    KillTimer(message.window, kTimer);
    m_state.player.stop();
    m_plugin.unload();
    DestroyWindow(message.window);
    return 0;
}

Handled MainWindow::onDestroy(const Message& message)
{
    m_state.player.onChange({});
    SetMenu(message.window, nullptr);
    PostQuitMessage(0);
    return 0;
}

bool MainWindow::isOverBar(POINT point) const
{
    const int top = barTop();
    return m_showPlugin && m_showPlaylist && point.y >= top && point.y < top + scaled(kBarHeight, handle());
}

Handled MainWindow::onSetCursor(const Message& message)
{
    POINT point{};
    GetCursorPos(&point);
    ScreenToClient(message.window, &point);
    if (LOWORD(message.lParam) != HTCLIENT || reinterpret_cast<HWND>(message.wParam) != message.window ||
        !isOverBar(point)) {
        return kDefault;
    }
    SetCursor(LoadCursorA(nullptr, IDC_SIZENS));
    return TRUE;
}

Handled MainWindow::onLeftDown(const Message& message)
{
    if (isOverBar({GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)})) {
        SetCapture(message.window);
    }
    return 0;
}

Handled MainWindow::onMouseMove(const Message& message)
{
    if (GetCapture() != message.window) {
        return kDefault;
    }
    const int bottom = m_status.rect().top;
    const int most = bottom - m_transport.height() - scaled(80, message.window);
    const int wanted = std::clamp(bottom - GET_Y_LPARAM(message.lParam), scaled(50, message.window),
                                  std::max(most, scaled(50, message.window)));
    m_playlistHeight = MulDiv(wanted, 96, scaled(96, message.window));
    layOut();
    return 0;
}

Handled MainWindow::onLeftUp(const Message& message)
{
    if (GetCapture() == message.window) {
        ReleaseCapture();
    }
    return 0;
}

} // namespace tessera::jukebox
