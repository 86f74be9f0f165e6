#include "FakeCommands.h"
#include "ui/PaneAlbumDetails.h"
#include "ui/PaneOverview.h"
#include "ui/ids.h"
#include "windowing/Control.h"
#include "windowing/Drawing.h"

#include <gtest/gtest.h>

namespace tessera {
namespace {

class ContentPaneTest : public testing::Test {
protected:
    ContentPaneTest()
    {
        m_hParent = makeParentWindow(600, 400);
        m_overview.createPane(m_hParent);
        m_details.createPane(m_hParent);
        for (const HWND window : {m_overview.window(), m_details.window()})
            MoveWindow(window, 0, 32, 600, 368, TRUE);
        ShowWindow(m_hParent, SW_SHOWNOACTIVATE);
    }
    ~ContentPaneTest() override { DestroyWindow(m_hParent); }

    void addAlbums(int count)
    {
        for (int id = 1; id <= count; ++id)
            m_commands.records.albums[id] = std::make_unique<Album>();
        m_commands.records.artists[1] = std::make_unique<Artist>();
    }

    FakeCommands m_commands;
    HWND m_hParent = nullptr;
    PaneOverview m_overview{m_commands};
    PaneAlbumDetails m_details{m_commands};
};

TEST_F(ContentPaneTest, LibraryIsLeftAloneWhileBusyAndByPainting)
{
    addAlbums(2);
    m_overview.reload();
    m_details.reload();
    SendMessageA(m_overview.window(), WM_USER, 1, 0);
    m_commands.libraryLooks = 0;
    RedrawWindow(m_overview.window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    m_commands.busy = true;
    m_overview.clearRecords();
    m_details.clearRecords();
    m_overview.setView(ListStyle::Icons);
    m_overview.settingsChanged();
    RedrawWindow(m_overview.window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    EXPECT_EQ(m_commands.libraryLooks, 0);
}

// Whether anything stands on the background of the pane's album list.
bool showsText(HWND pane, COLORREF background)
{
    RedrawWindow(pane, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    const HWND list = GetDlgItem(pane, controlId::kOverviewList);
    const WindowDc dc(list);
    for (int y = 0; y < 64; ++y) {
        for (int x = 100; x < 180; ++x) {
            if (GetPixel(dc.dc(), x, y) != background)
                return true;
        }
    }
    return false;
}

TEST_F(ContentPaneTest, WhatAJobFilledInIsPaintedWhenItIsOver)
{
    SendMessageA(m_overview.window(), WM_USER, 1, 0);
    m_commands.busy = true;
    addAlbums(2);
    m_overview.reload();
    EXPECT_FALSE(showsText(m_overview.window(), m_commands.background));
    m_commands.busy = false;
    EXPECT_TRUE(showsText(m_overview.window(), m_commands.background));
}

} // namespace
} // namespace tessera
