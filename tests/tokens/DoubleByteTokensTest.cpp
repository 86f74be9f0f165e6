#include "tokens/TokenParser.h"

#include "support/CodePages.h"

#include <gtest/gtest.h>

using namespace tessera;

// Japanese, where 5C ("\") and small letters are trail bytes.
TEST(DoubleByteTokens, TrailBytesAreNoEscapesAndNoPartsOfTokens)
{
    if (!isCodePage932())
        GTEST_SKIP() << "needs code page 932";
    EXPECT_EQ(processTemplateEscapes("\x83\x5Cn"), "\x83\x5Cn");
    EXPECT_EQ(processTemplateEscapes("\\\x83\x5Cn"), "\x83\x5Cn");
    EXPECT_EQ(processTemplateEscapes("\x83\x5C\\n"), "\x83\x5C\n");
    // The 8192 characters never end between the two bytes of one.
    EXPECT_EQ(processTemplateEscapes(std::string(8190, 'x') + "\x83\x5C"), std::string(8190, 'x'));
    EXPECT_EQ(processTemplateEscapes(std::string(8189, 'x') + "\x83\x5C"),
              std::string(8189, 'x') + "\x83\x5C");

    TokenParser parser;
    Album& album = parser.sampleAlbum();
    album.displayTitle = "\x83\x5C\x83\x61";
    EXPECT_EQ(parser.expandAlbum("<Album>\x83\x61<\x83lbum>", album), "\x83\x5C\x83\x61\x83\x61<\x83lbum>");
    EXPECT_EQ(parser.expandArtwork("C:\\\x83\x5C\\<Album>", album), "C:\\\x83\x5C\\\x83\x5C\x83\x61");
}
