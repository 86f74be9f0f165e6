#include "windowing/TreeView.h"

#include "windowing/Drawing.h"

namespace tessera {

bool TreeView::create(HWND parent, UINT id, const RECT& place, DWORD style, DWORD extended)
{
    if (!createControl(WC_TREEVIEWA, parent, id, place, style | WS_TABSTOP, extended))
        return false;
    send(TVM_SETEXTENDEDSTYLE, TVS_EX_DOUBLEBUFFER, TVS_EX_DOUBLEBUFFER); // no erasing before each paint
    return true;
}

namespace {

TVITEMA described(const std::string& text, int image, LPARAM data)
{
    TVITEMA item{};
    item.mask = TVIF_TEXT | TVIF_PARAM | (image >= 0 ? TVIF_IMAGE | TVIF_SELECTEDIMAGE : 0);
    item.pszText = const_cast<char*>(text.c_str());
    item.iImage = image;
    item.iSelectedImage = image;
    item.lParam = data;
    return item;
}

} // namespace

HTREEITEM TreeView::add(HTREEITEM parent, const std::string& text, int image, LPARAM data, HTREEITEM behind,
                        TreeChildren children) const
{
    TVINSERTSTRUCTA insert{};
    insert.hParent = parent;
    insert.hInsertAfter = behind;
    insert.item = described(text, image, data);
    if (children == TreeChildren::Later) {
        insert.item.mask |= TVIF_CHILDREN;
        insert.item.cChildren = 1;
    }
    return reinterpret_cast<HTREEITEM>(send(TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insert)));
}

void TreeView::set(HTREEITEM treeItem, const std::string& text, int image, LPARAM data) const
{
    TVITEMA item = described(text, image, data);
    item.mask |= TVIF_HANDLE;
    item.hItem = treeItem;
    send(TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item));
}

std::string TreeView::text(HTREEITEM treeItem) const
{
    std::string text(4096, '\0');
    TVITEMA item{};
    item.mask = TVIF_TEXT;
    item.hItem = treeItem;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    return send(TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item)) && item.pszText ? item.pszText : "";
}

void TreeView::setText(HTREEITEM treeItem, const std::string& text) const
{
    TVITEMA item{};
    item.mask = TVIF_TEXT;
    item.hItem = treeItem;
    item.pszText = const_cast<char*>(text.c_str());
    send(TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item));
}

LPARAM TreeView::data(HTREEITEM treeItem) const
{
    TVITEMA item{};
    item.mask = TVIF_PARAM;
    item.hItem = treeItem;
    send(TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
    return item.lParam;
}

void TreeView::setData(HTREEITEM treeItem, LPARAM data) const
{
    TVITEMA item{};
    item.mask = TVIF_PARAM;
    item.hItem = treeItem;
    item.lParam = data;
    send(TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item));
}

namespace {

bool isHidden(HWND window)
{
    return (GetWindowLongA(window, GWL_STYLE) & WS_VISIBLE) == 0;
}

} // namespace

TreeUpdate::TreeUpdate(const TreeView& tree) : m_tree(tree), m_hidden(isHidden(tree.handle()))
{
    m_tree.send(WM_SETREDRAW, FALSE);
}

TreeUpdate::~TreeUpdate()
{
    m_tree.send(WM_SETREDRAW, TRUE);
    if (m_hidden && !isHidden(m_tree.handle()))
        m_tree.show(false);
}

void TreeView::setColours(COLORREF background, COLORREF text) const
{
    send(TVM_SETBKCOLOR, 0, static_cast<LPARAM>(background));
    send(TVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(text));
}

HTREEITEM TreeView::itemWithPart(POINT screen, UINT parts) const
{
    TVHITTESTINFO hit{};
    hit.pt = screen;
    ScreenToClient(m_handle, &hit.pt);
    const auto item = reinterpret_cast<HTREEITEM>(send(TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    return (hit.flags & parts) != 0 ? item : nullptr;
}

HTREEITEM TreeView::itemAt(POINT screen) const
{
    return itemWithPart(screen, TVHT_ONITEM | TVHT_ONITEMRIGHT | TVHT_ONITEMINDENT);
}

HTREEITEM TreeView::itemHit(POINT screen) const
{
    return itemWithPart(screen, TVHT_ONITEM);
}

RECT TreeView::itemRect(HTREEITEM item) const
{
    union {
        HTREEITEM asked;
        RECT place;
    } question{item};
    send(TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&question));
    RECT place = question.place;
    MapWindowPoints(m_handle, nullptr, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

RECT TreeView::visibleRect(HTREEITEM item) const
{
    RECT client = clientRect();
    MapWindowPoints(m_handle, nullptr, reinterpret_cast<POINT*>(&client), 2);
    const RECT whole = itemRect(item);
    RECT visible{};
    IntersectRect(&visible, &whole, &client);
    return visible;
}

} // namespace tessera
