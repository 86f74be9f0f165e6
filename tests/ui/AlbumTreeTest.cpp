#include "AlbumTreeFixture.h"
#include "windowing/Drawing.h"

#include <random>

using namespace tessera;

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

TEST_F(AlbumTreeTest, TheSelectedNodeCanBeReadWithoutTheFocusUnderADarkSkin)
{
    makeFiveAlbums();
    m_commands.background = RGB(0x20, 0x28, 0x30);
    m_commands.text = RGB(0xE8, 0xE8, 0xE8);
    m_trees->settingsChanged();
    m_trees->show(kLibrary);
    ShowWindow(m_frame, SW_SHOWNOACTIVATE);
    rebuild();
    const HTREEITEM node = root(Grouping::Artist);
    view().select(node);
    SetFocus(m_frame);
    RedrawWindow(view().handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    RECT place = view().itemRect(node);
    MapWindowPoints(nullptr, view().handle(), reinterpret_cast<POINT*>(&place), 2);
    const WindowDc dc(view().handle());
    int darkest = 255;
    int lightest = 0;
    for (LONG x = place.left + 3; x < place.right - 3; ++x) {
        for (LONG y = place.top + 3; y < place.bottom - 3; ++y) {
            const int green = GetGValue(GetPixel(dc.dc(), static_cast<int>(x), static_cast<int>(y)));
            darkest = std::min(darkest, green);
            lightest = std::max(lightest, green);
        }
    }
    EXPECT_GT(lightest - darkest, 120);
}
