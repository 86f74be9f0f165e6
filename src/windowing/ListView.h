#pragma once

#include "windowing/Control.h"

#include <vector>

namespace tessera {

// A list view in report style unless the style says otherwise.
class ListView : public Control {
public:
    using Control::Control;
    static constexpr DWORD kReport = LVS_REPORT | LVS_SHOWSELALWAYS;

    bool create(HWND parent, UINT id, const RECT& place, DWORD style = kReport,
                DWORD extended = WS_EX_CLIENTEDGE);
    void setExtendedStyle(DWORD style) const
    {
        send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, static_cast<LPARAM>(style));
    }

    // Behind the columns that are there; answers its index. Format: LVCFMT_*.
    int addColumn(const std::string& title, int width, int format = LVCFMT_LEFT) const;
    int columnCount() const;
    std::vector<int> columnOrder() const; // as the header shows them
    int columnWidth(int column) const
    {
        return static_cast<int>(send(LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column)));
    }
    void setColumnWidth(int column, int width) const; // or LVSCW_AUTOSIZE, LVSCW_AUTOSIZE_USEHEADER
    HWND header() const { return reinterpret_cast<HWND>(send(LVM_GETHEADER)); }

    int count() const { return static_cast<int>(send(LVM_GETITEMCOUNT)); }
    // Behind the last row; answers its index.
    int addRow(const std::vector<std::string>& texts, int image = -1) const;
    int insert(int index, const std::string& text, int image = -1, LPARAM data = 0) const;
    void setText(int row, int column, const std::string& text) const;
    std::string text(int row, int column) const; // virtual lists ask their parent
    LPARAM data(int row) const;
    void clear() const { send(LVM_DELETEALLITEMS); }
    // Of a virtual list; scroll position and selection stay. Redrawing is suspended meanwhile.
    void setVirtualCount(int rows) const;
    void redraw(int first, int last) const { send(LVM_REDRAWITEMS, static_cast<WPARAM>(first), last); }
    void makeVisible(int row) const { send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE); }

    int nextSelected(int after = -1) const; // -1: no more
    std::vector<int> selection() const;
    void select(int row, bool selected = true) const; // row -1: all
    int focused() const
    {
        return static_cast<int>(send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
    }
    void setFocused(int row) const;
    void unfocus() const; // no row has the focus

    void setImageList(HIMAGELIST list, int which) const
    {
        send(LVM_SETIMAGELIST, static_cast<WPARAM>(which), reinterpret_cast<LPARAM>(list));
    }
    void setColours(COLORREF background, COLORREF text) const;
};

// The text that a virtual list asks for: as much as its buffer takes, in whole characters.
void answerText(const LVITEMA& item, const std::string& text);

} // namespace tessera
