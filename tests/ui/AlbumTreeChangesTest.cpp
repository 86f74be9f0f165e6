// Rebuilds, and the albums that come into a tree later.

#include "AlbumTreeFixture.h"
#include "PaintCounter.h"

#include <random>

using namespace tessera;

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

// A tree that was changed is as one that was made anew. Comparing fills it: most rounds do not, and meet
// a tree of which some groups have been opened, some are open, and most have never been.
TEST_F(AlbumTreeTest, ChangesEndInTheSameTreeWhateverCameBefore)
{
    std::mt19937 random(11);
    for (int i = 0; i < 12; ++i)
        artist(format("Artist %d", i * 7 % 12).c_str());
    for (int i = 0; i < 60; ++i)
        album(format("Album %d", i).c_str(), *m_commands.records.artists[1 + static_cast<int>(random() % 12)],
              i % 3 == 0 ? "Rock" : "Jazz");
    rebuild();
    const auto openSome = [&](auto& self, HTREEITEM parent, int depth) -> void {
        for (HTREEITEM item = view(kFavourites).child(parent); item; item = view(kFavourites).next(item)) {
            if (depth > 1)
                self(self, item, depth - 1);
            else if (random() % 4 == 0)
                view(kFavourites).expand(item);
            if (random() % 3 == 0)
                view(kFavourites).expand(item, TVE_COLLAPSE);
        }
    };
    const auto rename = [&](Artist& artist) {
        artist.displayName =
            format("%c %s", static_cast<char>('A' + random() % 26), artist.displayName.c_str());
    };
    for (int round = 0; round < 48; ++round) {
        for (const auto& [id, each] : m_commands.records.albums) {
            if (random() % 4 == 0)
                each->set(kAlbumFavourite, random() % 2 == 0);
            if (random() % 4 == 0)
                each->rank = static_cast<std::int32_t>(random() % 12) - 1;
        }
        openSome(openSome, root(Grouping::Artist, kFavourites), 1);
        openSome(openSome, root(Grouping::Genre, kFavourites), 2);
        openSome(openSome, root(Grouping::Rank, kFavourites), 2);
        const bool all = round % 8 == 0;
        const bool one = round % 4 == 2;
        if (one)
            rename(*m_commands.records.artists[1 + static_cast<int>(random() % 12)]);
        for (const auto& [id, each] : m_commands.records.artists) {
            if (all)
                rename(*each);
        }
        for (const auto& [id, each] : m_commands.records.albums) {
            if (one && random() % 8 == 0)
                each->displayTitle += "+";
        }
        if (all)
            m_trees->release();
        rebuild(all || one ? TreeRebuild::Full : TreeRebuild::Marks);
        if (round % 8 < 5 && random() % 6 != 0)
            continue;
        auto fresh = std::make_unique<AlbumTrees>(m_commands);
        ASSERT_TRUE(fresh->create(m_parent.handle()));
        fresh->rebuild(TreeRebuild::Full, m_log);
        for (const Grouping grouping : {Grouping::Artist, Grouping::Genre, Grouping::Rank}) {
            const std::string changed = outline(root(grouping, kFavourites), kFavourites);
            std::swap(fresh, m_trees);
            EXPECT_EQ(changed, outline(root(grouping, kFavourites), kFavourites)) << round;
            std::swap(fresh, m_trees);
        }
        EXPECT_EQ(view(kFavourites).count(), fresh->tree(kFavourites).view().count()) << round;
        for (std::size_t i = 0; i < AlbumTrees::kCount; ++i)
            DestroyWindow(fresh->tree(i).view().handle());
    }
}

