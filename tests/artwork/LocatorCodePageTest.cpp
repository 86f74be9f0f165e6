#include "artwork/Locator.h"

#include "support/CodePages.h"
#include "support/FakeHost.h"
#include "support/Recorders.h"

#include <gtest/gtest.h>

namespace tessera::test {
namespace {

TEST(LocatorDoubleByte, BackslashInsideACharacterIsNoFolder)
{
    if (!isCodePage932())
        GTEST_SKIP() << "needs code page 932";
    JobRig rig;
    rig.log.line("Scanning for artwork");
    FakeHost host;
    host.tracks.push_back({});
    Track track;
    track.m_pMJFile = host.file("");
    Artist artist;
    Library library;
    library.albums[1] = std::make_unique<Album>();
    library.albums[1]->artist = &artist;
    library.albums[1]->tracks[1] = &track;
    const std::string pattern = "C:\\a\\\x83\x5C*";
    rig.files.matches.emplace(pattern, "x");
    const TokenParser tokens;
    locateAllArtwork(
        library, tokens, pattern, [](const std::string&) { return true; }, rig.context);
    EXPECT_EQ(library.albums[1]->thumbnailFile, "C:\\a\\x");
}

} // namespace
} // namespace tessera::test
