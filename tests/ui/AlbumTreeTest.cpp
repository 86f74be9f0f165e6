#include "ui/AlbumTrees.h"

#include "AlbumFixture.h"
#include "PaintCounter.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "ui/ids.h"
#include "windowing/Window.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>

using namespace tessera;

namespace {

constexpr std::size_t kLibrary = 0;
constexpr std::size_t kNew = 1;
constexpr std::size_t kFavourites = 2;
constexpr std::size_t kCompleted = 3;

class Lines : public Log {
public:
    void startTimer() override {}
    void indent() override {}
    void outdent() override {}
    void line(const std::string& text) override { lines.push_back(text); }
    void progress(std::uint32_t, std::uint32_t) override {}

    std::vector<std::string> lines;
};

// Stands for the pane: hands the trees what they notify, and counts what they leave.
class TreeParent : public Mapped<TreeParent> {
public:
    static std::span<const MapEntry<TreeParent>> messageMap()
    {
        static constexpr MapEntry<TreeParent> kMap[] = {{WM_NOTIFY, &TreeParent::onNotify}};
        return kMap;
    }
    AlbumTrees* trees = nullptr;
    int selectionChanges = 0;

private:
    Handled onNotify(const Message& message)
    {
        const auto& header = *reinterpret_cast<const NMHDR*>(message.lParam);
        if (trees && trees->answer(header))
            return 0;
        selectionChanges += header.code == TVN_SELCHANGEDA || header.code == TVN_SELCHANGEDW ? 1 : 0;
        return kDefault;
    }
};

std::vector<std::string> s_assertions;

class AlbumTreeTest : public testing::Test {
protected:
    AlbumTreeTest()
    {
        s_assertions.clear();
        m_before = setAssertionHandler([](const char* expression, const char* unit, unsigned long) {
            s_assertions.push_back(std::string(unit) + ": " + expression);
        });
        m_parent.create(m_frame, 2000, {0, 0, 400, 600});
        m_parent.trees = m_trees.get();
        EXPECT_TRUE(m_trees->create(m_parent.handle()));
        m_trees->move({0, 0, 300, 500});
    }
    ~AlbumTreeTest() override
    {
        m_parent.destroy();
        DestroyWindow(m_frame);
        setAssertionHandler(m_before);
    }

    Album& album(const char* title, Artist& artist, const char* genre = "Rock", std::int32_t rank = 0)
    {
        Album& made = addAlbum(m_commands.records, title, artist);
        made.genre = genre;
        made.rank = rank;
        return made;
    }
    Artist& artist(const char* name) { return addArtist(m_commands.records, name); }
    void mark(Album& album, AlbumFlag flag) { album.set(flag, true); }
    void rebuild(TreeRebuild kind = TreeRebuild::Full)
    {
        m_commands.library(); // fills the catalogue
        m_trees->rebuild(kind, m_log);
    }

    const TreeView& view(std::size_t tree = kLibrary) const { return m_trees->tree(tree).view(); }
    HTREEITEM root(Grouping grouping, std::size_t tree = kLibrary) const
    {
        return m_trees->tree(tree).root(grouping);
    }
    // The node that the texts lead to from a root.
    HTREEITEM find(HTREEITEM from, const std::vector<std::string>& texts, std::size_t tree = kLibrary) const
    {
        HTREEITEM item = from;
        for (const std::string& text : texts) {
            item = view(tree).child(item);
            while (item && view(tree).text(item) != text)
                item = view(tree).next(item);
        }
        return item;
    }
    // "Text/parameter/icon" of everything below a node, two blanks for each level; "*" for an album.
    std::string outline(HTREEITEM parent, std::size_t tree = kLibrary, int depth = 0) const
    {
        std::string lines;
        for (HTREEITEM item = view(tree).child(parent); item; item = view(tree).next(item)) {
            lines += std::string(static_cast<std::size_t>(depth) * 2, ' ') + describe(item, tree) + "\n" +
                     outline(item, tree, depth + 1);
        }
        return lines;
    }
    std::string describe(HTREEITEM item, std::size_t tree = kLibrary) const
    {
        TVITEMA info{};
        info.mask = TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        info.hItem = item;
        view(tree).send(TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&info));
        EXPECT_EQ(info.iImage, info.iSelectedImage);
        const bool leaf = m_trees->tree(tree).isLeaf(item);
        return view(tree).text(item) + "/" + (leaf ? "*" : std::to_string(info.lParam)) + "/" +
               std::to_string(info.iImage);
    }
    std::vector<std::string> titles(HTREEITEM item, std::size_t tree = kLibrary)
    {
        AlbumPlaces places;
        m_trees->tree(tree).albumsOf(item, m_commands.catalogue(), places);
        std::vector<std::string> texts;
        for (const std::uint32_t place : places)
            texts.push_back(m_commands.catalogue().album(place).displayTitle);
        return texts;
    }

