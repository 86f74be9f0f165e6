#include "support/FakeHost.h"
#include "tokens/TokenParser.h"
#include "ui/BalloonPlacement.h"
#include "ui/BalloonText.h"

#include <gtest/gtest.h>

namespace tessera {
namespace {

// An album whose tracks have these numbers in the host.
class BalloonTextTest : public testing::Test {
protected:
    void fill(const std::vector<std::int32_t>& numbers)
    {
        for (const std::int32_t number : numbers) {
            test::HostTrack host;
            host.fileName = toWide(format("C:\\%02u.mp3", static_cast<unsigned>(m_host.tracks.size())));
            host.number = number;
            m_host.tracks.push_back(host);
        }
        for (const test::HostTrack& host : m_host.tracks) {
            auto track = std::make_unique<Track>();
            track->fileName = toCodePage(host.fileName);
            track->m_pMJFile = m_host.file(track->fileName);
            track->album = &m_parser.sampleAlbum();
            m_order.push_back(track.get());
            m_tracks.push_back(std::move(track));
        }
        m_host.calls = 0;
    }
    std::string body(int lines, const char* tokens = "<Number>")
    {
        return balloonBody(m_order, tokens, m_parser, lines);
    }

    test::FakeHost m_host;
    TokenParser m_parser;
    std::vector<std::unique_ptr<Track>> m_tracks;
    std::vector<Track*> m_order;
};

TEST_F(BalloonTextTest, NewDiscsGetAnEmptyLineAndEveryLineEndsWithLf)
{
    fill({1, 2, 1, 0, 2, 2, 1});
    EXPECT_EQ(body(50), "1\n2\n\n1\n0\n2\n2\n\n1\n");
    EXPECT_EQ(balloonBody({}, "<Number>", m_parser, 50), "");
}

TEST_F(BalloonTextTest, OnlyTheLinesThatFitAreRead)
{
    fill({1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_EQ(body(8), "1\n2\n3\n4\n5\n6\n7\n8\n");
    m_host.calls = 0;
    EXPECT_EQ(body(7), "1\n2\n3\n4\n5\n6\n... and 2 more\n");
    const int sixTracks = m_host.calls;
    m_host.calls = 0;
    EXPECT_EQ(body(4), "1\n2\n3\n... and 5 more\n");
    EXPECT_EQ(m_host.calls * 2, sixTracks);
}

TEST_F(BalloonTextTest, NoMoreLinesThanAllowedWhateverTheTracksNeed)
{
    fill({1, 2, 1, 2, 1, 2});
    const std::string broken = "<Number>\r\n  <Type>";
    for (int room = 2; room < 20; ++room) {
        EXPECT_LE(static_cast<int>(textLines(body(room)).size()), room);
        EXPECT_LE(static_cast<int>(textLines(body(room, broken.c_str())).size()), room);
    }
    EXPECT_EQ(body(8), "1\n2\n\n1\n2\n\n1\n2\n");
    EXPECT_EQ(body(7), "1\n2\n\n1\n2\n... and 2 more\n");
}

TEST_F(BalloonTextTest, HostThatFailsEndsTheListInSilence)
{
    fill({1, 2, 3});
    m_order[2]->m_pMJFile = nullptr;
    EXPECT_EQ(body(50), "1\n2\n... and 1 more\n");
    m_order[0]->m_pMJFile = nullptr;
    EXPECT_EQ(body(50), "");
    m_order.erase(m_order.begin());
    m_host.failingCall = m_host.calls + 2; // the second call of the track
    EXPECT_EQ(body(50, "<Number> <Genre>"), "");
}

TEST(TextLines, EveryKindOfBreak)
{
    EXPECT_EQ(textLines("a\r\nb\nc\rd"), (std::vector<std::string>{"a", "b", "c", "d"}));
    EXPECT_EQ(textLines("a\n\n"), (std::vector<std::string>{"a", ""}));
    EXPECT_TRUE(textLines("").empty());
}

constexpr RECT kWork{-1280, 0, 0, 1024}; // a monitor left of the first one
constexpr int kStem = 12;

bool isInside(const RECT& inner, const RECT& outer)
{
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

TEST(BalloonPlacement, SideFollowsTheRoom)
{
    const struct {
        SIZE body;
        RECT item;
        BalloonSide side;
    } cases[] = {
        {{300, 200}, {-700, 500, -600, 600}, BalloonSide::Above},
        {{300, 200}, {-700, 100, -600, 200}, BalloonSide::Below},
        {{300, 900}, {-700, 500, -600, 600}, BalloonSide::Right},
        {{300, 900}, {-200, 500, -100, 600}, BalloonSide::Left},
        {{300, 200}, {-1280, 400, 0, 417}, BalloonSide::Above}, // a row as wide as the screen
    };
    for (const auto& c : cases) {
        const POINT anchor{(c.item.left + c.item.right) / 2, (c.item.top + c.item.bottom) / 2};
        EXPECT_EQ(placeBalloon(c.body, c.item, anchor, kWork, kStem).side, c.side);
    }
}

// Every size at every place: on the monitor, beside the item, pointing at its border.
TEST(BalloonPlacement, NeverLeavesTheMonitorNorCoversTheItem)
{
    const SIZE items[] = {{110, 125}, {364, 64}, {1280, 17}, {600, 17}};
    const SIZE bodies[] = {{60, 40}, {300, 200}, {300, 700}, {500, 1000}, {2000, 2000}};
    for (const SIZE& size : items) {
        for (const SIZE& body : bodies) {
            for (LONG x = kWork.left - size.cx / 2; x < kWork.right; x += 97) {
                for (LONG y = -8; y < kWork.bottom; y += 61) {
                    const RECT item{x, y, x + size.cx, y + size.cy};
                    RECT seen{};
                    IntersectRect(&seen, &item, &kWork);
                    const POINT anchor{(seen.left + seen.right) / 2, (seen.top + seen.bottom) / 2};
                    const BalloonPlace place = placeBalloon(body, item, anchor, kWork, kStem);
                    ASSERT_TRUE(isInside(place.window, kWork)) << x << " " << y;
                    RECT covered{};
                    ASSERT_FALSE(IntersectRect(&covered, &place.window, &seen)) << x << " " << y;
                    ASSERT_TRUE(place.hasStem);
                    const POINT tip{place.window.left + place.tip.x, place.window.top + place.tip.y};
                    RECT around = seen;
                    InflateRect(&around, 1, 1);
                    // Where the corner of the screen is near, the stem may end beside a small item.
                    const bool touchesAcross = tip.x >= around.left - kStem && tip.x < around.right + kStem;
                    const bool touchesAlong = tip.y >= around.top - kStem && tip.y < around.bottom + kStem;
                    ASSERT_TRUE(touchesAcross && touchesAlong) << x << " " << y;
                }
            }
        }
    }
}

TEST(BalloonPlacement, ItemThatFillsTheScreenIsCoveredInACorner)
{
    const BalloonPlace place = placeBalloon({300, 200}, kWork, {-100, 100}, kWork, kStem);
    EXPECT_FALSE(place.hasStem);
    EXPECT_TRUE(isInside(place.window, kWork));
    const POINT anchor{-100, 100};
    EXPECT_FALSE(PtInRect(&place.window, anchor));
}

TEST(BalloonPlacement, RoomIsWhatAPlacedBodyGets)
{
    const RECT items[] = {{-700, 500, -590, 625}, {-1280, 400, 0, 417}, {-1280, 0, -900, 64}};
    for (const RECT& item : items) {
        const SIZE room = balloonRoom(item, kWork, kStem, 436);
        const BalloonPlace place = placeBalloon(room, item, {item.left, item.top}, kWork, kStem);
        EXPECT_EQ(place.body.bottom - place.body.top, room.cy);
        EXPECT_EQ(place.body.right - place.body.left, room.cx);
    }
    EXPECT_EQ(balloonRoom(items[0], kWork, kStem, 436).cy, 1024);
    EXPECT_EQ(balloonRoom(items[1], kWork, kStem, 436).cy, 1024 - 417 - kStem);
}

} // namespace
} // namespace tessera
