#pragma once

#include "jukebox/PlaylistView.h"
#include "jukebox/PluginArea.h"
#include "jukebox/TransportBar.h"
#include "windowing/Control.h"
#include "windowing/Window.h"

namespace tessera::jukebox {

// The player's window: transport, the plug-in's area, the playlist, a status bar.
class MainWindow : public Mapped<MainWindow> {
public:
    explicit MainWindow(HostState& state);
    ~MainWindow() override;
    static std::span<const MapEntry<MainWindow>> messageMap();

    bool open();
    // Handles messages until the window is closed.
    void run();

protected:
    WindowClass windowClass() const override;

private:
    Handled onCreate(const Message& message);
    Handled onSize(const Message& message);
    Handled onMinimum(const Message& message);
    Handled onErase(const Message& message);
    Handled onTimer(const Message& message);
    Handled onLoadPlugin(const Message& message);
    Handled onPlayerChanged(const Message& message);
    Handled onAppCommand(const Message& message);
    Handled onActivate(const Message& message);
    Handled onClose(const Message& message);
    Handled onDestroy(const Message& message);
    Handled onSetCursor(const Message& message);
    Handled onLeftDown(const Message& message);
    Handled onMouseMove(const Message& message);
    Handled onLeftUp(const Message& message);
    void onTransport(const Command& command);
    void onPlayLibrary(const Command& command);
    void onClearPlaylist(const Command& command);
    void onExit(const Command& command);
    void onTogglePlugin(const Command& command);
    void onTogglePlaylist(const Command& command);
    void onSwitchFocus(const Command& command);

    void layOut();
    void perform(UINT command);
    void refresh();
    void showLibraryCounts();
    void focusPlaylist();
    bool keepsItsKeys(const MSG& message) const;
    int barTop() const; // upper edge of the bar between plug-in and playlist
    bool isOverBar(POINT point) const;

    HostState& m_state;
    Palette m_colours;
    TransportBar m_transport;
    PluginArea m_plugin;
    PlaylistView m_playlist;
    StatusBar m_status;
    MenuHandle m_menu;
    int m_playlistHeight = 170; // at 96 dpi
    bool m_showPlugin = true;
    bool m_showPlaylist = true;
    bool m_closing = false;
    HWND m_lastFocus = nullptr;
};

} // namespace tessera::jukebox
