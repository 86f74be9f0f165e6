#include "jukebox/CommandIds.h"
#include "jukebox/Screen.h"
#include "jukebox/Walk.h"
#include "jukebox/WideText.h"

#include <algorithm>
#include <array>

// The part of the walk that looks at the album details.
namespace tessera::jukebox {

namespace {

constexpr int kDetailsPane = 2000;
constexpr int kPaneIndex = 1; // in the "Go To" box
constexpr int kTreeLibrary = 2005;
constexpr int kTreeCombo = 2009;
constexpr int kAlbums = 2010;
constexpr int kListCombo = 2011;
constexpr int kAlbumTracks = 2013;
constexpr int kPlayingNow = 2014;
constexpr int kDetailsCombo = 2015;
constexpr UINT kPlayAlbums = 10998;

// Entries of the boxes.
enum Tree { kLibrary, kNew, kFavourites, kCompleted };
enum List { kInfoEntry, kTracksEntry, kPlayingEntry };
constexpr const wchar_t* kDetailsNames[] = {L"album-image", L"track-image", L"comments", L"lyrics", L"notes",
                                            L"custom-1",    L"custom-2",    L"custom-3", L"details"};

constexpr std::size_t kGroupsSeen = 30;    // that fit into a tree, and more
constexpr std::size_t kArtistsTried = 200; // for one with several albums
constexpr std::size_t kAlbumsWanted = 3;
constexpr unsigned kListMs = 1500; // at most, until a list has rows
constexpr unsigned kPaintMs = 120;
constexpr unsigned kPollMs = 20;

bool hasRows(HWND list, unsigned milliseconds)
{
    for (unsigned waited = 0; rowCount(list) <= 0; waited += kPollMs) {
        if (waited > milliseconds) {
            return false;
        }
        Sleep(kPollMs);
    }
    return true;
}

void expand(HWND tree, HTREEITEM node)
{
    (void)ask(tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(node));
}

} // namespace

HWND Walk::inDetailsPane(int id) const
{
    return childWithId(childWithId(m_control, kDetailsPane), id);
}

int Walk::chosenInDetails(int comboId) const
{
    return static_cast<int>(ask(inDetailsPane(comboId), CB_GETCURSEL).value_or(0));
}

void Walk::commandToDetails(UINT command)
{
    PostMessageA(childWithId(m_control, kDetailsPane), WM_COMMAND, MAKEWPARAM(command, 0), 0);
}

// Answers the tree; its roots are open.
HWND Walk::showTree(int tree)
{
    if (!IsWindowVisible(childWithId(m_control, kDetailsPane))) {
        selectPane(kPaneIndex, kDetailsPane);
    }
    chooseEntry(inDetailsPane(kTreeCombo), tree);
    const HWND window = inDetailsPane(kTreeLibrary + tree);
    for (const HTREEITEM root : nodesBelow(window, nullptr, kGroupsSeen)) {
        expand(window, root);
    }
    return window;
}

void Walk::selectNode(HWND tree, HTREEITEM node)
{
    if (!IsWindowVisible(tree) || !node) {
        return;
    }
    (void)ask(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(node));
    (void)ask(tree, WM_VSCROLL, SB_TOP);
    (void)ask(tree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(node));
    m_report.step("Selected '" + toUtf8(fromCodePage(nodeText(tree, node))) + "', " +
                  std::to_string(rowCount(inDetailsPane(kAlbums))) + " albums");
}

void Walk::selectRoot(HWND tree)
{
    for (const HTREEITEM root : nodesBelow(tree, nullptr, 1)) {
        selectNode(tree, root);
    }
}

// The first with so many albums, or the one that comes closest.
void Walk::selectArtist(HWND tree, std::size_t fewestAlbums)
{
    HTREEITEM best = nullptr;
    std::size_t bestCount = 0;
    for (const HTREEITEM root : nodesBelow(tree, nullptr, 1)) {
        for (const HTREEITEM artist : nodesBelow(tree, root, kArtistsTried)) {
            const std::size_t count = nodesBelow(tree, artist, fewestAlbums).size();
            if (count > bestCount) {
                best = artist;
                bestCount = count;
            }
            if (count >= fewestAlbums) {
                break;
            }
        }
    }
    expand(tree, best);
    selectNode(tree, best);
}

// With its tracks, when they are shown.
void Walk::selectAlbum(int row)
{
    const HWND albums = inDetailsPane(kAlbums);
    clickRow(albums, row);
    const HWND tracks = inDetailsPane(kAlbumTracks);
    if (rowCount(albums) > 0 && IsWindowVisible(tracks) && hasRows(tracks, kListMs)) {
        selectRows(tracks, std::array{0});
    }
    waitForCovers();
}

void Walk::takeDetailsPictures()
{
    const HWND tree = showTree(kLibrary);
    const int list = chosenInDetails(kListCombo);
    chooseEntry(inDetailsPane(kListCombo), kInfoEntry);
    selectRoot(tree);
    selectAlbum(0);
    takeNamedPicture(L"album-details");
    chooseEntry(inDetailsPane(kListCombo), kTracksEntry);
    selectArtist(tree, kAlbumsWanted);
    selectAlbum(0);
    takeNamedPicture(L"album-details-library");
    chooseEntry(inDetailsPane(kListCombo), list);
}

// The trees of albums with something in common, each with its groups open.
void Walk::takeTreePictures()
{
    const struct {
        Tree tree;
        const wchar_t* name;
    } pictures[] = {{kNew, L"album-details-new"}, {kFavourites, L"album-details-favourites"}};
    for (const auto& picture : pictures) {
        const HWND tree = showTree(picture.tree);
        for (const HTREEITEM root : nodesBelow(tree, nullptr, kGroupsSeen)) {
            for (const HTREEITEM group : nodesBelow(tree, root, kGroupsSeen)) {
                expand(tree, group);
            }
        }
        selectRoot(tree);
        selectAlbum(0);
        takeNamedPicture(picture.name);
    }
    selectArtist(showTree(kCompleted), kAlbumsWanted);
    selectAlbum(1);
    takeNamedPicture(L"album-details-completed");
    (void)showTree(kLibrary);
}

void Walk::takeTrackDetailsPictures()
{
    selectArtist(showTree(kLibrary), kAlbumsWanted);
    selectAlbum(0);
    const HWND combo = inDetailsPane(kDetailsCombo);
    const int chosen = chosenInDetails(kDetailsCombo);
    for (std::size_t i = 0; i < std::size(kDetailsNames); ++i) {
        chooseEntry(combo, static_cast<int>(i));
        Sleep(kPaintMs);
        takeNamedPicture(L"album-details-" + std::wstring(kDetailsNames[i]));
    }
    chooseEntry(combo, chosen);
}

// The selected album plays meanwhile.
void Walk::takePlayingNowPicture()
{
    const HWND combo = inDetailsPane(kListCombo);
    const int chosen = chosenInDetails(kListCombo);
    commandToDetails(kPlayAlbums);
    chooseEntry(combo, kPlayingEntry);
    const HWND list = inDetailsPane(kPlayingNow);
    if (hasRows(list, kListMs)) {
        m_report.step("Playing " + std::to_string(rowCount(list)) + " tracks");
        selectRows(list, std::array{0});
        Sleep(kPaintMs);
    } else {
        m_report.step("Nothing plays");
    }
    takeNamedPicture(L"album-details-playing-now");
    PostMessageA(m_mainWindow, WM_COMMAND, MAKEWPARAM(kStop, 0), 0);
    PostMessageA(m_mainWindow, WM_COMMAND, MAKEWPARAM(kClearPlaylist, 0), 0);
    chooseEntry(combo, chosen);
}

} // namespace tessera::jukebox
