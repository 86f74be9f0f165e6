#include "base/Files.h"
#include "library/Filters.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace tessera::test {
namespace {

// Characters of two bytes whose second byte is a letter, "|", a backslash or a comma's neighbour.
class DoubleByte : public testing::Test {
protected:
    void SetUp() override
    {
        if (GetACP() != 932)
            GTEST_SKIP() << "needs code page 932";
    }
};

TEST_F(DoubleByte, PatternsGoByWholeCharacters)
{
    EXPECT_TRUE(matchesWildcard("\x83\x5C", "?"));
    EXPECT_FALSE(matchesWildcard("\x83\x5C", "??"));
    EXPECT_FALSE(matchesWildcard("\x83\x5C", "*\x5C"));
    EXPECT_FALSE(matchesWildcard("\x83\x41", "*A"));
    EXPECT_TRUE(matchesWildcard("A\x83\x5C\x42", "A*B"));
    // The second byte is not folded: these are two different characters.
    EXPECT_FALSE(matchesPatternList("\x83\x61", "\x83\x41"));
    EXPECT_TRUE(matchesPatternList("\x83\x61z", "\x83\x61Z"));
}

} // namespace
} // namespace tessera::test
