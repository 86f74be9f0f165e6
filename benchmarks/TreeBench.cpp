// Figures of the album details' trees, in a window of their own. bench_trees [PART]: all, or one of
// marks, gap, places, select, small and large (rebuilds of 8,400 and 100,000 albums).

#include "BareTree.h"
#include "GeneratedLibrary.h"
#include "Report.h"

#include "tests/ui/AlbumFixture.h"
#include "tests/ui/PaintCounter.h"
#include "ui/AlbumList.h"
#include "ui/AlbumTrees.h"
#include "ui/ids.h"

#include <algorithm>
#include <array>
#include <string_view>

using namespace tessera;
using namespace tessera::bench;

namespace {

constexpr const char* kGenres[] = {"Rock",  "Jazz",   "Pop",  "Folk",    "Metal", "Ambient", "Soul", "Blues",
                                   "House", "Reggae", "Punk", "Classic", "Dub",   "Funk",    "Rap",  "Ska"};

constexpr std::uint32_t kFlags[AlbumTrees::kCount] = {0, kAlbumNew, kAlbumFavourite, kAlbumHasImage};

// `variant` names other artists and albums. A tenth of the albums is by one artist.
void fillLibrary(Library& records, std::int32_t albums, const std::string& variant)
{
    const GeneratedLibrary made({albums * 12, albums});
    for (std::int32_t i = 0; i < made.artists(); ++i)
        addArtist(records, (variant + made.artist(i * 7919 % made.artists() * 4)).c_str()).complete =
            i % 3 == 0;
    for (std::int32_t i = 0; i < albums; ++i) {
        Album& album = addAlbum(records, (variant + made.title(i)).c_str(),
                                *records.artists[i % 10 == 0 ? 1 : i / 4 + 1]);
        album.genre = kGenres[static_cast<std::size_t>(i) / 4 % std::size(kGenres)];
        album.rank = i % 5 == 0 ? i % 11 : 0;
        album.set(kAlbumHasImage, i % 10 != 0);
        album.set(kAlbumNew, i % 20 == 0);
        album.set(kAlbumFavourite, i % 8 == 0);
    }
}

class TreeParent : public Mapped<TreeParent> {
public:
    static std::span<const MapEntry<TreeParent>> messageMap()
    {
        static constexpr MapEntry<TreeParent> kMap[] = {{WM_NOTIFY, &TreeParent::onNotify},
                                                        {WM_TIMER, &TreeParent::onTimer}};
        return kMap;
    }
    AlbumTrees* trees = nullptr;
    double longestGap = 0;
    Clock::time_point lastTick;

private:
    Handled onNotify(const Message& message)
    {
        return trees ? trees->answer(*reinterpret_cast<NMHDR*>(message.lParam)) : kDefault;
    }
    Handled onTimer(const Message&)
    {
        longestGap = std::max(longestGap, millisecondsSince(lastTick));
        lastTick = Clock::now();
        return 0;
    }
};

struct Rig {
    FakeCommands commands;
    Library other;
    HWND frame = makeParentWindow(800, 600);
    TreeParent parent;
    AlbumTrees trees{commands};
    SilentLog log;

