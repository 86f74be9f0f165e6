#pragma once

#include "library/Records.h"
#include "ports/Log.h"
#include "ports/Prompt.h"
#include "ports/SettingsStore.h"
#include "settings/Settings.h"
#include "ui/Pane.h"

#include <commctrl.h>
#include <functional>
#include <memory>
#include <set>
#include <span>
#include <string>

namespace tessera {

class AlbumCatalogue;
class Covers;
class CriticalSection;
class Host;
class TokenParser;

// The controller as panes, pages and dialogs see it. User-interface thread only, except isBusy.
class Commands {
public:
    virtual ~Commands() = default;

    // True while a worker creates or loads: nobody touches the library then.
    virtual bool isBusy() const = 0;

    virtual void newDatabase() = 0;
    virtual void openDatabase() = 0;
    virtual void exportCurrentList() = 0;
    // Shows it; while a job runs, when that is over. Refused while the host is inside a call.
    virtual void selectPane(int id) = 0;
    virtual int currentPane() const = 0;
    virtual void setCurrentView(ListStyle style) = 0;
    virtual void imageSizeChosen(int index) = 0;            // index of the size combo
    virtual void trackCursor(POINT screen, bool moved) = 0; // to every pane

    // The albums' tracks in track order; the first album takes the place of what plays unless they
    // are appended. Throws HostError.
    virtual void playAlbums(std::span<Album* const> albums, bool append) = 0;
    // One album takes the place of what plays; `start` says with which of its tracks, in track order.
    virtual void playAlbumFrom(const Album& album, int start) = 0;
    // Goes on with another entry of the host's playlist. Both throw HostError.
    virtual void playEntry(int entry) = 0;
    // The host, for lists that read it as they show it; its lock is held meanwhile. False while it
    // may not be called: a worker runs, or a call is under way below on the stack.
    virtual Host& host() = 0;
    virtual CriticalSection& hostLock() = 0;
    virtual bool mayCallHost() const = 0;

    // The marks (rank, favourite, new) of these albums were changed in memory: writes them into the
    // file in use, with those that could not be written before, and tells every pane.
    virtual void marksChanged(std::span<Album* const> changed) = 0;
    // Shows a folder in the system's own browser of files.
    virtual void openFolder(const Album& album) = 0;
    // Where views keep how they were left, beside the settings.
    virtual SettingsStore& viewStore() = 0;

    virtual GeneralSettings& general() = 0;
    virtual DatabaseSettings& database() = 0;
    virtual ArtworkSettings& artwork() = 0;
    virtual BalloonSettings& balloon() = 0;
    virtual OverviewSettings& overview() = 0;
    virtual AlbumDetailsSettings& albumDetails() = 0;
    virtual HookSettings& hooks() = 0;

    virtual Library& library() = 0;
    // The library's texts and keys for lists: filled before the panes reload, emptied after they
    // have let go of their records.
    virtual AlbumCatalogue& catalogue() = 0;
    // Upper-case first names of artists; empty while the setting names no file.
    virtual const std::set<std::string>& firstNames() const = 0;
    virtual const TokenParser& tokens() const = 0;
    virtual Covers& covers() = 0;
    // True while the background loader runs: the image size stays as it is.
    virtual bool coversLoading() const { return false; }
    virtual void stopLoadingCovers() {}

    virtual HFONT comboFont() const = 0;
    virtual HFONT wizardCaptionFont() const = 0;
    virtual HFONT listFont() const = 0;
    virtual HFONT boldListFont() const = 0;
    virtual COLORREF treeBackground() = 0;
    virtual COLORREF treeText() = 0;
    virtual COLORREF listSelectedText() = 0;
    virtual COLORREF listSelectedBackground() = 0;
    virtual COLORREF frameFace() = 0;
    // The 25 small icons, 16 by 16; null when they could not be made.
    virtual HIMAGELIST smallIcons() const = 0;
    // Height in pixels of the strip for the main pane.
    virtual int bandHeight() const = 0;

    // To the activity log.
    virtual std::unique_ptr<Log> newLog() = 0;
    // Runs a dialog of a pane's when the message that asked for it is done with, or not at all when
    // none may be opened then. The pane's window may be gone when the dialog's loop has ended.
    virtual void postDialog(std::function<void(HWND owner)> dialog) = 0;
    // Runs a menu or a drag, which handles messages until it is over; the plug-in's end cancels it, and
    // the pane's window may be gone then. No dialog opens meanwhile.
    virtual void runLoop(const std::function<void()>& loop) { loop(); }
    // Lets the host skin a control of ours when its colours are in use.
    virtual void skinControl(HWND control) = 0;
    virtual bool usesHostColours() const = 0;
    // The one message box; answers the button pressed.
    virtual int showMessage(UINT flags, const std::string& text) = 0;
    virtual HWND ownerWindow() const = 0;
};

} // namespace tessera
