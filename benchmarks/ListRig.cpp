#include "ListRig.h"

#include "GeneratedLibrary.h"
#include "Report.h"

#include "ui/AlbumColumns.h"
#include "ui/ids.h"

namespace tessera::bench {

std::uint32_t scattered(std::int32_t index, std::uint32_t salt)
{
    std::uint32_t value = static_cast<std::uint32_t>(index) * 0x9E3779B1U + salt * 0x85EBCA77U;
    value = (value ^ (value >> 15)) * 0x2C1B3C6DU;
    value = (value ^ (value >> 12)) * 0x297A2D39U;
    return value ^ (value >> 15);
}

void fillLibrary(Library& records, std::int32_t albums)
{
    static constexpr const char* kGenres[] = {"Rock", "Jazz", "Folk", "Classical", "Pop"};
    const GeneratedLibrary made({albums * 12, albums});
    for (std::int32_t i = 0; i < made.artists(); ++i)
        addArtist(records, made.artist(i * 4).c_str());
    for (std::int32_t i = 0; i < albums; ++i) {
        const auto from = [i](std::uint32_t salt, std::int32_t first, std::uint32_t values) {
            return first + static_cast<std::int32_t>(scattered(i, salt) % values);
        };
        Album& album =
            addAlbum(records, made.title(i).c_str(), *records.artists[i / 4 + 1], from(1, 1950, 70));
        album.path = made.folder(i);
        album.genre = kGenres[from(2, 0, std::size(kGenres))];
        album.duration = from(3, 900, 4800);
        album.minBitrate = from(4, 96, 225);
        album.maxBitrate = from(5, 0, 3) == 0 ? 320 : album.minBitrate;
        album.newDate = from(6, 1995, 30) * 10000 + from(7, 1, 12) * 100 + from(8, 1, 28);
        album.rank = from(9, 0, 11);
        album.set(kAlbumNew, from(10, 0, 2) == 0);
        album.set(kAlbumFavourite, from(11, 0, 8) == 0);
        album.set(kAlbumCompilation, from(12, 0, 10) == 0);
        columnTexts(album);
    }
}

void bringToFront(HWND window)
{
    SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    pumpMessages(10);
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    pumpMessages(10); // what was painted goes to the screen now, not in the middle of what is measured
}

ListRig::ListRig(FakeCommands& all, ListStyle style) : commands(all)
{
    commands.overviewSettings.listviewStyle = static_cast<int>(style);
    pane = std::make_unique<PaneOverview>(commands);
    require(pane->createPane(parent), "no overview");
    MoveWindow(pane->window(), 0, 0, kWide, kTall, TRUE);
    SendMessageA(pane->window(), kActivateMessage, 1, 0);
    bringToFront(parent);
    pumpMessages(300);
}

ListRig::~ListRig()
{
    pane.reset();
    DestroyWindow(parent);
}

HWND ListRig::list() const
{
    return GetDlgItem(pane->window(), controlId::kOverviewList);
}

Edit ListRig::box() const
{
    return Edit(GetDlgItem(pane->window(), controlId::kCriteria));
}

void ListRig::command(int id) const
{
    SendMessageA(pane->window(), WM_COMMAND, static_cast<WPARAM>(id), 0);
}

std::span<const MapEntry<AloneList>> AloneList::messageMap()
{
    static constexpr MapEntry<AloneList> kMap[] = {{WM_NOTIFY, &AloneList::onNotify}};
    return kMap;
}

AloneList::AloneList(FakeCommands& commands, ListStyle style) : m_list(commands, m_catalogue)
{
    create(m_top, 77, {0, 0, kWide, kTall});
    m_catalogue.fill(commands.records);
    require(m_list.initAlbumList(handle(), 78, style), "no list");
    m_list.resetAlbums();
    m_list.move({0, kStrip, kWide, kTall});
    ShowWindow(handle(), SW_SHOWNA);
    m_list.view().show(true);
    bringToFront(m_top);
}

AloneList::~AloneList()
{
    destroy();
    DestroyWindow(m_top);
}

Handled AloneList::onNotify(const Message& message)
{
    return m_list.answer(*reinterpret_cast<NMHDR*>(message.lParam));
}

std::span<const MapEntry<BareParent>> BareParent::messageMap()
{
    static constexpr MapEntry<BareParent> kMap[] = {{WM_NOTIFY, &BareParent::onNotify}};
    return kMap;
}

Handled BareParent::onNotify(const Message& message)
{
    const auto& header = *reinterpret_cast<const NMHDR*>(message.lParam);
    if (header.code != NM_CUSTOMDRAW)
        return 0;
    const auto& draw = *reinterpret_cast<const NMLVCUSTOMDRAW*>(message.lParam);
    return draw.nmcd.dwDrawStage == CDDS_PREPAINT ? CDRF_NOTIFYITEMDRAW : CDRF_SKIPDEFAULT;
}

BareList::BareList(ListStyle style, int albums)
{
    const bool icons = style == ListStyle::Icons;
    m_parent.create(m_top, 77, {0, 0, kWide, kTall});
    const DWORD kind = style == ListStyle::Details ? LVS_REPORT : LVS_ICON;
    m_list.create(m_parent.handle(), 78, {0, kStrip, kWide, kTall},
                  kind | LVS_OWNERDATA | LVS_SHAREIMAGELISTS | LVS_AUTOARRANGE | LVS_SHOWSELALWAYS, 0);
    m_list.setExtendedStyle(LVS_EX_DOUBLEBUFFER | LVS_EX_FULLROWSELECT);
    for (const AlbumColumn& column : albumColumns())
        m_list.addColumn(column.title, std::max(column.width, 90), column.format);
    if (style != ListStyle::Details) {
        m_cells = ImageList(ImageList_Create(icons ? 85 : 364, icons ? 140 : 64, ILC_COLOR, 0, 1));
        m_list.setImageList(m_cells.get(), LVSIL_NORMAL);
        m_list.send(LVM_SETICONSPACING, 0, icons ? MAKELPARAM(95, 150) : MAKELPARAM(394, 71));
    }
    ShowWindow(m_parent.handle(), SW_SHOWNA);
    bringToFront(m_top);
    setCount(albums);
}

BareList::~BareList()
{
    DestroyWindow(m_top);
}

void BareList::setCount(int albums) const
{
    const RedrawOff quiet(m_list.handle());
    m_list.send(LVM_SETITEMCOUNT, static_cast<WPARAM>(albums), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
    m_list.send(LVM_ARRANGE, LVA_DEFAULT);
}

void BareList::mark(int before, int after) const
{
    for (const int column : {before, after}) {
        HDITEMA item{};
        item.mask = HDI_FORMAT;
        item.fmt = albumColumns()[static_cast<std::size_t>(column)].format | HDF_STRING |
                   (column == after ? HDF_SORTUP : 0);
        SendMessageA(m_list.header(), HDM_SETITEMA, static_cast<WPARAM>(column),
                     reinterpret_cast<LPARAM>(&item));
    }
    m_list.send(LVM_SETSELECTEDCOLUMN, static_cast<WPARAM>(after));
    m_list.invalidate(false);
}

} // namespace tessera::bench
