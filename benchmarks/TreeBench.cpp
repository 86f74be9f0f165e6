// Figures of the album details' trees, in a window of their own. bench_trees [PART]: all, or one of
// marks, gap, select, small and large (rebuilds of 8,400 and 100,000 albums).

#include "GeneratedLibrary.h"
#include "Report.h"

#include "tests/ui/AlbumFixture.h"
#include "tests/ui/PaintCounter.h"
#include "ui/AlbumList.h"
#include "ui/AlbumTrees.h"
#include "ui/ids.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <string_view>

using namespace tessera;
using namespace tessera::bench;

namespace {

constexpr const char* kGenres[] = {"Rock",  "Jazz",   "Pop",  "Folk",    "Metal", "Ambient", "Soul", "Blues",
                                   "House", "Reggae", "Punk", "Classic", "Dub",   "Funk",    "Rap",  "Ska"};

constexpr std::int32_t kSmall = 10000; // a library of fewer albums is measured more often

// `variant` names other artists and albums.
void fillLibrary(Library& records, std::int32_t albums, const std::string& variant)
{
    const GeneratedLibrary made({albums * 12, albums});
    for (std::int32_t i = 0; i < made.artists(); ++i)
        addArtist(records, (variant + made.artist(i * 7919 % made.artists() * 4)).c_str()).complete =
            i % 3 == 0;
    for (std::int32_t i = 0; i < albums; ++i) {
        Album& album = addAlbum(records, (variant + made.title(i)).c_str(), *records.artists[i / 4 + 1]);
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
        return trees ? trees->answer(*reinterpret_cast<const NMHDR*>(message.lParam)) : kDefault;
    }
    Handled onTimer(const Message&)
    {
        longestGap = std::max(longestGap, millisecondsSince(lastTick));
        lastTick = Clock::now();
        return 0;
    }
};

// The items of a tree as lists: what a tree of the same contents is made from.
struct BareItem {
    std::string text;
    int image;
    LPARAM data;
    int parent;  // item's number; -1: a root
    bool sorted; // its children are
};

std::vector<BareItem> itemsOf(const AlbumTree& tree)
{
    std::vector<BareItem> items;
    const auto visit = [&](auto& self, HTREEITEM first, int parent) -> void {
        for (HTREEITEM item = first; item; item = tree.view().next(item)) {
            const bool leaf = tree.isLeaf(item);
            const HTREEITEM child = tree.view().child(item);
            const auto number = static_cast<int>(items.size());
            items.push_back({tree.view().text(item), leaf ? icon::kAlbum : icon::kPerson,
                             tree.view().data(item), parent, child && !tree.isLeaf(child)});
            if (child)
                self(self, child, number);
        }
    };
    visit(visit, tree.view().root(), -1);
    return items;
}

// Groups come in no order, as they do from a library.
void mixGroups(std::vector<BareItem>& items)
{
    std::map<int, std::vector<int>> children;
    for (std::size_t i = 0; i < items.size(); ++i)
        children[items[i].parent].push_back(static_cast<int>(i));
    std::vector<BareItem> mixed;
    const auto visit = [&](auto& self, int parent, int newParent) -> void {
        const auto& list = children[parent];
        const std::size_t step =
            newParent >= 0 && items[static_cast<std::size_t>(parent)].sorted ? list.size() * 5 / 8 | 1 : 1;
        std::size_t stride = step;
        while (std::gcd(stride, list.size()) > 1)
            ++stride;
        for (std::size_t i = 0; i < list.size(); ++i) {
            const int old = list[i * stride % list.size()];
            mixed.push_back(items[static_cast<std::size_t>(old)]);
            mixed.back().parent = newParent;
            const auto number = static_cast<int>(mixed.size()) - 1;
            self(self, old, number);
        }
    };
    visit(visit, -1, -1);
    items = std::move(mixed);
}

// Into an empty tree, and sorted where groups are.
void insertBare(const TreeView& tree, const std::vector<BareItem>& items, bool sort)
{
    const TreeUpdate update(tree);
    std::vector<HTREEITEM> made(items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        const BareItem& item = items[i];
        made[i] = tree.add(item.parent < 0 ? TVI_ROOT : made[static_cast<std::size_t>(item.parent)],
                           item.text, item.image, item.data);
    }
    for (std::size_t i = 0; sort && i < items.size(); ++i) {
        if (items[i].sorted)
            tree.send(TVM_SORTCHILDREN, 0, reinterpret_cast<LPARAM>(made[i]));
    }
}

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
    void changeLibrary()
    {
        trees.release();
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

// Trees of many items take long to destroy, so those of the large library stay.
double bareTrees(HWND parent, const std::vector<std::vector<BareItem>>& items, bool keep)
{
    std::vector<TreeView> bare(items.size());
    for (TreeView& tree : bare) {
        require(tree.create(parent, 7000, {0, 0, 300, 600}, TreeView::kTree, 0), "no bare tree");
        tree.show(false);
    }
    const double time = timed([&] {
        for (std::size_t i = 0; i < items.size(); ++i)
            insertBare(bare[i], items[i], true);
    });
    for (TreeView& tree : bare) {
        if (!keep)
            tree.destroy();
    }
    return time;
}

void rebuildRows(std::int32_t albums, int runs)
{
    Rig rig(albums);
    const double first = timed([&] { rig.trees.rebuild(TreeRebuild::Full, rig.log); });
    std::vector<std::vector<BareItem>> items;
    for (std::size_t i = 0; i < AlbumTrees::kCount; ++i) {
        items.push_back(itemsOf(rig.trees.tree(i)));
        mixGroups(items.back());
    }
    double bare = 1e9;
    for (int i = 0; i < runs; ++i)
        bare = std::min(bare, bareTrees(rig.parent.handle(), items, albums > kSmall));
    double again = 1e9;
    double other = 1e9;
    for (int i = 0; i < runs; ++i) {
        if (albums <= kSmall)
            again = std::min(again, timed([&] { rig.trees.rebuild(TreeRebuild::Full, rig.log); }));
        rig.changeLibrary();
        other = std::min(other, timed([&] { rig.trees.rebuild(TreeRebuild::Full, rig.log); }));
    }
    report({named("first rebuild of the four trees", albums), first, "ms", bare, 1.3});
    if (albums <= kSmall)
        report({named("rebuild of the four trees, same library", albums), again, "ms", bare, 1.3});
    report({named("rebuild of the four trees, another library", albums), other, "ms", bare, 1.3});
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
        if (i > 0)
            rig.changeLibrary();
        rig.trees.begin(TreeRebuild::Full, rig.log);
        for (bool more = true; more; pumpMessages(1)) {
            const double time = timed([&] { more = rig.trees.step(std::chrono::milliseconds(30)); });
            longestTurn = std::max(longestTurn, time);
        }
        pumpMessages(60);
        KillTimer(rig.parent.handle(), 1);
        longest = std::max(longest, rig.parent.longestGap);
    }
    report({named("longest turn of 30 ms in a rebuild", albums), longestTurn, "ms"});
    report({named("longest wait of a 20 ms timer in a rebuild", albums), longest, "ms", 100.0, 1.0});
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
    const std::vector<BareItem> items = itemsOf(tree);
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
            TreeView bare;
            require(bare.create(rig.parent.handle(), 7000, {0, 0, 300, 600}, TreeView::kTree, 0),
                    "no bare tree");
            bare.show(false);
            const double time = timed([&] { insertBare(bare, items, false); });
            bare.destroy();
            return time;
        });
    report({named("rebuild after one mark, all favourites", favourites), best.work, "ms", best.bare, 1.5});
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
        {"select", [] { return selectRow(8400, 8), selectRow(100000, 5); }},
        {"small", [] { rebuildRows(8400, 3); }},
        {"large", [] { rebuildRows(100000, 1); }},
    };
    const std::string_view only = count > 1 ? arguments[1] : "";
    for (const auto& part : parts) {
        if (only.empty() || only == part.name)
            part.rows();
    }
    ExitProcess(0); // without the large trees' end, which takes long
}
