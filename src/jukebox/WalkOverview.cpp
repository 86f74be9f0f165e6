#include "jukebox/Walk.h"

#include "jukebox/Screen.h"
#include "jukebox/WideText.h"

#include <algorithm>

// The part of the walk that looks at the album list.
namespace tessera::jukebox {

namespace {

constexpr int kOverviewPane = 1000;
constexpr int kOverviewList = 1001;
constexpr int kCriteria = 1003;
constexpr int kPaneIndex = 0; // in the "Go To" box
constexpr UINT kViewIcons = 57602;
constexpr UINT kViewTiles = 57604;
constexpr UINT kViewDetails = 57605;
constexpr int kArtistColumn = 1;
constexpr int kRestingItem = 4;

constexpr unsigned kCoversMs = 2500; // at most, for the covers in view
constexpr unsigned kQuietMs = 300;
constexpr unsigned kSearchMs = 600;
constexpr unsigned kBalloonMs = 3000; // two ticks of the plug-in and its delay of 2 s
constexpr int kRests = 2;
constexpr unsigned kPollMs = 50;

bool isBalloonShown()
{
    const std::vector<HWND> windows = topLevelWindows();
    return std::any_of(windows.begin(), windows.end(),
                       [](HWND window) { return classOf(window).starts_with("BalloonHelpClass"); });
}

} // namespace

void Walk::takeOverviewPictures()
{
    selectPane(kPaneIndex, kOverviewPane);
    const HWND pane = childWithId(m_control, kOverviewPane);
    const HWND list = descendantWithId(pane, kOverviewList, WC_LISTVIEWA);
    const HWND criteria = descendantWithId(pane, kCriteria, WC_EDITA);
    showView(kViewIcons);
    takeNamedPicture(L"overview-icons");
    showView(kViewDetails);
    takeNamedPicture(L"overview-details");
    searchForArtist(list, criteria);
    takeNamedPicture(L"overview-search");
    if (criteria && IsWindowVisible(criteria)) {
        (void)setText(criteria, L"");
    }
    showView(kViewTiles);
    restOnAlbum(list);
    takeNamedPicture(L"overview-balloon");
    SetCursorPos(0, 0);
}

// Pictures are taken with the covers that are seen.
void Walk::showView(UINT command)
{
    PostMessageA(m_mainPane, WM_COMMAND, MAKEWPARAM(command, 0), 0);
    waitForCovers();
}

void Walk::waitForCovers()
{
    const unsigned start = m_report.elapsedMs();
    m_lastChange = start;
    do {
        Sleep(kPollMs);
        if (m_log.update()) {
            noteLogChange();
        }
    } while (m_report.elapsedMs() - m_lastChange < kQuietMs && m_report.elapsedMs() - start < kCoversMs);
    (void)answers(m_control);
}

// For the artist of the album in the middle: there is one in every library.
void Walk::searchForArtist(HWND list, HWND criteria)
{
    const auto row = rowOf(list, rowCount(list) / 2, kArtistColumn + 1);
    if (!criteria || !IsWindowVisible(criteria) || !row || row->empty()) {
        m_report.step("There is no search box to type into");
        return;
    }
    const std::wstring artist = fromCodePage(row->at(kArtistColumn));
    m_report.step("Searching for " + toUtf8(artist));
    (void)setText(criteria, artist);
    Sleep(kSearchMs);
    waitForCovers();
}

// With the real pointer: balloons look where it is. One that a late message of the screen closes
// again comes back when the pointer does.
void Walk::restOnAlbum(HWND list)
{
    const int item = std::min(rowCount(list) - 1, kRestingItem);
    if (item < 0) {
        m_report.step("There is no album to rest on");
        return;
    }
    SetForegroundWindow(m_mainWindow);
    for (int attempt = 0; attempt < kRests; ++attempt) {
        auto middle = middleOfRow(list, item, LVIR_BOUNDS);
        if (!middle) {
            break;
        }
        ClientToScreen(list, &*middle);
        SetCursorPos(middle->x, middle->y);
        const unsigned start = m_report.elapsedMs();
        while (!isBalloonShown() && m_report.elapsedMs() - start < kBalloonMs) {
            Sleep(kPollMs);
        }
        Sleep(kQuietMs);
        if (isBalloonShown()) {
            return;
        }
        SetCursorPos(0, 0);
        Sleep(kSearchMs);
    }
    m_report.step("No balloon came up");
}

} // namespace tessera::jukebox
