#include "base/Bytes.h"
#include "base/Dates.h"
#include "base/Durations.h"
#include "base/Errors.h"

#include <gtest/gtest.h>

#include <string>

#ifdef _WIN32
#include <windows.h>
#endif

using namespace tessera;

TEST(Durations, BothStyles)
{
    const struct {
        std::uint32_t seconds;
        const char* clock;
        const char* words;
    } cases[] = {
        {0, "00:00:00", ""},
        {59, "00:00:59", "59s "},
        {60, "00:01:00", "1m "},
        {2198, "00:36:38", "36m 38s "},
        {3600, "01:00:00", "1h "},
        {3725, "01:02:05", "1h 2m 5s "},
        {360000, "100:00:00", "100h "},
        {0xFFFFFFFF, "1193046:28:15", "1193046h 28m 15s "},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(formatDuration(c.seconds, DurationStyle::Clock), c.clock);
        EXPECT_EQ(formatDuration(c.seconds, DurationStyle::Long), c.words);
    }
}

TEST(Dates, NumbersAndParts)
{
    const DateParts parts = splitDate(20021003);
    EXPECT_EQ(parts.year, 2002);
    EXPECT_EQ(parts.month, 10);
    EXPECT_EQ(parts.day, 3);
    EXPECT_EQ(joinDate(parts), 20021003);
}

TEST(Dates, TheLongDateIsTheUsers)
{
#ifdef _WIN32
    // The month's name has a letter that this code page does not have.
    if (PRIMARYLANGID(GetUserDefaultLangID()) == LANG_CZECH) {
        EXPECT_EQ(longDate(20021003), "ctvrtek 3. r\xEDjna 2002");
        return;
    }
    const bool german = PRIMARYLANGID(GetUserDefaultLangID()) == LANG_GERMAN;
    if (!german && GetUserDefaultLangID() != MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US))
        GTEST_SKIP() << "needs an English or a German user";
#else
    const bool german = false;
#endif
    EXPECT_EQ(longDate(20021003), german ? "Donnerstag, 3. Oktober 2002" : "Thursday, October 3, 2002");
    EXPECT_EQ(longDate(20040229), german ? "Sonntag, 29. Februar 2004" : "Sunday, February 29, 2004");
    EXPECT_EQ(longDate(16010101), german ? "Montag, 1. Januar 1601" : "Monday, January 1, 1601");
    EXPECT_EQ(longDate(99991231), german ? "Freitag, 31. Dezember 9999" : "Friday, December 31, 9999");
}

TEST(Dates, WhatIsNoDateHasNoText)
{
    for (const std::int32_t date : {0, 1, -1, -20021003, 20020000, 20020100, 20020001, 20021300, 20020230,
                                    20030229, 10021003, 16001231, 100000101, INT32_MAX, INT32_MIN})
        EXPECT_EQ(longDate(date), "") << date;
    EXPECT_FALSE(isDate({2002, 1, -1}));
    EXPECT_FALSE(isDate({2002, -1, 1}));
    EXPECT_FALSE(isDate({2002, 256 + 1, 1})); // no single byte holds it
    EXPECT_FALSE(isDate({2002, 1, 256 + 1}));
    EXPECT_FALSE(isDate({10000, 1, 1}));
}

TEST(ByteReader, NeverReadsBeyondTheEnd)
{
    const std::uint8_t bytes[] = {1, 2, 3, 0x84, 0xFF, 0xFF, 0xFF, 0xFF, 9, 9, 9};
    ByteReader reader(bytes);
    std::uint32_t number = 0;
    std::int32_t negative = 0;
    ASSERT_TRUE(reader.take(number));
    EXPECT_EQ(number, 0x84030201u);
    ASSERT_TRUE(reader.take(negative));
    EXPECT_EQ(negative, -1);
    ByteView block;
    EXPECT_FALSE(reader.take(number));
    EXPECT_FALSE(reader.takeBlock(4, block));
    EXPECT_FALSE(reader.takeBlock(0xFFFFFFFF, block));
    EXPECT_EQ(reader.position(), 8u); // refusals leave everything as it was
    EXPECT_EQ(number, 0x84030201u);
    ASSERT_TRUE(reader.takeBlock(3, block));
    EXPECT_EQ(block.size(), 3u);
    EXPECT_EQ(reader.remaining(), 0u);
    EXPECT_TRUE(reader.takeBlock(0, block));
}

namespace {

std::string g_seen;

void record(const char* expression, const char* unit, unsigned long line)
{
    g_seen = std::string(unit) + ": " + expression + (line > 0 ? "" : " nowhere");
}

} // namespace

TEST(HostErrors, TellTheirCode)
{
    const HostError error(kErrorPointer);
    EXPECT_EQ(error.code(), static_cast<std::int32_t>(0x80004003));
    EXPECT_STREQ(error.what(), "The host refused a call (0x80004003)");
}

TEST(Assertion, AsksTheHandlerOnlyWhenItFails)
{
    const AssertionHandler before = setAssertionHandler(record);
    TESSERA_ASSERT(1 + 1 == 2, "Database");
    EXPECT_EQ(g_seen, "");
    TESSERA_ASSERT(1 + 1 == 3, "Database");
    EXPECT_EQ(g_seen, "Database: 1 + 1 == 3");
    EXPECT_EQ(setAssertionHandler(before), record);
}
