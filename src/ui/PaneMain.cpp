#include "ui/PaneMain.h"

#include "base/Errors.h"
#include "ui/Commands.h"
#include "ui/ids.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <array>

namespace tessera {

namespace {

constexpr UINT_PTR kTimer = 1;
constexpr UINT kTimerInterval = 333; // milliseconds

struct MainButton {
    UINT command = 0; // 0: a gap
    int image = 0;
    const char* toolTip = "";
    BYTE style = BTNS_SEP;
    bool enabled = false; // when nothing is going on
};

constexpr MainButton kButtons[] = {
    {commandId::kOpenDatabase, icon::kOpen, "Open an Tessera database", BTNS_BUTTON, true},
    {commandId::kNewDatabase, icon::kNew, "Create a new Tessera database", BTNS_BUTTON, true},
    {},
    {commandId::kExportList, icon::kSave, "Save the current listview contents", BTNS_BUTTON, true},
    {},
    {commandId::kReserved, icon::kReserved, "", BTNS_BUTTON, false},
    {},
    {commandId::kViewIcons, icon::kIcons, "Icons", BTNS_CHECKGROUP, true},
    {commandId::kViewTiles, icon::kTiles, "Tiles", BTNS_CHECKGROUP, true},
    {commandId::kViewDetails, icon::kDetails, "Details", BTNS_CHECKGROUP, true},
    {},
    {commandId::kOptions, icon::kOptions, "Options", BTNS_BUTTON, false},
    {},
    {commandId::kAbout, icon::kAbout, "About Tessera", BTNS_BUTTON, false},
};

constexpr struct {
    UINT command;
    ListStyle view;
} kViews[] = {{commandId::kViewIcons, ListStyle::Icons},
              {commandId::kViewTiles, ListStyle::Tiles},
              {commandId::kViewDetails, ListStyle::Details}};

constexpr struct {
    const char* text;
    int pane;
    int image;
} kPanes[] = {{"Overview", paneId::kOverview, icon::kOverview},
              {"Album Details", paneId::kAlbumDetails, icon::kAlbum},
              {"Activity Log", paneId::kLog, icon::kLog}};

constexpr struct {
    const char* text;
    int pixels; // 0: the user's own size
} kImageSizes[] = {{"75x75", 75},    {"100x100", 100}, {"125x125", 125}, {"150x150", 150},
                   {"175x175", 175}, {"200x200", 200}, {"Custom", 0}};

constexpr int kViewComboWidth = 140;
constexpr int kImageSizeComboWidth = 100;
constexpr int kLeastComboWidth = 64; // in a narrow window
constexpr int kComboHeight = 100;    // with the list dropped down
constexpr int kToolbarWidth = 140;
constexpr int kToolbarHeight = 30;

} // namespace

PaneMain::PaneMain(Commands& commands) : m_commands(commands) {}

PaneMain::~PaneMain()
{
    destroy();
}

std::span<const MapEntry<PaneMain>> PaneMain::messageMap()
{
    static constexpr IdRange kAnyControl{0, 0xFFFF};
    static constexpr std::array<MapEntry<PaneMain>, 9> kMap{{
        {WM_CREATE, &PaneMain::onCreate},
        {WM_DESTROY, &PaneMain::onDestroy},
        {WM_SIZE, &PaneMain::onSize},
        {WM_ERASEBKGND, &PaneMain::onErase},
        {WM_TIMER, &PaneMain::onTimer},
        {IdRange{commandId::kNewDatabase, commandId::kOptions}, &PaneMain::onButton},
        {controlId::kViewCombo, CBN_SELCHANGE, &PaneMain::onPaneChosen},
        {controlId::kImageSizeCombo, CBN_SELCHANGE, &PaneMain::onImageSizeChosen},
        {kAnyControl, TTN_GETDISPINFOA, &PaneMain::onToolTip},
    }};
    return kMap;
}

bool PaneMain::createPane(HWND parent)
{
    const WindowStyle style{WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, WS_EX_CONTROLPARENT};
    const bool created = create(parent, paneId::kMain, {}, style);
    if (!created)
        assertionFailed("this->GetSafeHwnd()", "PaneMain", __LINE__);
    return created;
}

Handled PaneMain::onCreate(const Message& message)
{
    createViewCombo();
    createImageSizeCombo();
    createToolbar();
    createRebar();
    for (const Control& control :
         {Control(m_rbrMain), Control(m_tbrMain), Control(m_cboImageSize), Control(m_cboView)})
        m_commands.skinControl(control.handle());
    settingsChanged();
    SetTimer(message.window, kTimer, kTimerInterval, nullptr);
    return 0;
}

void PaneMain::createViewCombo()
{
    const RECT place{0, 0, scaled(kViewComboWidth, handle()), kComboHeight};
    if (!m_cboView.create(handle(), controlId::kViewCombo, place,
                          CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP)) {
        assertionFailed("m_pcboView", "PaneMain", __LINE__);
        return;
    }
    m_cboView.setFont(m_commands.comboFont());
    m_cboView.setImageList(m_commands.smallIcons());
    for (const auto& pane : kPanes)
        m_cboView.add(pane.text, pane.image, pane.pane);
    showCurrentPane(paneId::kLog);
}

void PaneMain::createImageSizeCombo()
{
    const RECT place{0, 0, scaled(kImageSizeComboWidth, handle()), kComboHeight};
    if (!m_cboImageSize.create(handle(), controlId::kImageSizeCombo, place,
                               CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP)) {
        assertionFailed("m_pcboImageSize", "PaneMain", __LINE__);
        return;
    }
    m_cboImageSize.setFont(m_commands.comboFont());
    m_cboImageSize.setImageList(m_commands.smallIcons());
    for (const auto& size : kImageSizes)
        m_cboImageSize.add(size.text, -1, size.pixels);
}

void PaneMain::createToolbar()
{
    std::array<ToolBarButton, std::size(kButtons)> buttons;
    std::transform(std::begin(kButtons), std::end(kButtons), buttons.begin(), [](const MainButton& each) {
        const BYTE state = each.enabled ? TBSTATE_ENABLED : 0;
        return ToolBarButton{each.command, each.image, each.style, state};
    });
    if (!m_tbrMain.create(handle(), controlId::kMainToolbar, buttons, m_commands.smallIcons())) {
        assertionFailed("m_ptbrMain->GetSafeHwnd()", "PaneMain", __LINE__);
        return;
    }
    m_tbrMain.move({0, 0, kToolbarWidth, kToolbarHeight});
}

void PaneMain::createRebar()
{
    // Wide enough for one row, whatever the strip's width will be.
    const RECT place{0, 0, GetSystemMetrics(SM_CXSCREEN), m_commands.bandHeight()};
    if (!m_rbrMain.create(handle(), controlId::kMainRebar, place)) {
        assertionFailed("m_prbrMain->GetSafeHwnd()", "PaneMain", __LINE__);
        return;
    }
    m_rbrMain.useVisualStyle(false); // which would hide the strip's own colour
    // The combos are stops on the way of the Tab key through the plug-in.
    const auto extended = GetWindowLongA(m_rbrMain.handle(), GWL_EXSTYLE);
    SetWindowLongA(m_rbrMain.handle(), GWL_EXSTYLE, extended | WS_EX_CONTROLPARENT);
    m_rbrMain.setFont(m_commands.comboFont());
    const RECT last = m_tbrMain.buttonRect(commandId::kAbout);
    m_tbrMain.move({0, 0, last.right, last.bottom});
    m_bands.add(m_tbrMain, "", static_cast<int>(last.right), 0);
    m_bands.add(m_cboImageSize, "Icon Image Size", scaled(kImageSizeComboWidth, handle()),
                scaled(kLeastComboWidth, handle()));
    m_bands.add(m_cboView, "Go To", scaled(kViewComboWidth, handle()), scaled(kLeastComboWidth, handle()));
    m_bands.fillHeight(m_commands.bandHeight());
    // Created first, yet the last one on the way of the Tab key, as it stands there.
    SetWindowPos(m_cboView.handle(), HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

HWND PaneMain::focusWindow() const
{
    return m_cboView ? m_cboView.handle() : handle();
}

Handled PaneMain::onDestroy(const Message& message)
{
    KillTimer(message.window, kTimer);
    m_commands.stopLoadingCovers();
    m_tbrMain.send(TB_SETIMAGELIST, 0, 0); // the list is the controller's
    m_tbrMain.destroy();
    m_cboView.destroy();
    m_cboImageSize.destroy();
    m_rbrMain.destroy();
    return 0;
}

Handled PaneMain::onSize(const Message& message)
{
    const int width = LOWORD(message.lParam);
    if (width == 0 || HIWORD(message.lParam) == 0)
        return 0;
    const RedrawOff quiet(m_rbrMain.handle());
    m_rbrMain.move({0, 0, width, m_commands.bandHeight()});
    m_bands.fitWidth(width);
    return 0;
}

Handled PaneMain::onErase(const Message& message)
{
    fillRect(reinterpret_cast<HDC>(message.wParam), clientRect(), m_commands.frameFace());
    return 1;
}

// A host call may be waiting while its message loop delivers this.
Handled PaneMain::onTimer(const Message& message)
{
    if (message.wParam != kTimer)
        return kDefault;
    refreshCommands();
    if (m_commands.isBusy())
        return 0;
    POINT cursor{};
    GetCursorPos(&cursor);
    const bool moved = cursor.x != m_cursor.x || cursor.y != m_cursor.y;
    m_cursor = cursor;
    m_commands.trackCursor(cursor, moved);
    return 0;
}

Handled PaneMain::onToolTip(NMHDR& header)
{
    const auto found = std::find_if(std::begin(kButtons), std::end(kButtons),
                                    [&](const MainButton& each) { return each.command == header.idFrom; });
    if (found == std::end(kButtons))
        return kDefault;
    notificationAs<NMTTDISPINFOA>(header).lpszText = const_cast<char*>(found->toolTip);
    return 0;
}

// Also reached while the buttons are disabled: a command is a message like any other.
void PaneMain::onButton(const Command& command)
{
    const HWND self = handle();
    if (!m_commands.isBusy())
        perform(command.id);
    // The pane may be gone when a dialog was open meanwhile.
    if (!IsWindow(self))
        return;
    m_shown.reset();
    refreshCommands();
}

void PaneMain::perform(UINT command)
{
    for (const auto& each : kViews) {
        if (each.command == command)
            return m_commands.setCurrentView(each.view);
    }
    switch (command) {
    case commandId::kNewDatabase:
        return m_commands.newDatabase();
    case commandId::kOpenDatabase:
        return m_commands.openDatabase();
    case commandId::kExportList:
        return m_commands.exportCurrentList();
    default:
        return;
    }
}

// While a job runs the choice stands for its end.
void PaneMain::onPaneChosen(const Command&)
{
    if (const int index = m_cboView.selection(); index >= 0)
        m_commands.selectPane(static_cast<int>(m_cboView.data(index)));
    if (!m_commands.isBusy())
        showCurrentPane(m_commands.currentPane());
    refreshCommands();
}

// The choice may be refused.
void PaneMain::onImageSizeChosen(const Command&)
{
    const int index = m_cboImageSize.selection();
    if (!m_commands.isBusy() && index >= 0)
        m_commands.imageSizeChosen(index);
    m_cboImageSize.select(m_commands.artwork().imageSizeIndex);
}

void PaneMain::showCurrentPane(int id)
{
    for (int index = 0; index < m_cboView.count(); ++index) {
        if (m_cboView.data(index) == id && m_cboView.selection() != index)
            m_cboView.select(index);
    }
}

void PaneMain::settingsChanged()
{
    m_bands.setColours(m_commands.frameFace());
    m_cboImageSize.select(m_commands.artwork().imageSizeIndex);
    m_shown.reset();
    refreshCommands();
    RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void PaneMain::refreshCommands()
{
    const State state = currentState();
    if (m_shown == state)
        return;
    m_shown = state;
    showState(state);
}

void PaneMain::showState(const State& state)
{
    for (const MainButton& button : kButtons) {
        if (button.command != 0)
            m_tbrMain.enableButton(button.command, button.enabled && !state.busy);
    }
    for (const auto& each : kViews)
        m_tbrMain.checkButton(each.command, state.view == each.view);
    const bool sizeFixed = state.busy || state.loading;
    if (sizeFixed && IsChild(m_cboImageSize.handle(), GetFocus()))
        leaveFocus();
    m_cboImageSize.enable(!sizeFixed);
}

// A control that is disabled keeps the focus from everybody.
void PaneMain::leaveFocus()
{
    const HWND parent = GetParent(handle());
    const HWND current = GetDlgItem(parent, m_commands.currentPane());
    SetFocus(current != nullptr ? current : parent);
}

PaneMain::State PaneMain::currentState() const
{
    return {m_commands.isBusy(), m_commands.coversLoading(), m_commands.currentPane(), currentView()};
}

std::optional<ListStyle> PaneMain::currentView() const
{
    switch (m_commands.currentPane()) {
    case paneId::kOverview:
        return static_cast<ListStyle>(m_commands.overview().listviewStyle);
    case paneId::kAlbumDetails:
        return static_cast<ListStyle>(m_commands.albumDetails().listviewStyle);
    default:
        return std::nullopt;
    }
}

} // namespace tessera
