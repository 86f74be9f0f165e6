#include "base/Text.h"

#include "support/CodePages.h"

#include <gtest/gtest.h>

using namespace tessera;

namespace {

// Japanese, where 5C and the letters of ASCII are trail bytes: 83 5C is one character.
class DoubleByteText : public testing::Test {
protected:
    void SetUp() override
    {
        if (!isCodePage932())
            GTEST_SKIP() << "needs code page 932";
    }
};

} // namespace

TEST_F(DoubleByteText, TrailBytesAreNotFolded)
{
    EXPECT_EQ(toUpper("a\x83\x61z"), "A\x83\x61Z"); // 61 is a trail byte and a small "a"
    EXPECT_EQ(toLower("A\x83\x41Z"), "a\x83\x41z");
    EXPECT_EQ(toUpper("\x82\x81"), "\x82\x60"); // full-width letters have two cases
    EXPECT_FALSE(equalNoCase("\x83\x61", "\x83\x41"));
    EXPECT_TRUE(equalNoCase("\x82\x81x", "\x82\x60X"));
    EXPECT_EQ(toUpper("x\x83"), "X\x83"); // a lead byte without a trail byte
}

// Single bytes come first, even those above the lead bytes; pairs by both bytes, the case aside.
TEST_F(DoubleByteText, CharactersAreOrderedWhole)
{
    const char* const inOrder[] = {"z",        "\xB1",     "\xDF",     "\x82\x60",
                                   "\x82\x61", "\x83\x41", "\x83\x42", "\x93\xFA"};
    for (const char* const& left : inOrder) {
        for (const char* const& right : inOrder)
            EXPECT_EQ(compareNoCase(left, right) < 0, &left - inOrder < &right - inOrder) << left << right;
    }
}

TEST_F(DoubleByteText, TrailBytesAreNoBackslashesAndNoDelimiters)
{
    EXPECT_EQ(findLastBackslash("C:\\\x83\x5C.mp3"), 2u);
    EXPECT_EQ(findLastBackslash("\x83\x5C"), std::string::npos);
    EXPECT_EQ(split("\x83\x5C\\b", "\\"), (std::vector<std::string>{"\x83\x5C", "b"}));
    EXPECT_EQ(characterLength("\x83\x5C", 0), 2u);
    EXPECT_EQ(characterLength("\x83", 0), 1u);
    EXPECT_EQ(characterLength(std::string_view("\x83\0", 2), 0), 1u);
}

TEST_F(DoubleByteText, ConvertsBothWays)
{
    EXPECT_EQ(toCodePage(u"\u30BD\u65E5"), "\x83\x5C\x93\xFA");
    EXPECT_EQ(toWide("\x83\x5C\x93\xFA"), u"\u30BD\u65E5");
    EXPECT_EQ(toCodePage(u"\u00E9\u0416"), "e\x84\x47"); // a look-alike, and a letter that there is
    EXPECT_FALSE(toCodePageExactly(u"\u00E9").has_value());
}
