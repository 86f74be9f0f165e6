// Figures of the album list and the overview's search, in windows of their own.

#include "ListGaps.h"
#include "ListRig.h"
#include "Report.h"

#include "base/Text.h"
#include "ui/AlbumColumns.h"
#include "ui/ids.h"

#include <algorithm>
#include <numeric>
#include <string_view>

using namespace tessera;
using namespace tessera::bench;

namespace {

struct Rig {
    FakeCommands commands;
    ColouredCovers covers{commands.fakeCovers};
    std::unique_ptr<ListRig> list;

    Rig(std::int32_t albums, ListStyle style)
    {
        fillLibrary(commands.records, albums);
        list = std::make_unique<ListRig>(commands, style);
    }
    ListRig* operator->() const { return list.get(); }
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
    constexpr int kYearColumn = 8;
    rig->command(albumCommand::kSortFirst + kYearColumn);
    const Edit box = rig->box();
    const std::vector<Ready> all = readyTexts(rig.commands.records);
    const BareList bare(ListStyle::Details, albums);
    // Each finds other albums than the one before it.
    const char* const typed[] = {"r", "jazz", "ro"};
    const Best best = bestOf(
        runs,
        [&] {
            bringToFront(rig->parent);
            return timed([&] {
                for (const char* const text : typed)
                    box.setText(text);
            });
        },
        [&] {
            bringToFront(bare.top());
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
    bringToFront(rig->parent);
    for (int i = 0; i < runs; ++i) {
        box.setText(typed[i % 3]);
        repaint = std::min(repaint, timed([&] { UpdateWindow(rig->list()); }));
    }
    report({named("repaint after a key stroke, details", albums), repaint, "ms"}, OnWindows::Harmless);
}

// The albums as they stand before the sort: by their titles.
std::vector<Album*> byTitle(Library& records)
{
    std::vector<std::pair<std::string, Album*>> titles;
    for (const auto& [id, album] : records.albums)
        titles.emplace_back(toLower(album->displayTitle), album.get());
    sortByKey(titles);
    std::vector<Album*> albums;
    for (const auto& each : titles)
        albums.push_back(each.second);
    return albums;
}

template <class Key>
using Keys = std::vector<std::pair<Key, Album*>>;

// In the order that the work finds, too.
template <class Key, class MakeKey>
Keys<Key> readyKeys(const std::vector<Album*>& albums, MakeKey makeKey)
{
    Keys<Key> keys;
    for (Album* const album : albums)
        keys.emplace_back(makeKey(*album), album);
    return keys;
}

// The order alone, and a column's click until the list knows it.
template <class Key>
void sortRow(const std::string& column, const Rig& rig, int index, int runs, const Keys<Key>& ready)
{
    const auto albums = static_cast<int>(ready.size());
    AlbumCatalogue catalogue;
    catalogue.fill(rig.commands.records);
    AlbumPlaces byTitle;
    for (const auto& each : ready)
        byTitle.push_back(catalogue.find(each.second->id));
    const auto bareSort = [&](auto andThen) {
        Keys<Key> keys = ready;
        return timed([&] {
            sortByKey(keys);
            andThen();
        });
    };
    Best best = bestOf(
        runs,
        [&] {
            AlbumPlaces places = byTitle;
            return timed([&] { catalogue.sort(places, index, true); });
        },
        [&] { return bareSort([] {}); });
    report({named(("order by " + column).c_str(), albums), best.work, "ms", best.bare, 1.5});

    const BareList bare(ListStyle::Details, albums);
    const int other = index == 0 ? 1 : 0;
    best = bestOf(
        runs,
        [&] {
            rig->command(albumCommand::kSortFirst + other);
            bringToFront(rig->parent);
            return timed([&] { rig->command(albumCommand::kSortFirst + index); });
        },
        [&] {
            bare.mark(index, other);
            bringToFront(bare.top());
            return bareSort([&] { bare.mark(other, index); });
        });
    report({named(("click on " + column).c_str(), albums), best.work, "ms", best.bare, 1.5});
}

void sortRows(std::int32_t albums, int runs)
{
    static constexpr struct {
        const char* name;
        int column;
    } kColumns[] = {{"a text column (artist)", 1},     {"a text column (genre)", 7},
                    {"a number column (duration)", 3}, {"a number column (bitrate)", 4},
                    {"a number column (year)", 8},     {"a number column (rank)", 10},
                    {"a date column (new)", 12},       {"a yes/no column (favourite)", 11},
                    {"a yes/no column (match)", 6}};
    Rig rig(albums, ListStyle::Details);
    const std::vector<Album*> before = byTitle(rig.commands.records);
    for (const auto& [name, index] : kColumns) {
        const auto column = static_cast<std::size_t>(index);
        const auto text = [&](Album& album) { return toLower(columnTexts(album)[column]); };
        if (const auto number = albumColumns()[column].number)
            sortRow(name, rig, index, runs, readyKeys<std::int32_t>(before, number));
        else
            sortRow(name, rig, index, runs, readyKeys<std::string>(before, text));
    }
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
            InvalidateRect(rig->list(), nullptr, TRUE);
            return timed([&] { UpdateWindow(rig->list()); });
        },
        [&] {
            const WindowDc dc(rig->list());
            return timed([&] {
                drawBare(dc.dc(), captions, rig.commands.fakeCovers.medium(), rig.commands.listFont(),
                         columns, 13);
            });
        });
    report({named("repaint of tiles, 1920 by 1080", albums), best.work, "ms", best.bare, 1.5});
}

void layoutRows(std::int32_t albums, int runs)
{
    FakeCommands commands;
    const ColouredCovers covers{commands.fakeCovers};
    fillLibrary(commands.records, albums);
    AloneList alone(commands, ListStyle::Icons);
    const BareList bare(ListStyle::Icons, albums);
    AlbumPlaces all(static_cast<std::size_t>(albums));
    std::iota(all.begin(), all.end(), 0U);
    Best best = bestOf(
        runs,
        [&] {
            alone.list().setAlbums({});
            bringToFront(alone.top());
            return timed([&] { alone.list().setAlbums(all); });
        },
        [&] {
            bare.setCount(0);
            bringToFront(bare.top());
            return timed([&] { bare.setCount(albums); });
        });
    report({named("first layout of icons", albums), best.work, "ms", best.bare, 1.5}, OnWindows::Harmless);

    const auto another = [](int& width) { return width = width == kWide ? kWide - 200 : kWide; };
    int width = kWide;
    int bareWidth = kWide;
    best = bestOf(
        runs,
        [&] {
            const int wide = another(width);
            bringToFront(alone.top());
            return timed([&] { alone.list().move({0, kStrip, wide, kTall}); });
        },
        [&] {
            const int wide = another(bareWidth);
            bringToFront(bare.top());
            return timed([&] {
                const RedrawOff quiet(bare.list().handle());
                bare.list().move({0, kStrip, wide, kTall});
                bare.list().send(LVM_ARRANGE, LVA_DEFAULT);
            });
        });
    report({named("resize of icons", albums), best.work, "ms", best.bare, 1.5}, OnWindows::Harmless);
}

void paneRow(std::int32_t albums, int runs)
{
    Rig rig(albums, ListStyle::Icons);
    double best = 1e9;
    for (int i = 0; i < runs; ++i) {
        bringToFront(rig->parent);
        best = std::min(best, timed([&] {
                            MoveWindow(rig->pane->window(), 0, 0, kWide - 200 * (i % 2 + 1), kTall, TRUE);
                        }));
    }
    report({named("resize of the whole overview with icons", albums), best, "ms"}, OnWindows::Harmless);
}

} // namespace

// bench_lists [PART]: all parts, or one of keys, sort, tiles, layout and gaps.
int main(int count, char** arguments)
{
    initCommonControls();
    const std::string_view only = count > 1 ? arguments[1] : "";
    const auto wanted = [&](std::string_view part) { return only.empty() || only == part; };
    for (const std::int32_t albums : {8400, 100000}) {
        const int runs = albums > 10000 ? 3 : 8;
        if (wanted("keys"))
            keyStrokeRow(albums, runs);
        if (wanted("sort"))
            sortRows(albums, runs);
        if (wanted("tiles"))
            tileRow(albums, runs);
        if (wanted("layout")) {
            layoutRows(albums, runs);
            paneRow(albums, runs);
        }
    }
    if (wanted("gaps"))
        gapRows();
    return 0;
}
