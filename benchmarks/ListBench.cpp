// Figures of the album list and the overview's search, in windows of their own.

#include "GeneratedLibrary.h"
#include "Report.h"

#include "base/Text.h"
#include "tests/ui/AlbumFixture.h"
#include "ui/ActivityLog.h"
#include "ui/PaneOverview.h"
#include "ui/ids.h"

#include <algorithm>
#include <numeric>

using namespace tessera;
using namespace tessera::bench;

namespace {

constexpr int kWide = 1920;
constexpr int kTall = 1080;
constexpr int kStrip = 60; // caption and search box; the list has the rest

void fillLibrary(Library& records, std::int32_t albums)
{
    const GeneratedLibrary made({albums * 12, albums});
    for (std::int32_t i = 0; i < made.artists(); ++i)
        addArtist(records, made.artist(i * 4).c_str());
    for (std::int32_t i = 0; i < albums; ++i) {
        Album& album =
            addAlbum(records, made.title(i).c_str(), *records.artists[i / 4 + 1], 1950 + i * 7 % 70);
        album.path = made.folder(i);
        album.genre = i % 3 == 0 ? "Rock" : "Jazz";
        album.duration = i * 7919 % 5000;
        album.minBitrate = album.maxBitrate = 128 + i % 5 * 32;
        album.newDate = 20020101 + i % 28;
        album.set(kAlbumNew, i % 2 == 0);
        columnTexts(album);
    }
}

// Answers as a virtual list's parent must, and nothing more.
class BareParent : public Mapped<BareParent> {
public:
    static std::span<const MapEntry<BareParent>> messageMap()
    {
        static constexpr MapEntry<BareParent> kMap[] = {{WM_NOTIFY, &BareParent::onNotify}};
        return kMap;
    }

private:
    Handled onNotify(const Message& message)
    {
        const auto& header = *reinterpret_cast<const NMHDR*>(message.lParam);
        if (header.code == NM_CUSTOMDRAW) {
            const auto& draw = *reinterpret_cast<const NMLVCUSTOMDRAW*>(message.lParam);
            return draw.nmcd.dwDrawStage == CDDS_PREPAINT ? CDRF_NOTIFYITEMDRAW : CDRF_SKIPDEFAULT;
        }
        return 0;
    }
};

// A list of the same kind beside the pane, with cells of the same size.
struct BareList {
    BareParent parent;
    ListView list;
    ImageList cells;

    BareList(HWND owner, ListStyle style, int albums)
    {
        parent.create(owner, 77, {0, 0, kWide, kTall});
        const DWORD kind = style == ListStyle::Details ? LVS_REPORT : LVS_ICON;
        list.create(parent.handle(), 78, {0, 0, kWide, kTall - kStrip},
                    kind | LVS_OWNERDATA | LVS_SHAREIMAGELISTS | LVS_AUTOARRANGE, 0);
        list.setExtendedStyle(LVS_EX_DOUBLEBUFFER);
        if (style != ListStyle::Details) {
            const bool icons = style == ListStyle::Icons;
            cells = ImageList(ImageList_Create(icons ? 85 : 364, icons ? 140 : 64, ILC_COLOR, 0, 1));
            list.setImageList(cells.get(), LVSIL_NORMAL);
            list.send(LVM_SETICONSPACING, 0, icons ? MAKELPARAM(95, 150) : MAKELPARAM(394, 71));
        }
        setCount(albums);
    }
    void setCount(int albums) const
    {
        const RedrawOff quiet(list.handle());
        list.send(LVM_SETITEMCOUNT, static_cast<WPARAM>(albums), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
        list.send(LVM_ARRANGE, LVA_DEFAULT);
    }
};

struct Rig {
    FakeCommands commands;
    ColouredCovers covers{commands.fakeCovers};
    HWND parent = makeParentWindow(kWide, kTall);
    std::unique_ptr<PaneOverview> pane;

