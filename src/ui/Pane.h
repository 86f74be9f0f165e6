#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <windows.h>

namespace tessera {

struct Album;

// Pane ids are their windows' child ids and what the settings remember.
namespace paneId {
inline constexpr int kMain = 0;
inline constexpr int kOverview = 1000;
inline constexpr int kAlbumDetails = 2000;
inline constexpr int kLog = 3000;
} // namespace paneId

// Tells a pane to show (wParam 1) or hide (wParam 0) itself.
inline constexpr UINT kActivateMessage = WM_USER;

enum class ListStyle { Icons = 0, Details = 1, Tiles = 3 };

// Of a setting; any other number is the pane's own style.
constexpr ListStyle listStyleOf(std::int32_t setting, ListStyle own)
{
    const bool known = setting == 0 || setting == 1 || setting == 3;
    return known ? static_cast<ListStyle>(setting) : own;
}

// What every pane offers to the controller. User-interface thread only.
class Pane {
public:
    virtual ~Pane() = default;
    virtual int id() const = 0;
    virtual HWND window() const = 0;
    virtual void settingsChanged() = 0;
    virtual void storeState() = 0;
    // After a database change; fills trees and lists from the library. A job that is still busy
    // waits for this thread meanwhile.
    virtual void reload() = 0;
    // The library is about to be emptied: let go of every record.
    virtual void clearRecords() = 0;
    // These albums have other marks (rank, favourite, new) now.
    virtual void marksChanged(std::span<Album* const>) {}
    virtual void setView(ListStyle style) = 0;
    // Every tick of the main pane's timer; `moved` when the pointer is not where it was.
    virtual void trackCursor(POINT screen, bool moved) = 0;
    // The list that "Save" exports and the base name of its file; null when there is none.
    virtual HWND exportList() const { return nullptr; }
    virtual const char* exportBaseName() const { return ""; }
    virtual std::string exportText(int, int) const { return {}; } // of an item in a column
    // Where the focus goes when the pane is entered by key.
    virtual HWND focusWindow() const { return window(); }
};

} // namespace tessera
