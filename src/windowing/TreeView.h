#pragma once

#include "windowing/Control.h"

namespace tessera {

// Whether an item's children are inserted now, or when it is opened: it can be opened without them.
enum class TreeChildren { Now, Later };

class TreeView : public Control {
public:
    using Control::Control;
    static constexpr DWORD kTree = TVS_HASLINES | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_SHOWSELALWAYS;

    bool create(HWND parent, UINT id, const RECT& place, DWORD style = kTree,
                DWORD extended = WS_EX_CLIENTEDGE);
    // The last child, or behind another child (TVI_FIRST: in front). Null when refused.
    HTREEITEM add(HTREEITEM parent, const std::string& text, int image = -1, LPARAM data = 0,
                  HTREEITEM behind = TVI_LAST, TreeChildren children = TreeChildren::Now) const;
    void remove(HTREEITEM item) const { send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(item)); }
    void set(HTREEITEM item, const std::string& text, int image, LPARAM data) const;
    std::string text(HTREEITEM item) const;
    void setText(HTREEITEM item, const std::string& text) const;
    LPARAM data(HTREEITEM item) const;
    void setData(HTREEITEM item, LPARAM data) const;
    HTREEITEM selection() const { return reinterpret_cast<HTREEITEM>(send(TVM_GETNEXTITEM, TVGN_CARET)); }
    void select(HTREEITEM item) const { send(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item)); }
    HTREEITEM root() const { return reinterpret_cast<HTREEITEM>(send(TVM_GETNEXTITEM, TVGN_ROOT)); }
    HTREEITEM child(HTREEITEM item) const
    {
        return reinterpret_cast<HTREEITEM>(send(TVM_GETNEXTITEM, TVGN_CHILD, reinterpret_cast<LPARAM>(item)));
    }
    HTREEITEM next(HTREEITEM item) const
    {
        return reinterpret_cast<HTREEITEM>(send(TVM_GETNEXTITEM, TVGN_NEXT, reinterpret_cast<LPARAM>(item)));
    }
    HTREEITEM parent(HTREEITEM item) const
    {
        return reinterpret_cast<HTREEITEM>(
            send(TVM_GETNEXTITEM, TVGN_PARENT, reinterpret_cast<LPARAM>(item)));
    }
    HTREEITEM top() const // the first line that is in view
    {
        return reinterpret_cast<HTREEITEM>(send(TVM_GETNEXTITEM, TVGN_FIRSTVISIBLE));
    }
    void scrollToTop(HTREEITEM item) const
    {
        send(TVM_SELECTITEM, TVGN_FIRSTVISIBLE, reinterpret_cast<LPARAM>(item));
    }
    UINT state(HTREEITEM item) const // TVIS_EXPANDED, TVIS_EXPANDEDONCE
    {
        return static_cast<UINT>(
            send(TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), TVIS_EXPANDED | TVIS_EXPANDEDONCE));
    }
    // Rows as high as text and icons need, and so many pixels more.
    void setRowSpace(int pixels) const
    {
        send(TVM_SETITEMHEIGHT, static_cast<WPARAM>(-1));
        send(TVM_SETITEMHEIGHT, static_cast<WPARAM>(send(TVM_GETITEMHEIGHT) + pixels));
    }
    bool expanded(HTREEITEM item) const { return (state(item) & TVIS_EXPANDED) != 0; }
    void expand(HTREEITEM item, UINT action = TVE_EXPAND) const
    {
        send(TVM_EXPAND, action, reinterpret_cast<LPARAM>(item));
    }
    // The item in whose line a point of the screen is, null for none.
    HTREEITEM itemAt(POINT screen) const;
    // The same, but only on its picture or text.
    HTREEITEM itemHit(POINT screen) const;
    // An item's text on the screen, and what is in view of it.
    RECT itemRect(HTREEITEM item) const;
    RECT visibleRect(HTREEITEM item) const;
    void makeVisible(HTREEITEM item) const { send(TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item)); }
    int count() const { return static_cast<int>(send(TVM_GETCOUNT)); }
    void setImageList(HIMAGELIST list) const
    {
        send(TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(list));
    }
    void setColours(COLORREF background, COLORREF text) const;

private:
    HTREEITEM itemWithPart(POINT screen, UINT parts) const; // any of TVHT_*
};

// Many changes at once: the tree works out what is in view, and paints it, when they are over. A
// hidden tree stays hidden.
class TreeUpdate {
public:
    explicit TreeUpdate(const TreeView& tree);
    ~TreeUpdate();
    TreeUpdate(const TreeUpdate&) = delete;
    TreeUpdate& operator=(const TreeUpdate&) = delete;

private:
    const TreeView& m_tree;
    bool m_hidden;
};

} // namespace tessera
