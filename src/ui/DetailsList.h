#pragma once

#include "windowing/ListView.h"
#include "windowing/Window.h"

#include <span>
#include <string>

namespace tessera {

class Commands;

// A virtual report list of the album details pane: one row selected at most, one column as wide as the
// others leave it. Its parent hands it the list's notifications first; those that it leaves (clicks,
// changes of the selection) are the parent's. A double click and Enter are its own.
class DetailsList : public Mapped<DetailsList, DirectSubclass> {
public:
    static std::span<const MapEntry<DetailsList>> messageMap();

    // Font and colours as the settings have them now.
    virtual void settingsChanged();
    void move(const RECT& place);
    virtual void show(bool visible);
    // On the screen, as far as its parents are.
    bool isShown() const { return IsWindowVisible(m_lvw.handle()) != FALSE; }
    Handled answer(NMHDR& header);
    const ListView& view() const { return m_lvw; }
    int count() const { return m_lvw.count(); }
    int selectedRow() const; // -1: none

protected:
    struct Column {
        const char* title;
        int width; // at 96 dpi; 0: what the others leave
        int format = LVCFMT_LEFT;
    };

    explicit DetailsList(Commands& commands) : m_commands(commands) {}
    // Hidden. False when there is no window.
    bool createList(HWND parent, UINT id, std::span<const Column> columns);
    Commands& commands() const { return m_commands; }

    // Before the control asks for these rows. Here and nowhere else the host may be called: it may run
    // a message loop, and the control, were it at work meanwhile, does not bear to lose its rows.
    virtual void readRows(int, int) {}
    virtual std::string cellText(int row, int column) = 0;
    virtual int rowImage(int) const { return -1; }
    virtual bool isMarked(int) const { return false; } // in bold
    virtual void activate(int) {}

    // Selection and scroll place stay; only rows that come or go are painted.
    void setRows(int rows);
    // Other content: nothing is selected, the first row is on top.
    void resetRows(int rows);
    // To the parent, as when the user selects a row.
    void tellSelection() const;
    // Painted over, without the background first.
    void redrawRow(int row) const;
    void redrawAll() const { m_lvw.invalidate(false); }
    // The rows in view, the first and the one behind the last.
    std::pair<int, int> rowsInView() const;

private:
    void fitColumns() const;
    void answerInfo(LVITEMA& item);
    Handled onCustomDraw(NMLVCUSTOMDRAW& draw) const;
    Handled onKeyDown(const Message& message);
    Handled onCharacter(const Message& message);
    Handled onPaint(const Message& message);
    Handled onItemWanted(const Message& message);
    Handled onTextWanted(const Message& message);

    Commands& m_commands;
    ListView m_lvw;
    int m_stretched = 0; // column
};

} // namespace tessera