    FakeCommands m_commands;
    HWND m_frame = makeParentWindow(400, 600);
    TreeParent m_parent;
    std::unique_ptr<AlbumTrees> m_trees = std::make_unique<AlbumTrees>(m_commands);
    Lines m_log;
    AssertionHandler m_before = nullptr;
};

using Texts = std::vector<std::string>;

} // namespace

TEST_F(AlbumTreeTest, HasThreeRootsWithTheirParameters)
{
    for (std::size_t i = 0; i < AlbumTrees::kCount; ++i) {
        EXPECT_EQ(GetDlgCtrlID(view(i).handle()), controlId::kTreeLibrary + static_cast<int>(i));
        EXPECT_FALSE(IsWindowVisible(view(i).handle()));
        std::string roots;
        for (HTREEITEM item = view(i).root(); item; item = view(i).next(item))
            roots += describe(item, i) + " ";
        EXPECT_EQ(roots, "Artist/Album/100/8 Genre/300/8 Rank/0/8 ");
    }
}

TEST_F(AlbumTreeTest, GroupsAlbumsInThreeWays)
{
    Artist& lanterns = artist("The Lanterns");
    Artist& voss = artist("Harlan Voss");
    m_commands.names = {"HARLAN"};
    voss.complete = true;
    album("Zenith", lanterns, "Rock", 5);
    Album& dawn = album("Dawn", voss, "rock", 10);
    album("Alba", lanterns, "Jazz", -3);
    mark(dawn, kAlbumHasImage);
    rebuild();

    EXPECT_EQ(outline(root(Grouping::Artist)), "Lanterns, The/101/14\n"
                                               "  Zenith/*/13\n"
                                               "  Alba/*/13\n"
                                               "Voss, Harlan/101/2\n"
                                               "  Dawn/*/0\n");
    EXPECT_EQ(outline(root(Grouping::Genre)), "Jazz/202/4\n"
                                              "  Lanterns, The/202/2\n"
                                              "    Alba/*/13\n"
                                              "Rock/202/4\n"
                                              "  Lanterns, The/202/2\n"
                                              "    Zenith/*/13\n"
                                              "  Voss, Harlan/202/2\n"
                                              "    Dawn/*/0\n");
    EXPECT_EQ(outline(root(Grouping::Rank)), "5/301/2\n"
                                             "  Lanterns, The/302/2\n"
                                             "    Zenith/*/13\n"
                                             "10/301/2\n"
                                             "  Voss, Harlan/302/2\n"
                                             "    Dawn/*/0\n"
                                             "(Unranked)/301/2\n"
                                             "  Lanterns, The/302/2\n"
                                             "    Alba/*/13\n");
    EXPECT_EQ(outline(root(Grouping::Artist, kCompleted), kCompleted), "Voss, Harlan/101/2\n"
                                                                       "  Dawn/*/0\n");
    EXPECT_EQ(view(kNew).count(), 3);
    EXPECT_EQ(m_log.lines, Texts{"Sorting"});
    const HTREEITEM leaf = find(root(Grouping::Artist), {"Voss, Harlan", "Dawn"});
    EXPECT_EQ(view().data(leaf), reinterpret_cast<LPARAM>(&dawn));
}

