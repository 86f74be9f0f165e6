#pragma once

#include "ui/CommandKeys.h"
#include "ui/Pane.h"
#include "ui/PaneCaption.h"
#include "windowing/Control.h"
#include "windowing/Menu.h"
#include "windowing/Window.h"

#include <array>

namespace tessera {

class Commands;

// A pane below the main pane: a caption bar and something under it. Hidden until it is told to
// show itself.
class ContentPane : public Mapped<ContentPane>, public Pane {
public:
    static std::span<const MapEntry<ContentPane>> messageMap();

    int id() const override { return m_id; }
    HWND window() const override { return handle(); }
    void settingsChanged() override;
    void storeState() override {}
    void reload() override {}
    void clearRecords() override {}
    void setView(ListStyle) override {}
    void trackCursor(POINT, bool) override {}
    std::string exportText(int item, int column) const override;

protected:
    ContentPane(int id, const char* unit, const std::string& title, Commands& commands);

    // Raises the assertion of the unit when the window cannot be had.
    bool createWindow(HWND parent);
    Commands& commands() const { return m_commands; }
    // Offers every child control to the host's skin; those that come later are offered then.
    void skinControls();
    // In a line of the caption, which is a control of its own so that others can read it.
    void setStatus(const std::string& status);
    // Makes the title a button that opens captionMenu, in front of all controls that are created later.
    void addCaptionMenu();
    // A button in the caption of a pane with a menu that sends the pane the command; an empty text: none.
    void setOffer(const std::string& offer, UINT command);
    // Of the area below the caption, in client coordinates.
    RECT contentRect() const;

    virtual void layoutContent(const RECT&) {}
    // Its commands are sent to the pane.
    virtual Menu captionMenu() const { return {}; }
    // The background is there already.
    virtual void paintContent(HDC, const RECT&) {}

private:
    Handled onActivate(const Message& message);
    Handled onSize(const Message& message);
    Handled onErase(const Message& message);
    Handled onPaint(const Message& message);
    Handled onPrint(const Message& message);
    Handled onFocus(const Message& message);
    Handled onClick(const Message& message);
    Handled onRightButtonUp(const Message& message);
    Handled onContextMenu(const Message& message);
    Handled onSetCursor(const Message& message);
    Handled onDrawItem(const Message& message);
    void draw(HDC dc);
    void onCaptionMenu(const Command& command);
    void onCaptionOffer(const Command& command);
    bool isCaptionButton(HWND window) const;
    void openCaptionMenu();
    RECT captionRect() const;
    void layoutCaption();
    void showPane();
    void hidePane();

    int m_id;
    const char* m_pszUnit;
    Commands& m_commands;
    PaneCaption m_caption;
    Button m_btnMenu; // both are not there without a menu
    Button m_btnOffer;
    std::array<CommandKeys, 2> m_captionKeys;
    Static m_lblStatus;               // not there before there is a status
    UINT m_offered = 0;               // command
    mutable LONG m_captionHeight = 0; // 0: to be measured
};

} // namespace tessera
