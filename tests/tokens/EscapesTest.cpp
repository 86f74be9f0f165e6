#include "tokens/TokenParser.h"

#include <gtest/gtest.h>

using namespace tessera;
using namespace std::string_view_literals;

TEST(Escapes, StandForCharacters)
{
    const struct {
        std::string_view text;
        std::string_view expected;
    } cases[] = {
        {"", ""},
        {"plain [b]text[/b]", "plain [b]text[/b]"},
        {R"(\a\b\f\n\r\t\v)", "\a\b\f\n\r\t\v"},
        {R"(\\ \< \z \" \~)", R"(\ < z " ~)"},
        {R"(C:\temp\<Album>)", "C:\temp<Album>"},
        {R"(\101\9)", "1019"}, // only "0" and "x" start a number
        {"ends\\", "ends"},
        {"\\\xE9", "\xE9"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(processTemplateEscapes(c.text), c.expected) << c.text;
}

TEST(Escapes, NumbersAreReadAsStrtolDoes)
{
    const struct {
        std::string_view text;
        std::string_view expected;
    } cases[] = {
        {R"(\x41\x42)", "AB"},
        {R"(\0101)", "A"},
        {R"(\01018)", "A8"},
        {R"(\x41g)", "Ag"},
        {R"(\x0x41!)", "A!"},
        {R"(\x 41)", "A"},
        {R"(\0 +101)", "A"},
        {R"(\x-1.)", "\xFF."},
        {R"(\x141)", "A"}, // one character of a larger number
        {R"(\xFFFFFFFFFFFFFFFFFFFFFFFF.)", "\xFF."},
        {R"(\0777777777777777777777777777777.)", "\xFF."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(processTemplateEscapes(c.text), c.expected) << c.text;
}

TEST(Escapes, ANulEndsTheText)
{
    for (const std::string_view text :
         {R"(ab\0)"sv, R"(ab\0z)"sv, R"(ab\xz)"sv, R"(ab\x00z)"sv, R"(ab\0400z)"sv, "ab\0z"sv,
          R"(ab\x-80000000000000000000.)"sv, "ab\\\0z"sv})
        EXPECT_EQ(processTemplateEscapes(text), "ab") << text;
}

TEST(Escapes, WorkIn8192Characters)
{
    const std::string fits(8191, 'x');
    EXPECT_EQ(processTemplateEscapes(fits), fits);
    EXPECT_EQ(processTemplateEscapes(fits + "yz"), fits);
    // An escape that the end cuts through.
    EXPECT_EQ(processTemplateEscapes(std::string(8190, 'x') + "\\n"), std::string(8190, 'x'));
    EXPECT_EQ(processTemplateEscapes(std::string(8188, 'x') + "\\x41"), std::string(8188, 'x') + "\4");
    EXPECT_EQ(processTemplateEscapes(std::string(20000, '\\')), std::string(4095, '\\'));
}