TEST_F(AlbumTreeTest, ArtistsThatDifferOnlyInCaseShareANodeWithTheNameThatCameFirst)
{
    Artist& small = artist("lumen");
    Artist& large = artist("LUMEN");
    large.complete = true;
    mark(album("One", large), kAlbumNew);
    Album& two = album("Two", small);
    mark(two, kAlbumNew);
    mark(two, kAlbumFavourite);
    rebuild();
    EXPECT_EQ(outline(root(Grouping::Artist)), "LUMEN/101/2\n  One/*/13\n  Two/*/13\n");
    EXPECT_EQ(outline(root(Grouping::Artist, kFavourites), kFavourites), "lumen/101/14\n  Two/*/13\n");
}

TEST_F(AlbumTreeTest, RanksStandInTheirOrder)
{
    Artist& somebody = artist("Somebody");
    for (const std::int32_t rank : {0, 10, 3, 1, 7, 2, 9, 4, 8, 6, 5})
        album("Album", somebody, "Rock", rank);
    rebuild();
    std::string ranks;
    for (HTREEITEM item = view().child(root(Grouping::Rank)); item; item = view().next(item))
        ranks += view().text(item) + " ";
    EXPECT_EQ(ranks, "1 2 3 4 5 6 7 8 9 10 (Unranked) ");
}

// The trees are not sorted by the control itself; it must find nothing to change.
TEST_F(AlbumTreeTest, GroupsStandAsTheControlSortsThem)
{
    const std::string letters = "abBzZ -'.,_09(&)\xE9\xC9\xE8\xFC\xDF\xF1oO/!";
    std::mt19937 random(7);
    for (int i = 0; i < 400; ++i) {
        std::string name;
        for (unsigned length = random() % 6; length > 0; --length)
            name += letters[random() % letters.size()];
        album("Album", artist(name.c_str()), (name + "g").c_str());
    }
    rebuild();
    for (const Grouping grouping : {Grouping::Artist, Grouping::Genre}) {
        const std::string before = outline(root(grouping));
        view().send(TVM_SORTCHILDREN, 0, reinterpret_cast<LPARAM>(root(grouping)));
        EXPECT_EQ(outline(root(grouping)), before);
    }
}

TEST_F(AlbumTreeTest, ANodeHasTheAlbumsBelowItAsTheyAreShown)
{
    Artist& b = artist("B");
    Artist& a = artist("A");
    album("b1", b, "Rock", 1);
    album("a1", a, "Rock", 2);
    album("b2", b, "Jazz", 2);
    album("a2", a, "Rock", 1);
    rebuild();
    EXPECT_EQ(titles(root(Grouping::Artist)), (Texts{"a1", "a2", "b1", "b2"}));
    EXPECT_EQ(titles(root(Grouping::Genre)), (Texts{"b2", "a1", "a2", "b1"}));
    EXPECT_EQ(titles(root(Grouping::Rank)), (Texts{"a2", "b1", "a1", "b2"}));
    EXPECT_EQ(titles(find(root(Grouping::Artist), {"B"})), (Texts{"b1", "b2"}));
    EXPECT_EQ(titles(find(root(Grouping::Genre), {"Rock"})), (Texts{"a1", "a2", "b1"}));
    EXPECT_EQ(titles(find(root(Grouping::Genre), {"Rock", "A"})), (Texts{"a1", "a2"}));
    EXPECT_EQ(titles(find(root(Grouping::Rank), {"2", "B", "b2"})), Texts{"b2"});
    EXPECT_EQ(titles(nullptr), Texts{});
}

TEST_F(AlbumTreeTest, ThePathNamesGroupsOnly)
{
    album("Dawn", artist("The Lanterns"), "Rock", 5);
    rebuild();
    const AlbumTree& tree = m_trees->tree(kLibrary);
    const HTREEITEM rank = find(root(Grouping::Rank), {"5", "Lanterns, The"});
    EXPECT_EQ(tree.pathOf(rank), "Rank - 5 - Lanterns, The - ");
    EXPECT_EQ(tree.pathOf(root(Grouping::Genre)), "Genre - ");
    EXPECT_EQ(tree.pathOf(find(rank, {"Dawn"})), "");
    EXPECT_EQ(tree.pathOf(nullptr), "");
    EXPECT_TRUE(tree.isLeaf(find(rank, {"Dawn"})));
    EXPECT_FALSE(tree.isLeaf(rank));
    // A record above 2 GB is a negative parameter.
    view().setData(rank, static_cast<LPARAM>(0x80001000));
    EXPECT_TRUE(tree.isLeaf(rank));
    EXPECT_EQ(tree.pathOf(rank), "");
}

