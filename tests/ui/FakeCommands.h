#pragma once

#include "artwork/Covers.h"
#include "support/FakeHost.h"
#include "support/MemorySettingsStore.h"
#include "system/Threads.h"
#include "tokens/TokenParser.h"
#include "ui/AlbumCatalogue.h"
#include "ui/Commands.h"

#include <string>
#include <vector>

namespace tessera {

// Lists as the test sets them; every album shows the default cover.
class FakeCovers : public Covers {
public:
    void addListener(CoverListener& listener) override { listeners.push_back(&listener); }
    void removeListener(CoverListener& listener) override { std::erase(listeners, &listener); }
    int imageIndex(Album&) override { return 0; }
    std::string pictureFile(const Album& album) const override { return album.thumbnailFile; }
    HIMAGELIST large() const override { return lists[0]; }
    HIMAGELIST medium() const override { return lists[1]; }
    HIMAGELIST smallList() const override { return lists[2]; }
    HIMAGELIST balloon() const override { return lists[3]; }
    SIZE largeSize() const override { return size; }

    std::vector<CoverListener*> listeners;
    HIMAGELIST lists[4] = {};
    SIZE size{75, 75};
};

// Keeps the lines of all jobs together.
class LogLines final : public Log {
public:
    explicit LogLines(std::vector<std::string>& lines) : m_lines(lines) {}
    void startTimer() override {}
    void indent() override {}
    void outdent() override {}
    void line(const std::string& text) override { m_lines.push_back(text); }
    void progress(std::uint32_t, std::uint32_t) override {}

private:
    std::vector<std::string>& m_lines;
};

// Remembers what panes ask for.
class FakeCommands : public Commands {
public:
    FakeCommands();
    ~FakeCommands() override;

    bool isBusy() const override { return busy; }
    void newDatabase() override { calls.emplace_back("new"); }
    void openDatabase() override { calls.emplace_back("open"); }
    void exportCurrentList() override { calls.emplace_back("export"); }
    void selectPane(int id) override
    {
        pane = id;
        calls.push_back("pane " + std::to_string(id));
    }
    int currentPane() const override { return pane; }
    void setCurrentView(ListStyle style) override;
    void imageSizeChosen(int index) override { calls.push_back("size " + std::to_string(index)); }
    void trackCursor(POINT screen, bool moved) override;

    void playAlbums(std::span<Album* const> albums, bool append) override;
    void playAlbumFrom(const Album& album, int start) override;
    void playEntry(int entry) override { calls.push_back("entry " + std::to_string(entry)); }
    Host& host() override { return fakeHost; }
    CriticalSection& hostLock() override { return m_hostLock; }
    bool mayCallHost() const override { return !busy; }
    void marksChanged(std::span<Album* const> changed) override;
    void openFolder(const Album& album) override { calls.push_back("folder " + album.path); }
    SettingsStore& viewStore() override { return store; }
    GeneralSettings& general() override { return generalSettings; }
    DatabaseSettings& database() override { return databaseSettings; }
    ArtworkSettings& artwork() override { return artworkSettings; }
    BalloonSettings& balloon() override { return balloonSettings; }
    OverviewSettings& overview() override { return overviewSettings; }
    AlbumDetailsSettings& albumDetails() override { return albumDetailsSettings; }
    HookSettings& hooks() override { return hookSettings; }

    Library& library() override;
    // Filled anew when the library is asked for and has another number of albums.
    AlbumCatalogue& catalogue() override { return m_catalogue; }
    const std::set<std::string>& firstNames() const override { return names; }
    const TokenParser& tokens() const override;
    Covers& covers() override { return fakeCovers; }

    HFONT comboFont() const override { return m_hFontCombo; }
    HFONT wizardCaptionFont() const override { return m_hFontBold; }
    HFONT listFont() const override { return m_hFontList; }
    HFONT boldListFont() const override { return m_hFontBold; }
    COLORREF treeBackground() override { return background; }
    COLORREF treeText() override { return text; }
    COLORREF listSelectedText() override { return GetSysColor(COLOR_HIGHLIGHT); }
    COLORREF listSelectedBackground() override { return GetSysColor(COLOR_HIGHLIGHTTEXT); }
    COLORREF frameFace() override { return face; }
    HIMAGELIST smallIcons() const override { return icons; }
    int bandHeight() const override { return 32; }
    std::unique_ptr<Log> newLog() override { return std::make_unique<LogLines>(logged); }
    void postDialog(std::function<void(HWND owner)> dialog) override { dialogs.push_back(std::move(dialog)); }
    void skinControl(HWND) override {}
    bool usesHostColours() const override { return hostColours; }
    int showMessage(UINT flags, const std::string& text) override;
    HWND ownerWindow() const override { return owner; }

    // For what is made from now on.
    void setListFont(int height);

    bool busy = false;
    bool hostColours = false;
    int pane = paneId::kLog;
    HWND owner = nullptr;
    HIMAGELIST icons = nullptr;
    COLORREF background = GetSysColor(COLOR_WINDOW);
    COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    COLORREF face = GetSysColor(COLOR_BTNFACE);
    mutable int libraryLooks = 0;
    Library records;
    FakeCovers fakeCovers;
    MemorySettingsStore store;
    std::vector<std::string> calls;
    std::vector<std::string> messages;
    std::vector<std::function<void(HWND owner)>> dialogs; // that wait to be run
    std::vector<bool> cursorMoved;
    std::vector<Album*> marked;
    std::vector<std::string> logged;
    std::set<std::string> names;
    test::FakeHost fakeHost;

    GeneralSettings generalSettings;
    DatabaseSettings databaseSettings;
    ArtworkSettings artworkSettings;
    BalloonSettings balloonSettings;
    OverviewSettings overviewSettings;
    AlbumDetailsSettings albumDetailsSettings;
    HookSettings hookSettings;

private:
    TokenParser m_tokens;
    AlbumCatalogue m_catalogue;
    CriticalSection m_hostLock;
    HFONT m_hFontCombo;
    HFONT m_hFontList;
    HFONT m_hFontBold;
};

// A window like the control's, with the sizes that a host gives it.
HWND makeParentWindow(int width, int height);
// Handles messages for at least that long.
void pumpMessages(DWORD milliseconds);

} // namespace tessera