TEST_F(AlbumTreeTest, AlbumsComeWhenTheirGroupIsFirstOpenedOrAskedFor)
{
    makeFiveAlbums();
    m_trees->show(kLibrary);
    ShowWindow(m_frame, SW_SHOWNOACTIVATE);
    InsertionCounter inserted;
    ASSERT_TRUE(inserted.attach(view().handle()));
    rebuild();
    EXPECT_EQ(std::exchange(inserted.count, 0), 8) << "groups only";

    view().expand(root(Grouping::Artist));
    const HTREEITEM a = find(root(Grouping::Artist), {"A"});
    const HTREEITEM b = view().next(a);
    view().select(a);
    EXPECT_EQ(titles(a), (Texts{"a1", "a2", "a3"})) << "of a group that is not filled";
    EXPECT_EQ(inserted.count, 0);
    press(VK_RIGHT);
    EXPECT_TRUE(view().expanded(a));
    EXPECT_EQ(std::exchange(inserted.count, 0), 3) << "opened by a key";
    press(VK_LEFT);
    EXPECT_FALSE(view().expanded(a));
    press(VK_RIGHT);
    EXPECT_EQ(inserted.count, 0) << "opened again";

    view().expand(b);
    EXPECT_TRUE(view().expanded(b));
    EXPECT_EQ(std::exchange(inserted.count, 0), 2) << "opened by a message";
    const HTREEITEM genreA = find(root(Grouping::Genre), {"Rock", "A"});
    EXPECT_EQ(inserted.count, 0);
    EXPECT_EQ(view().text(view().child(genreA)), "a1");
    EXPECT_EQ(std::exchange(inserted.count, 0), 3) << "asked for";
    EXPECT_FALSE(view().expanded(genreA));

    EXPECT_EQ(view().count(), 3 + 8 + 3 * 5);
    EXPECT_EQ(std::exchange(inserted.count, 0), 2 + 5);
    EXPECT_EQ(outline(root(Grouping::Rank)), "(Unranked)/301/2\n"
                                             "  A/302/2\n"
                                             "    a1/*/13\n"
                                             "    a2/*/13\n"
                                             "    a3/*/13\n"
                                             "  B/302/2\n"
                                             "    b1/*/13\n"
                                             "    b2/*/13\n");
    EXPECT_EQ(inserted.searched, 0);
    rebuild();
    EXPECT_EQ(view().count(), 3 + 8 + 3 * 5);
    EXPECT_EQ(inserted.count, 0) << "nothing has changed";
}

TEST_F(AlbumTreeTest, AGroupWithoutItsAlbumsOpensAtNoTimeWhenTheRecordsMayBeGone)
{
    makeFiveAlbums();
    m_trees->show(kLibrary);
    ShowWindow(m_frame, SW_SHOWNOACTIVATE);
    rebuild();
    view().expand(root(Grouping::Artist));
    InsertionCounter inserted;
    ASSERT_TRUE(inserted.attach(view().handle()));
    const auto tryAll = [&](HTREEITEM group) {
        if (!group)
            return;
        view().select(group);
        press(VK_RIGHT);
        view().expand(group);
        EXPECT_FALSE(view().expanded(group));
        EXPECT_EQ(tellOpening(group), Handled(TRUE));
        EXPECT_EQ(view().child(group), nullptr);
        EXPECT_LE(view().count(), 3 + 3 + 4 + 4) << "groups only";
    };
    const HTREEITEM first = find(root(Grouping::Artist), {"A"});
    m_trees->release();
    m_commands.catalogue().clear();
    m_commands.records = {};
    tryAll(first);
    EXPECT_EQ(inserted.count, 0);

    for (const char* const name : {"C", "D", "E"})
        album("Other", artist(name));
    m_commands.library();
    m_trees->begin(TreeRebuild::Full, m_log);
    int refused = 0;
    while (m_trees->step(std::chrono::milliseconds(0)) && !m_trees->tree(kLibrary).isReady()) {
        tryAll(view().child(root(Grouping::Artist)));
        ++refused;
    }
    EXPECT_GT(refused, 6);
    while (m_trees->step(std::chrono::milliseconds(0))) {
    }
    const HTREEITEM group = find(root(Grouping::Artist), {"C"});
    view().expand(group);
    EXPECT_TRUE(view().expanded(group));
    EXPECT_EQ(view().count(), 3 + 3 + 4 + 4 + 3 * 3);
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
    check("after an empty library");
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

// Also where a genre has all artists, and where most of an old tree goes.
TEST_F(AlbumTreeTest, TurnsAreShortAndLeaveTheTreesWhole)
{
    const auto change = [&](const char* names) {
        InsertionCounter inserted;
        ASSERT_TRUE(inserted.attach(view().handle()));
        m_commands.library();
        m_trees->begin(TreeRebuild::Full, m_log);
        int before = 0;
        for (int turns = 0; m_trees->step(std::chrono::milliseconds(0)); ++turns) {
            ASSERT_LT(turns, 100000);
            EXPECT_LE(inserted.count - std::exchange(before, inserted.count), 100) << names;
        }
        EXPECT_EQ(titles(root(Grouping::Artist)).size(), 300U);
        EXPECT_LE(inserted.searched, 2) << names << ": the roots";
    };
    for (int i = 0; i < 300; ++i)
        album("Album", artist(format("Artist %d", i).c_str()));
    change("first");
    m_trees->release();
    for (const auto& [id, artist] : m_commands.records.artists)
        artist->displayName.insert(0, "Other ");
    m_commands.catalogue().clear();
    change("another library");
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