TEST_F(AlbumTreeTest, AfterMarksOnlyTheTreesOfMarksChange)
{
    Artist& somebody = artist("Somebody");
    Artist& other = artist("Other");
    Album& first = album("First", somebody, "Rock", 1);
    Album& second = album("Second", somebody, "Rock", 2);
    Album& third = album("Third", other, "Jazz", 3);
    mark(first, kAlbumFavourite);
    mark(third, kAlbumFavourite);
    rebuild();
    const std::string library = outline(root(Grouping::Rank));
    const HTREEITEM kept = find(root(Grouping::Artist, kFavourites), {"Somebody", "First"}, kFavourites);

    mark(second, kAlbumFavourite);
    mark(second, kAlbumNew);
    first.set(kAlbumFavourite, true);
    third.set(kAlbumFavourite, false);
    second.rank = 9;
    rebuild(TreeRebuild::Marks);
    EXPECT_EQ(outline(root(Grouping::Artist, kFavourites), kFavourites), "Somebody/101/14\n"
                                                                         "  First/*/13\n"
                                                                         "  Second/*/13\n");
    EXPECT_EQ(outline(root(Grouping::Rank, kFavourites), kFavourites), "1/301/2\n"
                                                                       "  Somebody/302/2\n"
                                                                       "    First/*/13\n"
                                                                       "9/301/2\n"
                                                                       "  Somebody/302/2\n"
                                                                       "    Second/*/13\n");
    EXPECT_EQ(find(root(Grouping::Artist, kFavourites), {"Somebody", "First"}, kFavourites), kept);
    EXPECT_EQ(outline(root(Grouping::Genre, kNew), kNew), "Rock/202/4\n  Somebody/202/2\n    Second/*/13\n");
    EXPECT_EQ(outline(root(Grouping::Rank)), library);
    EXPECT_EQ(view(kCompleted).count(), 3);
    EXPECT_EQ(titles(root(Grouping::Genre, kFavourites), kFavourites), (Texts{"First", "Second"}));

    second.set(kAlbumFavourite, false);
    first.set(kAlbumFavourite, false);
    rebuild(TreeRebuild::Marks);
    EXPECT_EQ(view(kFavourites).count(), 3);
    EXPECT_EQ(m_log.lines, (Texts{"Sorting", "Sorting", "Sorting"}));
}

// A tree that was changed is as one that was made anew.
TEST_F(AlbumTreeTest, ChangesEndInTheSameTreeWhateverCameBefore)
{
    std::mt19937 random(11);
    for (int i = 0; i < 12; ++i)
        artist(format("Artist %d", i * 7 % 12).c_str());
    for (int i = 0; i < 60; ++i)
        album(format("Album %d", i).c_str(), *m_commands.records.artists[1 + static_cast<int>(random() % 12)],
              i % 3 == 0 ? "Rock" : "Jazz");
    rebuild();
    for (int round = 0; round < 16; ++round) {
        for (const auto& [id, each] : m_commands.records.albums) {
            if (random() % 4 == 0)
                each->set(kAlbumFavourite, random() % 2 == 0);
            if (random() % 4 == 0)
                each->rank = static_cast<std::int32_t>(random() % 12) - 1;
        }
        if (round % 4 == 3) {
            for (const auto& [id, each] : m_commands.records.artists)
                each->displayName =
                    format("%c %s", static_cast<char>('A' + random() % 26), each->displayName.c_str());
            m_trees->release();
        }
        for (const Grouping grouping : {Grouping::Artist, Grouping::Genre, Grouping::Rank}) {
            const HTREEITEM group = view(kFavourites).child(root(grouping, kFavourites));
            view(kFavourites).expand(group);
        }
        rebuild(round % 4 == 3 ? TreeRebuild::Full : TreeRebuild::Marks);
        auto fresh = std::make_unique<AlbumTrees>(m_commands);
        ASSERT_TRUE(fresh->create(m_parent.handle()));
        fresh->rebuild(TreeRebuild::Full, m_log);
        for (const Grouping grouping : {Grouping::Artist, Grouping::Genre, Grouping::Rank}) {
            const std::string changed = outline(root(grouping, kFavourites), kFavourites);
            std::swap(fresh, m_trees);
            EXPECT_EQ(changed, outline(root(grouping, kFavourites), kFavourites)) << round;
            std::swap(fresh, m_trees);
        }
        for (std::size_t i = 0; i < AlbumTrees::kCount; ++i)
            DestroyWindow(fresh->tree(i).view().handle());
    }
}

