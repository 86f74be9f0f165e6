#include "base/Text.h"

#include "support/CodePages.h"

#include <gtest/gtest.h>

using namespace tessera;

// Bytes above ASCII are code page 1252 here; the tests of double-byte code pages are apart.

#define NEEDS_1252()                                                                                         \
    if (!isCodePage1252())                                                                                   \
    GTEST_SKIP() << "needs code page 1252"

namespace {

int sign(int value)
{
    return (value > 0) - (value < 0);
}

} // namespace

TEST(Text, CaseFoldsInTheCodePage)
{
    NEEDS_1252();
    EXPECT_EQ(toUpper("Caf\xE9 \x9C\x9A\x9E\xFF 1[{"), "CAF\xC9 \x8C\x8A\x8E\x9F 1[{");
    EXPECT_EQ(toLower("\xC0\xD6\xDE \x8C\x9F Z@"), "\xE0\xF6\xFE \x9C\xFF z@");
    // Signs, and letters whose other case the code page does not have.
    EXPECT_EQ(toUpper("\xD7\xF7\xDF\xA9"), "\xD7\xF7\xDF\xA9");
    EXPECT_EQ(toLower("\xD7\xF7\xDF\xA9"), "\xD7\xF7\xDF\xA9");
    EXPECT_EQ(toUpper(std::string_view("a\0b", 3)), std::string_view("A\0B", 3));
}

TEST(Text, ComparisonIgnoresCaseAndOrdersByUpperCase)
{
    NEEDS_1252();
    const struct {
        const char* left;
        const char* right;
        int order;
    } cases[] = {
        {"", "", 0},         {"", "a", -1},     {"LUMEN", "lumen", 0}, {"lumen", "lumena", -1},
        {"b", "A", 1},       {"_", "a", 1}, // "_" is behind the capitals
        {"\xE9", "\xC9", 0}, {"z", "\xC0", -1}, {"a b", "a\tb", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.left) + " / " + c.right);
        EXPECT_EQ(sign(compareNoCase(c.left, c.right)), c.order);
        EXPECT_EQ(sign(compareNoCase(c.right, c.left)), -c.order);
        EXPECT_EQ(equalNoCase(c.left, c.right), c.order == 0);
    }
}

TEST(Text, WideComparisonFoldsEachUnitToLowerCase)
{
    const struct {
        std::u16string_view left;
        std::u16string_view right;
        int order;
    } cases[] = {
        {u"", u"", 0},
        {u"a", u"AB", -1},
        {u"_", u"A", -1}, // "_" is before the small letters
        {u"\u00C4rger", u"\u00E4RGER", 0},
        {u"\u0160", u"\u0161", 0},
        {u"\u0416", u"\u0436", 0},
        {u"\u03A9", u"\u03C9", 0},
        {u"\u00DF", u"ss", 1},
        {u"\xD83D\xDE00", u"\uE000", -1}, // by unit, not by code point
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        EXPECT_EQ(sign(compareWideNoCase(c.left, c.right)), c.order);
        EXPECT_EQ(sign(compareWideNoCase(c.right, c.left)), -c.order);
        EXPECT_EQ(foldWide(c.left) == foldWide(c.right), c.order == 0);
    }
}

// All pairs of short texts: the first difference counts, wherever it is, then the length.
TEST(Text, ComparisonsOrderTextsAsTheirFoldedForms)
{
    NEEDS_1252();
    std::vector<std::string> texts{""};
    for (std::size_t i = 0; i < 43; ++i) {
        for (const char c : {'a', 'A', 'b', '_', '\xE9', '\xC9'})
            texts.push_back(texts[i] + c);
    }
    for (const std::string& left : texts) {
        for (const std::string& right : texts) {
            ASSERT_EQ(sign(compareNoCase(left, right)), sign(toUpper(left).compare(toUpper(right))))
                << left << " / " << right;
            const std::u16string a = toWide(left);
            const std::u16string b = toWide(right);
            ASSERT_EQ(sign(compareWideNoCase(a, b)), sign(foldWide(a).compare(foldWide(b))))
                << left << " / " << right;
        }
    }
}

