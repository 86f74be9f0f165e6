#include "ui/AlbumCaptions.h"

#include "tokens/TokenParser.h"
#include "windowing/Drawing.h"

#include <gtest/gtest.h>

using namespace tessera;

namespace {

class AlbumCaptionsTest : public testing::Test {
protected:
    static constexpr int kWidth = 80;

    AlbumCaptionsTest() { album.artist = &artist; }

    const AlbumCaptions::Lines& lines(const char* title, const char* pattern = "<Album>")
    {
        album.displayTitle = title;
        captions.reset(pattern, kWidth, 2, 1);
        return captions.lines(0, album, dc.dc());
    }
    int widthOf(const std::wstring& text) const
    {
        SIZE size{};
        GetTextExtentPoint32W(dc.dc(), text.data(), static_cast<int>(text.size()), &size);
        return static_cast<int>(size.cx);
    }

    TokenParser tokens;
    Artist artist;
    Album album;
    FontHandle font = makeFont("Tahoma", 14);
    MemoryDc dc;
    SelectScope selected{dc.dc(), font.get()};
    AlbumCaptions captions{tokens};
};

} // namespace

TEST_F(AlbumCaptionsTest, LinesAreCutWhereTheCellEnds)
{
    EXPECT_EQ(lines("Short").at(0).text, L"Short");
    const AlbumCaptions::Lines& cut =
        lines("Words of one two three four five six", "<Album>\r\n<Album>\r\nthird");
    ASSERT_EQ(cut.size(), 2u);
    EXPECT_EQ(cut[0].text, cut[1].text);
    EXPECT_TRUE(cut[0].text.starts_with(L"Words")) << cut[0].text.size();
    EXPECT_TRUE(cut[0].text.ends_with(L"..."));
    EXPECT_FALSE(cut[0].text.ends_with(L" ..."));
    EXPECT_LE(cut[0].width, kWidth);
    EXPECT_EQ(cut[0].width, widthOf(cut[0].text));
}

TEST_F(AlbumCaptionsTest, WithoutRoomForALineThereIsNone)
{
    album.displayTitle = "Short";
    captions.reset("<Album>", kWidth, 0, 1);
    EXPECT_TRUE(captions.lines(0, album, dc.dc()).empty());
}

TEST_F(AlbumCaptionsTest, DoubleByteTextIsCutBetweenCharacters)
{
    if (GetACP() != 932)
        GTEST_SKIP() << "needs code page 932";
    EXPECT_EQ(lines("\x83\x65\x83\x5C").at(0).text, L"\u30C6\u30BD");
    std::string title;
    for (int i = 0; i < 40; ++i)
        title += "\x83\x5C"; // its second byte is a backslash elsewhere
    const FittedLine& cut = lines(title.c_str()).at(0);
    ASSERT_GT(cut.text.size(), 3u);
    EXPECT_EQ(cut.text, std::wstring(cut.text.size() - 3, L'\u30BD') + L"...");
    EXPECT_LE(cut.width, kWidth);
    EXPECT_EQ(cut.width, widthOf(cut.text));
}
