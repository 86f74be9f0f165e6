#pragma once

#include "artwork/Artwork.h"
#include "library/Database.h"
#include "shell/AllSettings.h"
#include "shell/DatabaseJobs.h"
#include "shell/Fonts.h"
#include "shell/HostBridge.h"
#include "shell/ModalLoops.h"
#include "shell/PaneTable.h"
#include "shell/SkinColours.h"
#include "shell/UiQueue.h"
#include "shell/UnwindTimer.h"
#include "shell/UserPrompt.h"
#include "system/ActivationContext.h"
#include "system/ModuleUse.h"
#include "system/Registry.h"
#include "tokens/TokenParser.h"
#include "ui/ActivityLog.h"
#include "ui/AlbumCatalogue.h"
#include "ui/Commands.h"
#include "windowing/ImageList.h"

#include <atomic>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace tessera {

class ControlWindow;
class PaneAlbumDetails;
class PaneMain;
class PaneOverview;

// The main controller: owns everything between Init and Terminate. At most one is active in the
// process. User-interface thread only, where nothing else is said.
class TesseraMain final : public Commands,
                          public Unwinding,
                          private JobViews,
                          public std::enable_shared_from_this<TesseraMain> {
public:
    // Becomes the active one.
    static std::shared_ptr<TesseraMain> make(const ControlWindow& control);
    // Null: none.
    static TesseraMain* active();
    // Gives up a reference to one that has terminated: at once, or when the loops and host calls of
    // ours that are still below on the stack have unwound.
    static void letGo(const std::shared_ptr<TesseraMain>& main);

    explicit TesseraMain(const ControlWindow& control);
    ~TesseraMain() override;

    // What Init and Terminate do, each step in its order. A host that refuses a step goes without.
    void start(IDispatch* host);
    void terminate();

    void layoutPanes(SIZE size);
    // Where the focus belongs; null while no pane is shown.
    HWND focusTarget() const;
    Prompt& prompt() { return m_prompt; }
    void loadArtistFirstNames();
    void playFiles(const PlayRequest& request);

    // Unwinding
    bool unwound() const override;

    // Commands
    bool isBusy() const override { return m_jobs.busy(); }
    void newDatabase() override;
    void openDatabase() override;
    void exportCurrentList() override;
    void selectPane(int id) override;
    int currentPane() const override { return m_panes.currentId(); }
    void setCurrentView(ListStyle style) override;
    void imageSizeChosen(int index) override;
    void trackCursor(POINT screen, bool moved) override;
    void playAlbums(std::span<Album* const> albums, bool append) override;
    void playAlbumFrom(const Album& album, int start) override;
    void playEntry(int entry) override;
    Host& host() override { return m_host; }
    CriticalSection& hostLock() override { return m_host.hostLock(); }
    bool mayCallHost() const override { return maySelect(); }
    void marksChanged(std::span<Album* const> changed) override;
    void openFolder(const Album& album) override;
    SettingsStore& viewStore() override { return m_store; }
    GeneralSettings& general() override { return m_settings.general; }
    DatabaseSettings& database() override { return m_settings.database; }
    ArtworkSettings& artwork() override { return m_settings.artwork; }
    BalloonSettings& balloon() override { return m_settings.balloon; }
    OverviewSettings& overview() override { return m_settings.overview; }
    AlbumDetailsSettings& albumDetails() override { return m_settings.albumDetails; }
    HookSettings& hooks() override { return m_settings.hooks; }
    Library& library() override { return m_database.library(); }
    AlbumCatalogue& catalogue() override { return m_catalogue; }
    const std::set<std::string>& firstNames() const override { return m_firstNames; }
    const TokenParser& tokens() const override { return m_tokens; }
    Covers& covers() override { return m_artwork; }
    bool coversLoading() const override { return m_artwork.loading(); }
    void stopLoadingCovers() override { m_artwork.stopBackgroundLoading(); }
    HFONT comboFont() const override { return m_fonts.combo(); }
    HFONT wizardCaptionFont() const override { return m_fonts.wizardCaption(); }
    HFONT listFont() const override { return m_fonts.list(); }
    HFONT boldListFont() const override { return m_fonts.boldList(); }
    COLORREF treeBackground() override { return m_colours.treeBackground(); }
    COLORREF treeText() override { return m_colours.treeText(); }
    COLORREF listSelectedText() override { return m_colours.listSelectedText(); }
    COLORREF listSelectedBackground() override { return m_colours.listSelectedBackground(); }
    COLORREF frameFace() override { return m_colours.frameFace(); }
    HIMAGELIST smallIcons() const override { return m_smallIcons.get(); }
    int bandHeight() const override { return m_bandHeight; }
    std::unique_ptr<Log> newLog() override { return m_log.newJob(); }
    void postDialog(std::function<void(HWND owner)> dialog) override;
    void runLoop(const std::function<void()>& loop) override;
    void skinControl(HWND control) override;
    bool usesHostColours() const override { return m_colours.usesHost(); }
    int showMessage(UINT flags, const std::string& text) override;
    HWND ownerWindow() const override { return m_hwndOwner; }

private:
    // JobViews
    Library emptyLibrary() override;
    void releaseFiles() override { m_host.releaseDropped(); }
    void beginFill(Log& log) override;
    bool stepFill() override;
    void jobStarts(bool creating) override;
    void jobEnded(bool loaded, std::vector<KeptMarks> kept, int rememberedPane) override;

    void startSteps(IDispatch* host);
    ArtworkParts artworkParts();
    void startLoadingCovers();
    void loadGeneralSettings();
    void saveGeneralSettings();
    void querySkin();
    void followColours();
    void drawSkinAgain();
    void createPanes();
    void showFirstPane();
    void openLastDatabase();
    template <class PaneType, class... Arguments>
    PaneType* addPane(Arguments&&... arguments);

    bool maySelect() const;
    bool mayOpenDialog() const;
    bool mayReplaceLibrary();
    PlayRequest requestFor(const Album& album) const;
    void showPane(int id);
    void refreshAfterChange(bool reload);
    void runNewDatabase();
    void runOpenDatabase();
    void runExport();
    void runDialog(const std::function<void(HWND owner)>& dialog);
    void saveDatabaseSettings();
    HWND dialogOwner() const;
    void freeLibrary();

    ModuleUse m_use;
    HWND m_hwndOwner;
    int m_bandHeight;
    std::atomic<bool> m_terminating{false};
    bool m_starting = false;
    bool m_settingsLoaded = false;
    std::shared_ptr<ModalLoops> m_modal;
    CountedBoxes m_boxes;
    MessageBoxes* m_previousBoxes = nullptr;
    AssertionHandler m_previousAssertions = nullptr;
    ActivationContext m_context;
    RegistryStore m_store;
    AllSettings m_settings;
    HostBridge m_host;
    SkinColours m_colours;
    Fonts m_fonts;
    ImageList m_smallIcons;
    TokenParser m_tokens;
    std::set<std::string> m_firstNames;
    Database m_database;
    AlbumCatalogue m_catalogue;
    ActivityLog m_log;
    UiQueue m_queue;
    UserPrompt m_prompt;
    Artwork m_artwork;
    PaneTable m_panes;
    PaneMain* m_paneMain = nullptr; // in the table, as the others
    PaneOverview* m_paneOverview = nullptr;
    std::optional<int> m_paneAfterJob; // chosen while it runs
    bool m_detailsFilled = false;      // while a job fills the panes
    PaneAlbumDetails* m_paneAlbumDetails = nullptr;
    DatabaseJobs m_jobs;
};

} // namespace tessera
