// Selection, focus and scroll place.

#include "base/FlagScope.h"
#include "settings/ViewState.h"
#include "ui/AlbumList.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

// More than that are quicker selected from the whole by taking the others out.
constexpr std::size_t kManyTimes = 2;
constexpr int kFew = 16;

} // namespace

std::vector<std::uint32_t> AlbumList::selectedPlaces() const
{
    const int selected = selectedCount();
    if (selected == static_cast<int>(m_places.size()))
        return m_places;
    std::vector<std::uint32_t> places;
    if (selected == 0)
        return places; // the list would look at every item
    for (int item = m_lvw.nextSelected(); item >= 0; item = m_lvw.nextSelected(item))
        places.push_back(m_places[static_cast<std::size_t>(item)]);
    return places;
}

// Mostly it is the focused one, which is found at once.
int AlbumList::selectedItem() const
{
    const int focus = m_lvw.focused();
    if (focus >= 0 && m_lvw.send(LVM_GETITEMSTATE, static_cast<WPARAM>(focus), LVIS_SELECTED) != 0 &&
        selectedCount() == 1)
        return focus;
    return m_lvw.nextSelected();
}

std::vector<Album*> AlbumList::selectedAlbums() const
{
    std::vector<Album*> albums;
    for (const std::uint32_t place : selectedPlaces())
        albums.push_back(&m_catalogue.album(place));
    return albums;
}

void AlbumList::selectPlaces(const std::vector<std::uint32_t>& places, std::optional<std::uint32_t> focused)
{
    if (places.empty() && !focused && selectedCount() == 0)
        return;
    // A few changes are cheaper than what switching redrawing back on costs.
    std::optional<RedrawOff> bracket;
    if (std::max<int>(static_cast<int>(places.size()), selectedCount()) > kFew)
        bracket.emplace(m_lvw.handle(), false);
    const FlagScope quiet(m_quiet);
    std::vector<bool> wanted(m_catalogue.size());
    for (const std::uint32_t place : places)
        wanted[place] = true;
    const bool most = places.size() > m_places.size() / kManyTimes;
    if (most || selectedCount() > kFew)
        m_lvw.select(-1, most);
    else
        for (int item = m_lvw.nextSelected(); item >= 0; item = m_lvw.nextSelected(item))
            m_lvw.select(item, false);
    int focus = -1;
    for (std::size_t item = 0; item < m_places.size(); ++item) {
        if (wanted[m_places[item]] != most)
            m_lvw.select(static_cast<int>(item), !most);
        if (focused == m_places[item])
            focus = static_cast<int>(item);
    }
    if (focus >= 0)
        m_lvw.setFocused(focus);
}

void AlbumList::makeFocusVisible() const
{
    if (const int focus = m_lvw.focused(); focus >= 0)
        m_lvw.makeVisible(focus);
}

void AlbumList::selectFirst() const
{
    if (m_places.empty())
        return;
    deselect();
    m_lvw.select(0);
    m_lvw.setFocused(0);
    m_lvw.makeVisible(0);
}

int AlbumList::topItem() const
{
    if (m_places.empty())
        return -1;
    if (!picturesShown())
        return static_cast<int>(m_lvw.send(LVM_GETTOPINDEX));
    return std::min(firstBelow(0), static_cast<int>(m_places.size()) - 1);
}

int AlbumList::startOfView() const
{
    return picturesShown() ? firstBelow(-m_cell.cy) : std::max(topItem(), 0);
}

int AlbumList::endOfView() const
{
    if (picturesShown())
        return firstBelow(m_lvw.clientRect().bottom);
    const auto end = m_lvw.send(LVM_GETTOPINDEX) + m_lvw.send(LVM_GETCOUNTPERPAGE) + 1; // one cut in half
    return std::min(static_cast<int>(end), static_cast<int>(m_places.size()));
}

// In the picture views, where cells are laid out row by row: the first item that begins at or below
// a height of the client area.
int AlbumList::firstBelow(LONG top) const
{
    int first = 0;
    int last = static_cast<int>(m_places.size());
    while (first < last) {
        const int middle = (first + last) / 2;
        POINT place{};
        m_lvw.send(LVM_GETITEMPOSITION, static_cast<WPARAM>(middle), reinterpret_cast<LPARAM>(&place));
        if (place.y < top)
            first = middle + 1;
        else
            last = middle;
    }
    return first;
}

void AlbumList::scrollToTop(int item) const
{
    RECT row = partOf(item, LVIR_BOUNDS);
    int top = 0;
    if (!picturesShown()) {
        top = static_cast<int>(partOf(topItem(), LVIR_BOUNDS).top);
    }
    m_lvw.send(LVM_SCROLL, 0, row.top - top);
}

void AlbumList::keepView(ViewState& state) const
{
    const auto idOf = [&](int item) { return item >= 0 ? album(item).id : 0; };
    state.sortColumn = m_sortColumn;
    state.ascending = m_ascending;
    state.topAlbum = idOf(topItem());
    state.focusedAlbum = idOf(m_lvw.focused());
    state.selectedAlbums.clear();
    for (const std::uint32_t place : selectedPlaces())
        state.selectedAlbums.push_back(m_catalogue.album(place).id);
}

void AlbumList::restoreView(const ViewState& state)
{
    std::vector<std::uint32_t> places;
    const auto known = [&](std::int32_t id) { return m_catalogue.find(id) < m_catalogue.size(); };
    for (const std::int32_t id : state.selectedAlbums) {
        if (known(id))
            places.push_back(m_catalogue.find(id));
    }
    std::optional<std::uint32_t> focused;
    if (known(state.focusedAlbum))
        focused = m_catalogue.find(state.focusedAlbum);
    selectPlaces(places, focused);
    const auto top = std::ranges::find(m_places, m_catalogue.find(state.topAlbum));
    if (top != m_places.end())
        scrollToTop(static_cast<int>(top - m_places.begin()));
}

} // namespace tessera