TEST(Text, OnlyWhatIsInTheCodePageComesBackUnchanged)
{
    NEEDS_1252();
    EXPECT_EQ(toCodePage(u"\u20AC\u0153\u0178\u00E9\u2019A"), "\x80\x9C\x9F\xE9\x92"
                                                              "A");
    EXPECT_EQ(toWide("\x80\x9C\x9F\xE9\x92"), u"\u20AC\u0153\u0178\u00E9\u2019");
    EXPECT_EQ(toCodePageExactly(u"\u20ACA"), "\x80"
                                             "A");
    // Everything else becomes a look-alike or "?", and so would be another file's name.
    const struct {
        std::u16string_view wide;
        const char* text;
    } cases[] = {
        {u"Dvo\u0159\u00E1k", "Dvor\xE1k"},
        {u"\u0110\u0111\u0130\u0131", "\xD0"
                                      "dIi"},
        {u"\u0101\u2032\uFF21\uFF5E\u221E", "a'A~8"},
        {u"\u0132\u0138\u65E5\u0416", "????"},
        {u"\u2212\uFF1F\uFF3C", "-?\\"},
        {u"\xD83D\xDE00.", "??."},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(toCodePage(c.wide), c.text);
        EXPECT_FALSE(toCodePageExactly(c.wide).has_value()) << c.text;
    }
    // "Z" to "z" with marks, each of them: what stands in the code page, a plain letter, or "?".
    std::u16string latin;
    for (char16_t unit = 0x100; unit < 0x180; ++unit)
        latin += unit;
    EXPECT_EQ(toCodePage(latin),
              "AaAaAaCcCcCcCcDd\xD0"
              "dEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIi??JjKk?LlLlLl?"
              "?LlNnNnNn???OoOoOo\x8C\x9CRrRrRrSsSsSs\x8A\x9ATtTtTtUuUuUuUuUuUuWwYy\x9FZzZz"
              "\x8E\x9E?");
    EXPECT_EQ(toCodePage({}), "");
    for (int byte = 1; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(toCodePage(toWide(text)), text) << byte;
    }
}

// As editors save them: the mark goes, and what it says of the encoding holds.
TEST(Text, AFileIsReadAsItsMarkSays)
{
    NEEDS_1252();
    using namespace std::string_view_literals;
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"Caf\xE9"sv, "Caf\xE9"sv}, // without a mark: the code page
        {"\xEF\xBB\xBF"sv, ""sv},
        {"\xEF\xBB\xBF"
         "Caf\xC3\xA9 \xE2\x82\xAC \xC5\x99 \xF0\x9F\x98\x80"sv,
         "Caf\xE9 \x80 r ??"sv},
        {"\xEF\xBB\xBF"
         "a\xE9z\xC3"sv, // damaged
         "a?z?"sv},
        {"\xFF\xFE"
         "C\0\xE9\0\xAC\x20z"sv,
         "C\xE9\x80"sv},
        {"\xFE\xFF\0C\0\xE9\x20\xAC"sv, "C\xE9\x80"sv},
        {"\xEF\xBB"sv, "\xEF\xBB"sv},
    };
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(textOfFile(bytes), text);
}

TEST(Text, AShownNameFitsIntoABox)
{
    EXPECT_EQ(shownName("C:\\a.jpg"), "C:\\a.jpg");
    EXPECT_EQ(shownName(std::string("a\0b\tc\r\nd\x7F", 9)), "a b c  d ");
    EXPECT_EQ(shownName(std::string(260, 'x')), std::string(260, 'x'));
    EXPECT_EQ(shownName(std::string(70000, 'x')), std::string(260, 'x') + "...");
}

TEST(Text, SplitDropsEmptyPiecesAndJoinPutsThemTogether)
{
    using Pieces = std::vector<std::string>;
    EXPECT_EQ(split("a, b;c", ", ;"), (Pieces{"a", "b", "c"}));
    EXPECT_EQ(split(",, a ,", ", ;"), (Pieces{"a"}));
    EXPECT_EQ(split(" ;,", ", ;"), Pieces{});
    EXPECT_EQ(split("", ","), Pieces{});
    EXPECT_EQ(split("a b", ""), (Pieces{"a b"}));
    EXPECT_EQ(join({"a", "", "a"}, "\t"), "a\t\ta");
    EXPECT_EQ(join({}, "\t"), "");
}

TEST(Text, TheLastBackslash)
{
    EXPECT_EQ(findLastBackslash("C:\\a\\b"), 4u);
    EXPECT_EQ(findLastBackslash("a\\"), 1u);
    EXPECT_EQ(findLastBackslash("a/b"), std::string::npos);
    EXPECT_EQ(findLastBackslash(""), std::string::npos);
}

TEST(Text, WhiteSpaceAtTheEndGoes)
{
    EXPECT_EQ(trimRight("  a b \t\r\n"), "  a b");
    EXPECT_EQ(trimRight(" \r\n"), "");
    EXPECT_EQ(trimRight(""), "");
}

TEST(Text, FormatTakesAnyLength)
{
    EXPECT_EQ(format("%ld Track%s", 2L, "s"), "2 Tracks");
    EXPECT_EQ(format("%s", ""), "");
    for (const std::size_t length : {254, 255, 256, 257, 9000}) {
        const std::string text(length, 'x');
        EXPECT_EQ(format("<%s>", text.c_str()), "<" + text + ">");
    }
}