TEST_F(AlbumTreeTest, OpenNodesAndTheTopLineComeBack)
{
    for (int i = 0; i < 60; ++i)
        album("Album", artist(format("Artist %02d", i).c_str()), i % 2 == 0 ? "Rock" : "Jazz");
    m_trees->show(kLibrary);
    ShowWindow(m_frame, SW_SHOWNOACTIVATE);
    rebuild();
    view().expand(find(root(Grouping::Artist), {"Artist 30"}));
    view().expand(root(Grouping::Artist));
    view().expand(find(root(Grouping::Genre), {"Jazz"}));
    const HTREEITEM top = find(root(Grouping::Artist), {"Artist 20"});
    view().scrollToTop(top);
    const auto check = [&](const char* when) {
        EXPECT_TRUE(view().expanded(root(Grouping::Artist))) << when;
        EXPECT_TRUE(view().expanded(find(root(Grouping::Artist), {"Artist 30"}))) << when;
        EXPECT_FALSE(view().expanded(find(root(Grouping::Artist), {"Artist 31"}))) << when;
        EXPECT_TRUE(view().expanded(find(root(Grouping::Genre), {"Jazz"}))) << when;
        EXPECT_FALSE(view().expanded(root(Grouping::Genre))) << when;
        EXPECT_EQ(view().text(view().top()), "Artist 20") << when;
    };
    check("before");
    rebuild();
    check("rebuilt");
    // The library is closed, and read again with one artist less and one more.
    m_trees->release();
    EXPECT_EQ(titles(root(Grouping::Artist)), Texts{});
    m_commands.records.artists[6]->displayName = "Another";
    m_commands.catalogue().clear();
    rebuild();
    check("read again");
    // Closed, with nothing in its place for a while.
    m_trees->release();
    Library other;
    std::swap(other, m_commands.records);
    m_commands.catalogue().clear();
    rebuild();
    EXPECT_EQ(view().count(), 3);
    std::swap(other, m_commands.records);
    rebuild();
    EXPECT_EQ(view().count(), 3 + 60 * 2 + 2 + 60 * 2 + 1 + 60 * 2);

    // Between two starts.
    rebuild();
    view().expand(find(root(Grouping::Artist), {"Artist 30"}));
    view().expand(root(Grouping::Artist));
    view().expand(find(root(Grouping::Genre), {"Jazz"}));
    view().scrollToTop(find(root(Grouping::Artist), {"Artist 20"}));
    saveTreeState(m_commands.store, "Library", m_trees->states()[kLibrary]);
    for (std::size_t i = 0; i < AlbumTrees::kCount; ++i)
        DestroyWindow(view(i).handle());
    m_trees = std::make_unique<AlbumTrees>(m_commands);
    m_parent.trees = m_trees.get();
    ASSERT_TRUE(m_trees->create(m_parent.handle()));
    m_trees->move({0, 0, 300, 500});
    m_trees->setStates({loadTreeState(m_commands.store, "Library"), {}, {}, {}});
    rebuild();
    check("started again");
}

