#pragma once

#include "AlbumFixture.h"
#include "ui/PaneOverview.h"
#include "ui/ids.h"

#include <gtest/gtest.h>

namespace tessera {

// The overview over four albums, in a window on the screen.
class PaneOverviewTest : public testing::Test {
protected:
    PaneOverviewTest()
    {
        initCommonControls();
        m_hParent = makeParentWindow(900, 600);
        m_commands.owner = m_hParent;
        m_commands.background = RGB(255, 255, 250);
        m_commands.overviewSettings.listviewStyle = 1;
        m_commands.databaseSettings.lastUsed = "C:\\a.ts2";
        Artist& quartet = addArtist(m_commands.records, "The Harbour Quartet");
        Artist& lumen = addArtist(m_commands.records, "LUMEN");
        addAlbum(m_commands.records, "Early", lumen, 1999);
        addAlbum(m_commands.records, "Yearling", quartet, 1975);
        addAlbum(m_commands.records, "Rock & Roll", lumen, 2010);
        addAlbum(m_commands.records, "Tidewater", quartet, 0);
    }
    ~PaneOverviewTest() override
    {
        m_pane.reset();
        DestroyWindow(m_hParent);
    }

    void open()
    {
        m_pane.reset();
        m_pane = std::make_unique<PaneOverview>(m_commands);
        ASSERT_TRUE(m_pane->createPane(m_hParent));
        MoveWindow(m_pane->window(), 0, 0, 900, 600, TRUE);
        SendMessageA(m_pane->window(), kActivateMessage, 1, 0);
        ShowWindow(m_hParent, SW_SHOWNORMAL);
        SetForegroundWindow(m_hParent);
    }
    HWND child(int id) const { return GetDlgItem(m_pane->window(), id); }
    ListView list() const { return ListView(child(controlId::kOverviewList)); }
    Edit box() const { return Edit(child(controlId::kCriteria)); }
    void type(const char* text) const { box().setText(text); }
    void send(UINT command) const { SendMessageA(m_pane->window(), WM_COMMAND, command, 0); }
    void key(HWND window, WPARAM key) const { SendMessageA(window, WM_KEYDOWN, key, 1); }
    void clickSwitch(int id) const { SendMessageA(child(id), BM_CLICK, 0, 0); }
    std::vector<std::string> titles() const
    {
        std::vector<std::string> titles;
        for (int row = 0; row < list().count(); ++row)
            titles.push_back(m_pane->albumList().album(row).displayTitle);
        return titles;
    }
    void clickColumn(int column) const
    {
        NMLISTVIEW click{};
        click.hdr = {list().handle(), controlId::kOverviewList, LVN_COLUMNCLICK};
        click.iItem = -1;
        click.iSubItem = column;
        SendMessageA(m_pane->window(), WM_NOTIFY, controlId::kOverviewList, reinterpret_cast<LPARAM>(&click));
    }
    void selectOnly(std::initializer_list<int> rows) const
    {
        list().select(-1, false);
        for (const int row : rows)
            list().select(row);
    }
    // One colour of the list's client area; painted first.
    COLORREF pixel(int x, int y) const
    {
        RedrawWindow(m_pane->window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        return GetPixel(WindowDc(list().handle()).dc(), x, y);
    }
    RECT cell(int item) const
    {
        RECT rect{LVIR_ICON, 0, 0, 0};
        list().send(LVM_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&rect));
        return rect;
    }

    using Titles = std::vector<std::string>;
    FakeCommands m_commands;
    ColouredCovers m_covers{m_commands.fakeCovers};
    HWND m_hParent = nullptr;
    std::unique_ptr<PaneOverview> m_pane;
};

} // namespace tessera
