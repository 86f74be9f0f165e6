#include "windowing/Header.h"

namespace tessera {

bool Header::create(HWND parent, UINT id, const RECT& place, DWORD style)
{
    return createControl(WC_HEADERA, parent, id, place, style);
}

int Header::add(const std::string& text, int width) const
{
    HDITEMA item{};
    item.mask = HDI_TEXT | HDI_WIDTH | HDI_FORMAT;
    item.fmt = HDF_LEFT | HDF_STRING;
    item.cxy = width;
    item.pszText = const_cast<char*>(text.c_str());
    return static_cast<int>(
        send(HDM_INSERTITEMA, static_cast<WPARAM>(count()), reinterpret_cast<LPARAM>(&item)));
}

std::string Header::itemText(int index) const
{
    std::string text(512, '\0');
    HDITEMA item{};
    item.mask = HDI_TEXT;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    return send(HDM_GETITEMA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item)) ? item.pszText
                                                                                           : "";
}

void Header::setItemWidth(int index, int width) const
{
    HDITEMA item{};
    item.mask = HDI_WIDTH;
    item.cxy = width;
    send(HDM_SETITEMA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
}

} // namespace tessera