TEST_F(AlbumTreeTest, RebuildsDeselectWithoutTellingAndPaintOnce)
{
    Artist& somebody = artist("Somebody");
    for (int i = 0; i < 300; ++i)
        mark(album("Album", somebody), kAlbumFavourite);
    m_trees->show(kFavourites);
    ShowWindow(m_frame, SW_SHOWNOACTIVATE);
    rebuild();
    view(kFavourites).expand(root(Grouping::Artist, kFavourites));
    view(kFavourites).select(root(Grouping::Artist, kFavourites));
    EXPECT_EQ(m_parent.selectionChanges, 1);
    pumpMessages(100);
    PaintCounter counter;
    ASSERT_TRUE(counter.attach(view(kFavourites).handle()));
    mark(album("One more", somebody), kAlbumFavourite);
    m_commands.catalogue();
    rebuild(TreeRebuild::Marks);
    EXPECT_EQ(counter.paints, 0);
    EXPECT_EQ(counter.erases, 0);
    pumpMessages(100);
    EXPECT_LE(counter.paints, 1);
    EXPECT_EQ(m_parent.selectionChanges, 1);
    EXPECT_EQ(view(kFavourites).selection(), nullptr);
    EXPECT_FALSE(m_trees->isChanging());
    for (const std::size_t hidden : {kLibrary, kNew, kCompleted})
        EXPECT_FALSE(IsWindowVisible(view(hidden).handle()));
}

TEST_F(AlbumTreeTest, TurnsLeaveTheTreesWhole)
{
    for (int i = 0; i < 300; ++i)
        album("Album", artist(format("Artist %d", i).c_str()));
    m_commands.library();
    m_trees->begin(TreeRebuild::Full, m_log);
    int turns = 0;
    while (m_trees->step(std::chrono::milliseconds(0))) {
        ASSERT_LT(++turns, 100000);
        if (turns % 100 == 0) {
            EXPECT_EQ(titles(root(Grouping::Artist)), Texts{});
        }
    }
    EXPECT_EQ(titles(root(Grouping::Artist)).size(), 300U);
}

TEST_F(AlbumTreeTest, ARebuildMayBeLeftOrBegunAgainAtAnyTurn)
{
    for (int i = 0; i < 30; ++i)
        album("Album", artist(format("Artist %d", i).c_str()), i % 2 == 0 ? "Rock" : "Jazz", i % 4);
    rebuild();
    const std::string whole = outline(root(Grouping::Rank)) + outline(root(Grouping::Genre));
    for (const int turns : {1, 3, 10, 40, 60, 90}) {
        for (const bool release : {true, false}) {
            m_trees->begin(TreeRebuild::Full, m_log);
            for (int i = 0; i < turns; ++i)
                m_trees->step(std::chrono::milliseconds(0));
            if (release) {
                m_trees->release();
                EXPECT_FALSE(m_trees->step(std::chrono::milliseconds(0)));
            }
            rebuild();
            EXPECT_EQ(outline(root(Grouping::Rank)) + outline(root(Grouping::Genre)), whole) << turns;
            EXPECT_EQ(view().count(), 3 + 60 + 2 + 60 + 4 + 60) << turns;
            EXPECT_EQ(titles(root(Grouping::Rank)).size(), 30U) << turns;
        }
    }
}

// A tree that has gone, say because its window was destroyed meanwhile, refuses everything.
TEST_F(AlbumTreeTest, AFailedInsertionIsAnAssertion)
{
    for (int i = 0; i < 5; ++i)
        mark(album("Album", artist(format("Artist %d", i).c_str())), kAlbumNew);
    DestroyWindow(view(kNew).handle());
    rebuild();
    EXPECT_EQ(s_assertions, (Texts{"PaneAlbumDetails: hItem", "PaneAlbumDetails: pTVI->m_hArtistAlbums",
                                   "PaneAlbumDetails: pTVI->m_hGenre", "PaneAlbumDetails: pTVI->m_hRank"}));
    EXPECT_EQ(titles(root(Grouping::Rank)).size(), 5U);
}

TEST_F(AlbumTreeTest, AMissingControlIsAnAssertion)
{
    AlbumTrees trees(m_commands);
    EXPECT_FALSE(trees.create(reinterpret_cast<HWND>(1)));
    EXPECT_EQ(s_assertions, Texts{"PaneAlbumDetails: m_tvwLibrary.m_pTVW->GetSafeHwnd()"});
}
