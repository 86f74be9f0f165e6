#include "artwork/SlotTable.h"

#include "library/Records.h"

#include <gtest/gtest.h>

#include <array>

using namespace tessera;

TEST(SlotTable, SlotsGoRoundByLastUse)
{
    std::array<Album, 6> albums;
    SlotTable table(4);
    EXPECT_FALSE(table.hopeless());
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(table.full());
        const SlotTable::Taken taken = table.take(albums[static_cast<std::size_t>(i)]);
        EXPECT_EQ(taken.slot, i + 1);
        EXPECT_EQ(taken.loser, nullptr);
    }
    EXPECT_TRUE(table.full());
    table.touch(1);
    table.touch(0); // the default cover's is never given away
    table.touch(99);
    const SlotTable::Taken fourth = table.take(albums[3]);
    EXPECT_EQ(fourth.slot, 2);
    EXPECT_EQ(fourth.loser, &albums[1]);
    table.touch(3);
    const SlotTable::Taken fifth = table.take(albums[4]);
    EXPECT_EQ(fifth.slot, 1);
    EXPECT_EQ(fifth.loser, &albums[0]);
    EXPECT_EQ(table.take(albums[5]).loser, &albums[3]);
    EXPECT_EQ(table.take(albums[0]).loser, &albums[2]);
}

TEST(SlotTable, OneAlbumSlotChangesHands)
{
    std::array<Album, 2> albums;
    SlotTable table(2);
    EXPECT_EQ(table.take(albums[0]).slot, 1);
    table.touch(1);
    EXPECT_EQ(table.take(albums[1]).loser, &albums[0]);
    EXPECT_EQ(table.take(albums[0]).loser, &albums[1]);
}

TEST(SlotTable, RoomForTheDefaultCoverOnlyIsHopeless)
{
    EXPECT_TRUE(SlotTable(1).hopeless());
    EXPECT_TRUE(SlotTable(0).hopeless());
    EXPECT_TRUE(SlotTable(0).full());
}
