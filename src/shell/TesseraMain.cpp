// The life of the controller: start and end, each step in its order.

#include "shell/TesseraMain.h"

#include "base/Errors.h"
#include "shell/ControlWindow.h"
#include "shell/HostRegistry.h"
#include "system/Border.h"
#include "system/MessageBoxes.h"
#include "ui/PaneAlbumDetails.h"
#include "ui/PaneLog.h"
#include "ui/PaneMain.h"
#include "ui/PaneOverview.h"
#include "ui/ids.h"

namespace tessera {

namespace {

constinit std::atomic<TesseraMain*> g_active{nullptr};

void showActiveAssertion(const char* expression, const char* unit, unsigned long line)
{
    if (TesseraMain* const main = TesseraMain::active()) {
        main->prompt().assertion(expression, unit, line);
    }
}

bool isContentPane(int id)
{
    return id == paneId::kOverview || id == paneId::kAlbumDetails || id == paneId::kLog;
}

// A host without the expected interface is done without; any other answer is an error.
void tellRefusal(HWND owner, HRESULT attached)
{
    if (FAILED(attached) && attached != E_NOINTERFACE) {
        showMessage(owner, MB_OK | MB_ICONSTOP, resultMessage(attached));
    }
}

// A step of the end: whatever it meets, the next ones are taken, too.
template <class Step>
void endStep(Step step) noexcept
{
    quietBorder(0, [&] {
        step();
        return 0;
    });
}

// A step that needs the host: one that refuses it goes without.
template <class Step>
void hostStep(Step step)
{
    try {
        step();
    } catch (const HostError&) {
    }
}

} // namespace

TesseraMain* TesseraMain::active()
{
    return g_active;
}

std::shared_ptr<TesseraMain> TesseraMain::make(const ControlWindow& control)
{
    auto main = std::make_shared<TesseraMain>(control);
    main->m_previousBoxes = setMessageBoxes(&main->m_boxes);
    main->m_previousAssertions = setAssertionHandler(showActiveAssertion);
    g_active = main.get();
    return main;
}

void TesseraMain::letGo(const std::shared_ptr<TesseraMain>& main)
{
    if (!main->unwound()) {
        releaseWhenUnwound(main);
    }
}

TesseraMain::TesseraMain(const ControlWindow& control)
    : m_hwndOwner(control.handle()),
      m_bandHeight(control.bandHeight()),
      m_modal(std::make_shared<ModalLoops>()),
      m_boxes(m_modal),
      m_context(ActivationContext::ofModule()),
      m_colours(m_host),
      m_prompt(m_queue, m_hwndOwner),
      m_artwork(artworkParts()),
      m_jobs({m_database, m_host, m_prompt, m_queue, *this, m_tokens, m_terminating}, m_log)
{
}

ArtworkParts TesseraMain::artworkParts()
{
    return {
        .settings = m_settings.artwork,
        .balloon = m_settings.balloon,
        .terminating = m_terminating,
        .background = [this] { return m_colours.treeBackground(); },
        .newLog = [this] { return m_log.newJob(); },
        .loadingChanged =
            [this] {
                if (m_paneMain) {
                    m_paneMain->refreshCommands();
                }
            },
        .mayCallHost = [this] { return maySelect(); },
        .places =
            [this] { return CoverPlaces(m_tokens.artworkFolder(), m_settings.database.artworkDirectories); }};
}

TesseraMain::~TesseraMain()
{
    freeLibrary();
}

bool TesseraMain::unwound() const
{
    return !m_starting && !m_modal->running() && !m_host.inCall() && !m_queue.working();
}

void TesseraMain::start(IDispatch* host)
{
    const std::shared_ptr<TesseraMain> alive = shared_from_this();
    const ActivationScope scope(m_context);
    m_starting = true;
    userBorder(m_hwndOwner, 0, [&] {
        startSteps(host);
        return 0;
    });
    m_starting = false;
}

// The host may end the plug-in inside any call that we make.
void TesseraMain::startSteps(IDispatch* host)
{
    tellRefusal(m_hwndOwner, host ? m_host.attach(host) : E_NOINTERFACE);
    m_tokens.setArtworkFolder(hostArtworkFolder());
    loadGeneralSettings();
    hostStep([this] { querySkin(); });
    if (m_terminating) {
        return;
    }
    m_queue.open();
    m_artwork.initArtwork();
    m_smallIcons = ImageList::fromStrip(resourceId::kSmallIcons, 16);
    m_fonts.create();
    createPanes();
    if (m_terminating) {
        return;
    }
    showFirstPane();
    hostStep([this] { drawSkinAgain(); });
    m_settings.general.firstTime = false;
}

void TesseraMain::loadGeneralSettings()
{
    m_settings = loadAllSettings(m_store);
    m_settingsLoaded = true;
    if (!isContentPane(m_settings.general.lastPane)) {
        m_settings.general.lastPane = paneId::kLog;
    }
    m_panes.forEach([](Pane& pane) { pane.settingsChanged(); });
}

// An end that came before the settings were read leaves the user's as they are.
void TesseraMain::saveGeneralSettings()
{
    if (!m_settingsLoaded) {
        return;
    }
    m_panes.forEach([](Pane& pane) { pane.storeState(); });
    saveAllSettings(m_store, m_settings);
}

void TesseraMain::querySkin()
{
    if (!m_settings.general.supportSkinning) {
        m_colours.setUseHost(false);
        m_host.drawSkin(0);
    } else {
        m_colours.setUseHost(m_host.skin(0, -1) > 0);
        m_colours.read();
    }
}

void TesseraMain::drawSkinAgain()
{
    if (!m_settings.general.supportSkinning) {
        m_host.drawSkin(1);
    }
}

template <class PaneType, class... Arguments>
PaneType* TesseraMain::addPane(Arguments&&... arguments)
{
    auto pane = std::make_unique<PaneType>(*this, std::forward<Arguments>(arguments)...);
    PaneType* const added = pane.get();
    pane->createPane(m_hwndOwner);
    m_panes.add(std::move(pane));
    return added;
}

void TesseraMain::createPanes()
{
    m_paneMain = addPane<PaneMain>();
    m_paneOverview = addPane<PaneOverview>();
    m_paneAlbumDetails = addPane<PaneAlbumDetails>();
    addPane<PaneLog>(m_log);
}

void TesseraMain::showFirstPane()
{
    const DatabaseSettings& database = m_settings.database;
    if (database.loadLastAtStartup && !database.lastUsed.empty()) {
        m_jobs.start(database, false, m_settings.general.lastPane);
    } else {
        selectPane(m_settings.general.lastPane);
    }
}

// The flag ends every long step; the worker is waited for before anything that it uses goes.
void TesseraMain::terminate()
{
    if (m_terminating.exchange(true)) {
        return;
    }
    const std::shared_ptr<TesseraMain> alive = shared_from_this();
    endStep([this] { m_queue.close(); });
    endStep([this] { m_modal->closeAll(); });
    endStep([this] { m_jobs.stop(); });
    endStep([this] { m_artwork.stopBackgroundLoading(); });
    endStep([this] { saveGeneralSettings(); }); // a box that says what is lost may be the end of the windows
    endStep([this] { m_database.saveUnsaved(m_settings.database.lastUsed, systemFiles(), m_prompt); });
    endStep([this] { m_fonts.destroy(); });
    endStep([this] { m_panes.destroyWindows(); });
    endStep([this] { m_artwork.closeLibrary(); });
    endStep([this] {
        if (unwound()) { // else what is below on the stack may still read the records
            freeLibrary();
        }
    });
    endStep([this] { m_artwork.release(); });
    endStep([this] { m_host.release(); });
    endStep([this] { m_smallIcons.reset(); });
    setAssertionHandler(m_previousAssertions);
    setMessageBoxes(m_previousBoxes);
    g_active = nullptr;
}

void TesseraMain::freeLibrary()
{
    m_artwork.closeLibrary();
    m_database.clear();
    m_host.releaseDropped();
}

} // namespace tessera