    Rig(std::int32_t albums, ListStyle style)
    {
        fillLibrary(commands.records, albums);
        commands.overviewSettings.listviewStyle = static_cast<int>(style);
        pane = std::make_unique<PaneOverview>(commands);
        require(pane->createPane(parent), "no overview");
        MoveWindow(pane->window(), 0, 0, kWide, kTall, TRUE);
        SendMessageA(pane->window(), kActivateMessage, 1, 0);
        ShowWindow(parent, SW_SHOWNOACTIVATE);
        pumpMessages(300);
    }
    ~Rig()
    {
        pane.reset();
        DestroyWindow(parent);
    }
    HWND list() const { return GetDlgItem(pane->window(), controlId::kOverviewList); }
};

template <class Work>
double timed(Work work)
{
    const auto start = Clock::now();
    work();
    return millisecondsSince(start);
}

// What is ready in both ways: lower-cased texts and a key.
struct Ready {
    std::string title, artist, genre;
    std::int32_t number;
    Album* album;
};

std::vector<Ready> readyTexts(Library& records)
{
    std::vector<Ready> all;
    for (const auto& [id, album] : records.albums)
        all.push_back({toLower(album->displayTitle), toLower(album->artist->displayName),
                       toLower(album->genre), album->year, album.get()});
    return all;
}

using NumberKeys = std::vector<std::pair<std::int32_t, Album*>>;

NumberKeys scan(const std::vector<Ready>& all, const std::string& criteria)
{
    NumberKeys found;
    for (const Ready& each : all) {
        if (each.artist.find(criteria) != std::string::npos ||
            each.title.find(criteria) != std::string::npos || each.genre.find(criteria) != std::string::npos)
            found.emplace_back(each.number, each.album);
    }
    return found;
}

template <class Keys>
void sortByKey(Keys& keys)
{
    std::stable_sort(keys.begin(), keys.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
}

std::string named(const char* what, std::int32_t albums)
{
    return std::string(what) + ", " + std::to_string(albums) + " albums, 32-bit";
}

void keyStrokeRow(std::int32_t albums, int runs)
{
    Rig rig(albums, ListStyle::Details);
    SendMessageA(rig.pane->window(), WM_COMMAND, albumCommand::kSortFirst + 8, 0);
    const Edit box(GetDlgItem(rig.pane->window(), controlId::kCriteria));
    const std::vector<Ready> all = readyTexts(rig.commands.records);
    const BareList bare(rig.parent, ListStyle::Details, albums);
    // Each finds other albums than the one before it.
    const char* const typed[] = {"r", "jazz", "ro"};
    const Best best = bestOf(
        runs,
        [&] {
            return timed([&] {
                for (const char* const text : typed)
                    box.setText(text);
            });
        },
        [&] {
            return timed([&] {
                for (const char* const text : typed) {
                    NumberKeys found = scan(all, text);
                    sortByKey(found);
                    bare.setCount(static_cast<int>(found.size()));
                }
            });
        });
    report({named("key stroke in the search box", albums), best.work / 3, "ms", best.bare / 3, 1.5});
    double repaint = 1e9;
    for (int i = 0; i < runs; ++i) {
        box.setText(typed[i % 3]);
        repaint = std::min(repaint, timed([&] { UpdateWindow(rig.list()); }));
    }
    report({named("repaint after a key stroke, details", albums), repaint, "ms"});
}

void sortRows(std::int32_t albums, int runs)
{
    Rig rig(albums, ListStyle::Details);
    const std::vector<Ready> all = readyTexts(rig.commands.records);
    const auto click = [&](int column) {
        SendMessageA(rig.pane->window(), WM_COMMAND, static_cast<WPARAM>(albumCommand::kSortFirst + column),
                     0);
    };
    const auto textRow = [&](const char* name, int column, std::string Ready::*text) {
        const Best best = bestOf(
            runs, [&] { return click(4), timed([&] { click(column); }); },
            [&] {
                std::vector<std::pair<std::string_view, Album*>> keys;
                for (const Ready& each : all)
                    keys.emplace_back(each.*text, each.album);
                return timed([&] { sortByKey(keys); });
            });
        report({named(name, albums), best.work, "ms", best.bare, 1.5});
    };
    const auto numberRow = [&](const char* name, int column, std::int32_t Album::*number) {
        const Best best = bestOf(
            runs, [&] { return click(0), timed([&] { click(column); }); },
            [&] {
                std::vector<std::pair<std::string_view, Album*>> before;
                for (const Ready& each : all)
                    before.emplace_back(each.title, each.album);
                sortByKey(before);
                NumberKeys keys;
                for (const auto& each : before)
                    keys.emplace_back(each.second->*number, each.second);
                return timed([&] { sortByKey(keys); });
            });
        report({named(name, albums), best.work, "ms", best.bare, 1.5});
    };
    textRow("sort by a text column (artist)", 1, &Ready::artist);
    textRow("sort by a text column (album)", 0, &Ready::title);
    numberRow("sort by a number column (duration)", 3, &Album::duration);
    numberRow("sort by a date column (new)", 12, &Album::newDate);
    numberRow("sort by a number column (year)", 8, &Album::year);
}

void drawBare(HDC target, const std::vector<std::vector<std::string>>& captions, HIMAGELIST covers,
              HFONT font, int columns, int lineHeight)
{
    const DoubleBuffer buffer(target, {0, 0, kWide, kTall - kStrip});
    fillRect(buffer.dc(), {0, 0, kWide, kTall - kStrip}, RGB(255, 255, 255));
    const SelectScope selected(buffer.dc(), font);
    SetBkMode(buffer.dc(), TRANSPARENT);
    for (std::size_t i = 0; i < captions.size(); ++i) {
        const int x = static_cast<int>(i) % columns * 394 + 15;
        const int y = static_cast<int>(i) / columns * 71 + 4;
        ImageList_Draw(covers, 0, buffer.dc(), x, y, ILD_NORMAL);
        for (std::size_t line = 0; line < captions[i].size(); ++line) {
            const int top = y + 6 + static_cast<int>(line) * lineHeight;
            drawLine(buffer.dc(), captions[i][line], {x + 70, top, x + 358, top + lineHeight}, DT_LEFT);
        }
    }
}

void tileRow(std::int32_t albums, int runs)
{
    Rig rig(albums, ListStyle::Tiles);
    const int columns = (kWide - GetSystemMetrics(SM_CXVSCROLL)) / 394;
    const int rows = (kTall - kStrip + 70) / 71;
    std::vector<std::vector<std::string>> captions;
    for (const auto& [id, album] : rig.commands.records.albums) {
        if (static_cast<int>(captions.size()) == columns * rows)
            break;
        captions.push_back(split(
            rig.commands.tokens().expandAlbum(rig.commands.generalSettings.tileViewTokens, *album), "\r\n"));
    }
    const Best best = bestOf(
        runs,
        [&] {
            InvalidateRect(rig.list(), nullptr, TRUE);
            return timed([&] { UpdateWindow(rig.list()); });
        },
        [&] {
            const WindowDc dc(rig.list());
            return timed([&] {
                drawBare(dc.dc(), captions, rig.commands.fakeCovers.medium(), rig.commands.listFont(),
                         columns, 13);
            });
        });
    report({named("repaint of tiles, 1920 by 1080", albums), best.work, "ms", best.bare, 1.5});
}

void layoutRows(std::int32_t albums, int runs)
{
    Rig rig(albums, ListStyle::Icons);
    const BareList bare(rig.parent, ListStyle::Icons, albums);
    ShowWindow(bare.parent.handle(), SW_SHOWNA);
    const Edit box(GetDlgItem(rig.pane->window(), controlId::kCriteria));
    const auto paint = [](HWND list) { UpdateWindow(list); };
    Best best = bestOf(
        runs,
        [&] {
            box.setText("no such album at all");
            paint(rig.list());
            return timed([&] { box.setText(""); });
        },
        [&] {
            bare.setCount(0);
            paint(bare.list.handle());
            return timed([&] { bare.setCount(albums); });
        });
    report({named("first layout of icons", albums), best.work, "ms", best.bare, 1.5});
    int width = kWide;
    const auto nextWidth = [&] { return width = width == kWide ? kWide - 200 : kWide; };
    best = bestOf(
        runs,
        [&] {
            const int wide = nextWidth();
            paint(rig.list());
            return timed([&] { MoveWindow(rig.pane->window(), 0, 0, wide, kTall, TRUE); });
        },
        [&] {
            const int wide = nextWidth();
            paint(bare.list.handle());
            return timed([&] {
                const RedrawOff quiet(bare.list.handle());
                bare.list.move({0, 0, wide, kTall - kStrip});
                bare.list.send(LVM_ARRANGE, LVA_DEFAULT);
            });
        });
    report({named("resize of icons", albums), best.work, "ms", best.bare, 1.5});
}

// What a job's progress costs it, whoever watches the log: a build of as many tracks is a row elsewhere.
void logRow()
{
    constexpr std::uint32_t kReports = 100000;
    ActivityLog log;
    const auto job = log.newJob();
    job->line("Linking tracks to MJ");
    const Clock::time_point start = Clock::now();
    for (std::uint32_t i = 1; i <= kReports; ++i)
        job->progress(i, kReports);
    report({"100,000 progress reports to the log", millisecondsSince(start), "ms"});
}

} // namespace

int main()
{
    initCommonControls();
    logRow();
    for (const std::int32_t albums : {8400, 100000}) {
        const int runs = albums > 10000 ? 3 : 8;
        keyStrokeRow(albums, runs);
        sortRows(albums, runs);
        tileRow(albums, runs);
        layoutRows(albums, runs);
    }
    return 0;
}
