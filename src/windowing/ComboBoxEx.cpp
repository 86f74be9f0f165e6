#include "windowing/ComboBoxEx.h"

namespace tessera {

bool ComboBoxEx::create(HWND parent, UINT id, const RECT& place, DWORD style)
{
    return createControl(WC_COMBOBOXEXA, parent, id, place, style | WS_TABSTOP | WS_VSCROLL);
}

int ComboBoxEx::add(const std::string& text, int image, LPARAM data, int indent) const
{
    COMBOBOXEXITEMA item{};
    item.mask =
        CBEIF_TEXT | CBEIF_LPARAM | CBEIF_INDENT | (image >= 0 ? CBEIF_IMAGE | CBEIF_SELECTEDIMAGE : 0);
    item.iItem = -1; // behind the last one
    item.pszText = const_cast<char*>(text.c_str());
    item.iImage = image;
    item.iSelectedImage = image;
    item.iIndent = indent;
    item.lParam = data;
    const auto index = static_cast<int>(send(CBEM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item)));
    makeRoomForList();
    return index;
}

void ComboBoxEx::setFont(HFONT font) const
{
    Control::setFont(font);
    makeRoomForList();
}

LPARAM ComboBoxEx::data(int index) const
{
    COMBOBOXEXITEMA item{};
    item.mask = CBEIF_LPARAM;
    item.iItem = index;
    send(CBEM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
    return item.lParam;
}

std::string ComboBoxEx::itemText(int index) const
{
    std::string text(1024, '\0');
    COMBOBOXEXITEMA item{};
    item.mask = CBEIF_TEXT;
    item.iItem = index;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    return send(CBEM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item)) && item.pszText ? item.pszText : "";
}

// Systems that size the list by themselves keep to it, too.
void ComboBoxEx::makeRoomForList() const
{
    const Control inner(combo());
    RECT place = inner.rect();
    const auto item = static_cast<int>(inner.send(CB_GETITEMHEIGHT));
    place.bottom += item * count() + 2 * GetSystemMetrics(SM_CYEDGE);
    inner.move(place);
}

} // namespace tessera
