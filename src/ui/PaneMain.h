#pragma once

#include "ui/BandLayout.h"
#include "ui/Pane.h"
#include "windowing/ComboBoxEx.h"
#include "windowing/ToolBar.h"
#include "windowing/Window.h"

#include <optional>

namespace tessera {

class Commands;

// The strip across the top: toolbar, image size combo and the combo that switches between the
// panes below. Its timer follows the pointer for all panes.
class PaneMain final : public Mapped<PaneMain>, public Pane {
public:
    static std::span<const MapEntry<PaneMain>> messageMap();

    explicit PaneMain(Commands& commands);
    ~PaneMain() override;

    bool createPane(HWND parent);
    // Makes the combo name the pane, whichever way it was chosen.
    void showCurrentPane(int id);
    // Buttons and combos follow the controller's state: busy or not, pane, view.
    void refreshCommands();

    int id() const override { return paneId::kMain; }
    HWND window() const override { return handle(); }
    HWND focusWindow() const override;
    void settingsChanged() override;
    void storeState() override {}
    void reload() override { refreshCommands(); }
    void clearRecords() override {}
    void setView(ListStyle) override {}
    void trackCursor(POINT, bool) override {}

private:
    // What the children show; they are touched only when it differs.
    struct State {
        bool busy;
        bool loading; // covers, in the background
        int pane;
        std::optional<ListStyle> view;
        bool operator==(const State&) const = default;
    };

    Handled onCreate(const Message& message);
    Handled onDestroy(const Message& message);
    Handled onSize(const Message& message);
    Handled onErase(const Message& message);
    Handled onTimer(const Message& message);
    Handled onToolTip(NMHDR& header);
    void onButton(const Command& command);
    void onPaneChosen(const Command& command);
    void onImageSizeChosen(const Command& command);

    void createViewCombo();
    void createImageSizeCombo();
    void createToolbar();
    void createRebar();
    void perform(UINT command);
    void leaveFocus();
    void showState(const State& state);
    State currentState() const;
    std::optional<ListStyle> currentView() const;

    Commands& m_commands;
    ComboBoxEx m_cboView;
    ComboBoxEx m_cboImageSize;
    ToolBar m_tbrMain;
    ReBar m_rbrMain;
    BandLayout m_bands{m_rbrMain};
    std::optional<State> m_shown;
    POINT m_cursor{-1, -1}; // at the previous tick
};

} // namespace tessera