    explicit Rig(std::int32_t albums)
    {
        fillLibrary(commands.records, albums, "");
        fillLibrary(other, albums, "Other ");
        require(parent.create(frame, 2000, {0, 0, 800, 600}), "no window");
        parent.trees = &trees;
        require(trees.create(parent.handle()), "no trees");
        trees.move({0, 0, 300, 600});
        commands.library();
    }
    // What tree `index` holds.
    BareItems itemsOf(std::size_t index)
    {
        AlbumTreeNames names;
        names.fill(commands.catalogue(), commands.general().moveThe, commands.firstNames());
        AlbumPlaces places;
        for (std::uint32_t place = 0; place < commands.catalogue().size(); ++place) {
            if ((commands.catalogue().album(place).flags & kFlags[index]) == kFlags[index])
                places.push_back(place);
        }
        return bareItems(commands.catalogue(), names, places);
    }
    // Puts in every album, as somebody who asks for the number of nodes does.
    std::array<int, AlbumTrees::kCount> fill()
    {
        std::array<int, AlbumTrees::kCount> counts{};
        for (std::size_t i = 0; i < counts.size(); ++i)
            counts[i] = trees.tree(i).view().count();
        return counts;
    }
    // Behind `release`.
    void changeLibrary()
    {
        std::swap(commands.records, other);
        commands.catalogue().clear();
        commands.library();
    }
};

template <class Work>
double timed(Work work)
{
    const auto start = Clock::now();
    work();
    return millisecondsSince(start);
}

std::string named(const char* what, std::int32_t albums)
{
    return std::string(what) + ", " + std::to_string(albums) + " albums, 32-bit";
}

// Inserting the same items and sorting the groups. Trees of many items take long to destroy: they stay.
double bareTime(HWND parent, const std::vector<BareItems>& lists)
{
    std::vector<TreeView> trees;
    for (std::size_t i = 0; i < lists.size(); ++i)
        trees.push_back(bareTree(parent));
    return timed([&] {
        for (std::size_t i = 0; i < lists.size(); ++i)
            insertAndSort(trees[i], lists[i]);
    });
}

void rebuildRows(std::int32_t albums, int runs)
{
    Rig rig(albums);
    const auto rebuild = [&] { rig.trees.rebuild(TreeRebuild::Full, rig.log); };
    const double first = timed(rebuild);
    std::vector<BareItems> lists;
    for (std::size_t i = 0; i < AlbumTrees::kCount; ++i)
        lists.push_back(rig.itemsOf(i));
    double bare = 1e9;
    double again = 1e9;
    double other = 1e9;
    double filling = 1e9;
    double filled = 1e9;
    double otherFilled = 1e9;
    const auto change = [&] {
        const double emptying = timed([&] { rig.trees.release(); });
        rig.changeLibrary();
        return emptying + timed(rebuild);
    };
    for (int i = 0; i < runs; ++i) {
        bare = std::min(bare, bareTime(rig.parent.handle(), lists));
        again = std::min(again, timed(rebuild));
        const double changing = change();
        other = std::min(other, changing);
        std::array<int, AlbumTrees::kCount> counts{};
        filling = std::min(filling, changing + timed([&] { counts = rig.fill(); }));
        for (std::size_t tree = 0; tree < counts.size(); ++tree)
            require(counts[tree] == static_cast<int>(lists[tree].items.size()), "items are missing");
        filled = std::min(filled, timed(rebuild));
        otherFilled = std::min(otherFilled, change());
    }
    report({named("first rebuild of the four trees", albums), first, "ms", bare, 1.3}, OnWindows::Helpful);
    report({named("rebuild of the four trees, same library", albums), again, "ms", bare, 1.3},
           OnWindows::Helpful);
    report({named("rebuild of the four trees, another library", albums), other, "ms", bare, 1.3},
           OnWindows::Helpful);
    report({named("rebuild of the four trees, another library, and all groups filled", albums), filling, "ms",
            bare, 1.3});
    report({named("rebuild of the four trees, same library, all groups filled before", albums), filled, "ms",
            bare, 1.3});
    report({named("rebuild of the four trees, another library, all groups filled before", albums),
            otherFilled, "ms", bare},
           OnWindows::Helpful);
}

HTREEITEM childNamed(const TreeView& tree, HTREEITEM parent, const std::string& text)
{
    HTREEITEM item = tree.child(parent);
    while (item && tree.text(item) != text)
        item = tree.next(item);
    require(item != nullptr, "a group is missing");
    return item;
}

struct Opening {
    std::size_t albums;
    double work;
    double bare;
};

// In a tree in view whose artists are open. The bare tree has all its groups, and gets the same albums.
Opening openLargest(std::int32_t albums)
{
    Rig rig(albums);
    rig.trees.rebuild(TreeRebuild::Full, rig.log);
    const BareItems list = rig.itemsOf(0);
    std::vector<std::size_t> counts(list.groups);
    for (std::size_t i = list.groups; i < list.items.size(); ++i)
        ++counts[static_cast<std::size_t>(list.items[i].parent)];
    const auto largest = static_cast<std::size_t>(std::ranges::max_element(counts) - counts.begin());
    std::size_t begin = list.groups;
    while (list.items[begin].parent != static_cast<int>(largest))
        ++begin;

    const TreeView& view = rig.trees.tree(0).view();
    const HTREEITEM root = rig.trees.tree(0).root(Grouping::Artist);
    const HTREEITEM group = childNamed(view, root, list.items[largest].text);
    rig.trees.show(0);
    ShowWindow(rig.frame, SW_SHOWNOACTIVATE);
    view.expand(root);
    view.scrollToTop(group);
    pumpMessages(50);
    const double work = timed([&] {
        view.expand(group);
        UpdateWindow(view.handle());
    });
    view.show(false);

    const TreeView bare = bareTree(rig.parent.handle());
    std::vector<HTREEITEM> made;
    insertBare(bare, list, 0, list.groups, made);
    bare.show(true);
    bare.expand(made[static_cast<std::size_t>(list.items[largest].parent)]);
    bare.scrollToTop(made[largest]);
    pumpMessages(50);
    const double reference = timed([&] {
        insertBare(bare, list, begin, begin + counts[largest], made);
        bare.expand(made[largest]);
        UpdateWindow(bare.handle());
    });
    return {counts[largest], work, reference};
}

void openRow(std::int32_t albums)
{
    Opening best = openLargest(albums);
    for (int i = 0; i < 2; ++i) {
        const Opening next = openLargest(albums);
        best.work = std::min(best.work, next.work);
        best.bare = std::min(best.bare, next.bare);
    }
    const std::string what = "opening the largest group (" + std::to_string(best.albums) + " albums)";
    report({named(what.c_str(), albums), best.work, "ms", best.bare, 1.3}, OnWindows::Helpful);
}

// As a job does it: one turn after the other, with messages between.
void gapRow(std::int32_t albums)
{
    Rig rig(albums);
    double longest = 0;
    double longestTurn = 0;
    for (int i = 0; i < 3; ++i) {
        SetTimer(rig.parent.handle(), 1, 20, nullptr);
        pumpMessages(100);
        rig.parent.longestGap = 0;
        rig.parent.lastTick = Clock::now();
        if (i > 0) {
            rig.trees.release();
            rig.changeLibrary();
        }
        rig.trees.begin(TreeRebuild::Full, rig.log);
        for (bool more = true; more; pumpMessages(1)) {
            const double time = timed([&] { more = rig.trees.step(std::chrono::milliseconds(30)); });
            longestTurn = std::max(longestTurn, time);
        }
        pumpMessages(60);
        KillTimer(rig.parent.handle(), 1);
        longest = std::max(longest, rig.parent.longestGap);
    }
    report({named("longest turn of 30 ms in a rebuild", albums), longestTurn, "ms"}, OnWindows::Needed);
    report({named("longest wait of a 20 ms timer in a rebuild", albums), longest, "ms", 100.0, 1.0},
           OnWindows::Needed);
}

// Some systems walk all siblings to the last place and to a node that another is put behind.
class SearchedPlaces final : public Subclass {
public:
    Handled route(const Message& message) override
    {
        if (message.id != TVM_INSERTITEMA)
            return kDefault;
        const auto& insert = *reinterpret_cast<const TVINSERTSTRUCTA*>(message.lParam);
        if (insert.hParent == TVI_ROOT)
            return kDefault;
        ++insertions;
        searched += insert.hInsertAfter != TVI_FIRST;
        return kDefault;
    }
    int insertions = 0;
    int searched = 0;
};

void placesRow(std::int32_t albums)
{
    Rig rig(albums);
    std::array<SearchedPlaces, AlbumTrees::kCount> places;
    for (std::size_t i = 0; i < places.size(); ++i)
        require(places[i].attach(rig.trees.tree(i).view().handle()), "no subclass");
    rig.trees.rebuild(TreeRebuild::Full, rig.log);
    rig.fill();
    rig.trees.release();
    rig.changeLibrary();
    rig.trees.rebuild(TreeRebuild::Full, rig.log);
    rig.fill();
    int searched = 0;
    int insertions = 0;
    for (const SearchedPlaces& each : places) {
        searched += each.searched;
        insertions += each.insertions;
    }
    require(insertions > 6 * albums, "nothing was inserted");
    report({named("nodes put behind another or to the last place in two fresh fills", albums),
            static_cast<double>(searched), "", std::nullopt, 0.0},
           OnWindows::Needed);
}

void selectRow(std::int32_t albums, int runs)
{
    Rig rig(albums);
    rig.trees.rebuild(TreeRebuild::Full, rig.log);
    AlbumList list(rig.commands, rig.commands.catalogue());
    require(list.initAlbumList(rig.parent.handle(), 7001, ListStyle::Details), "no list");
    list.move({300, 0, 800, 600});
    ListView bare;
    require(bare.create(rig.parent.handle(), 7002, {300, 0, 800, 600},
                        ListView::kReport | LVS_OWNERDATA | LVS_SHAREIMAGELISTS | LVS_AUTOARRANGE, 0),
            "no bare list");
    bare.setExtendedStyle(LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    for (int column = 0; column < list.view().columnCount(); ++column)
        bare.addColumn("Column", list.view().columnWidth(column));
    ShowWindow(rig.frame, SW_SHOWNOACTIVATE);
    const AlbumTree& tree = rig.trees.tree(0);
    AlbumPlaces sequence;
    tree.albumsOf(tree.root(Grouping::Artist), rig.commands.catalogue(), sequence);
    require(sequence.size() == static_cast<std::size_t>(albums), "albums are missing");
    AlbumPlaces shown;
    AlbumPlaces bareShown;
    const Best best = bestOf(
        runs,
        [&] {
            list.setAlbums({});
            return timed([&] {
                tree.albumsOf(tree.root(Grouping::Artist), rig.commands.catalogue(), shown);
                list.setAlbums(shown);
            });
        },
        [&] {
            bare.setVirtualCount(0);
            return timed([&] {
                bareShown = sequence;
                bare.setVirtualCount(static_cast<int>(bareShown.size()));
            });
        });
    report({named("selecting the root of Entire Library", albums), best.work, "ms", best.bare, 1.5});
}

void marksRows(std::int32_t favourites, int runs)
{
    Rig rig(favourites);
    for (const auto& [id, album] : rig.commands.records.albums) {
        album->set(kAlbumFavourite, true);
        album->set(kAlbumNew, false);
    }
    rig.trees.rebuild(TreeRebuild::Full, rig.log);
    rig.trees.show(2);
    ShowWindow(rig.frame, SW_SHOWNOACTIVATE);
    const AlbumTree& tree = rig.trees.tree(2);
    tree.view().expand(tree.root(Grouping::Artist));
    pumpMessages(200);
    const BareItems list = rig.itemsOf(2);
    PaintCounter counter;
    require(counter.attach(tree.view().handle()), "no subclass");
    Album& marked = *rig.commands.records.albums[favourites / 2];
    int most = 0;
    const Best best = bestOf(
        runs,
        [&] {
            marked.set(kAlbumFavourite, !marked.has(kAlbumFavourite));
            counter.paints = counter.erases = 0;
            const double time = timed([&] { rig.trees.rebuild(TreeRebuild::Marks, rig.log); });
            require(counter.paints == 0 && counter.erases == 0, "the tree was painted meanwhile");
            pumpMessages(50);
            most = std::max(most, counter.paints);
            return time;
        },
        [&] {
            TreeView bare = bareTree(rig.parent.handle());
            const double time = timed([&] {
                const TreeUpdate update(bare);
                std::vector<HTREEITEM> made;
                insertBare(bare, list, 0, list.items.size(), made);
            });
            bare.destroy();
            return time;
        });
    report({named("rebuild after one mark, all favourites", favourites), best.work, "ms", best.bare, 1.5},
           OnWindows::Helpful);
    report({named("paints after a rebuild after one mark", favourites), static_cast<double>(most), "", 1.0,
            1.0});
}

} // namespace

int main(int count, char** arguments)
{
    initCommonControls();
    const struct {
        std::string_view name;
        void (*rows)();
    } parts[] = {
        {"marks", [] { marksRows(8400, 3); }},
        {"gap", [] { gapRow(8400); }},
        {"places", [] { placesRow(8400); }},
        {"select", [] { return selectRow(8400, 8), selectRow(100000, 5); }},
        {"small", [] { return rebuildRows(8400, 3), openRow(8400); }},
        {"large", [] { return rebuildRows(100000, 1), openRow(100000); }},
    };
    const std::string_view only = count > 1 ? arguments[1] : "";
    for (const auto& part : parts) {
        if (only.empty() || only == part.name)
            part.rows();
    }
    ExitProcess(0); // without the large trees' end, which takes long
}
