#include "jukebox/HostObjects.h"

#include "base/Clock.h"
#include "jukebox/TrackFile.h"
#include "jukebox/WideText.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <thread>

namespace tessera::jukebox {
namespace {

constexpr const char* kLibrary = "Filename\tArtist\tAlbum\tName\tDuration\n"
                                 "C:\\\\m\\\\1.mp3\tArt\tAlb\tNam\t215\n"
                                 "C:\\\\m\\\\2.mp3\tArt\tAlb\tTwo\t3605\n";

Library parseLibrary(const std::string& text)
{
    std::vector<std::string> complaints;
    return *Library::parse(text, complaints);
}

class HostObjectsTest : public testing::Test {
protected:
    explicit HostObjectsTest(const std::string& text = kLibrary) : m_library(parseLibrary(text)) {}

    ComPtr<IDispatch> fileAt(std::int32_t index)
    {
        const auto files = callMethod(m_host.get(), 2, "").object();
        return callMethod(files.get(), 2, index).object();
    }
    ComPtr<IDispatch> playlist() { return callMethod(m_host.get(), 3).object(); }
    ComPtr<IDispatch> playback() { return callMethod(m_host.get(), 1).object(); }

    Library m_library;
    Player m_player{m_library, tickCount};
    HostState m_state{m_library, m_player};
    ComPtr<HostObject> m_host = makeObject<HostObject>(m_state);
};

TEST_F(HostObjectsTest, SearchAndLookUp)
{
    const auto files = callMethod(m_host.get(), 2, "two").object();
    EXPECT_EQ(callMethod(files.get(), 1).number(), 1);
    EXPECT_EQ(getProperty(callMethod(files.get(), 2, std::int32_t{0}).object().get(), 4).text(), "Two");
    for (const std::int32_t outside : {-1, 1}) {
        EXPECT_FALSE(callMethod(files.get(), 2, outside).object());
    }
    EXPECT_TRUE(callMethod(m_host.get(), 8, "c:\\M\\2.MP3").object());
    const Variant unknown = callMethod(m_host.get(), 8, "c:\\m\\3.mp3");
    EXPECT_EQ(unknown.get().vt, VT_DISPATCH);
    EXPECT_FALSE(unknown.object());
}

TEST_F(HostObjectsTest, FilesAreQueuedAndPlayed)
{
    const auto list = playlist();
    EXPECT_EQ(getProperty(list.get(), 1).number(), -1);
    EXPECT_TRUE(callMethod(list.get(), 8, "C:\\m\\1.mp3", std::int32_t{-1}).boolean());
    EXPECT_TRUE(callMethod(list.get(), 8, "C:\\M\\2.mp3", std::int32_t{-1}).boolean());
    const Variant unknown = callMethod(list.get(), 8, "C:\\m\\9.mp3", std::int32_t{-1});
    EXPECT_EQ(unknown.get().vt, VT_BOOL);
    EXPECT_FALSE(unknown.boolean());
    EXPECT_EQ(callMethod(list.get(), 4).number(), 2);

    putProperty(list.get(), 1, std::int32_t{1});
    EXPECT_EQ(getProperty(playback().get(), 1).number(), 0);
    callMethod(playback().get(), 15);
    EXPECT_EQ(getProperty(playback().get(), 1).number(), 1);
    EXPECT_EQ(m_player.now().track, TrackIndex{1});
    putProperty(list.get(), 1, std::int32_t{0});
    callMethod(playback().get(), 8);
    EXPECT_EQ(m_player.now().track, TrackIndex{0});

    EXPECT_EQ(getProperty(callMethod(list.get(), 5, std::int32_t{1}).object().get(), 4).text(), "Two");
    EXPECT_FALSE(callMethod(list.get(), 5, std::int32_t{2}).object());
    callMethod(list.get(), 6);
    EXPECT_EQ(callMethod(list.get(), 4).number(), 0);
}

TEST_F(HostObjectsTest, ThreadsMayUseTheSameObjects)
{
    const auto list = playlist();
    const auto file = fileAt(0);
    std::atomic<int> wrong = 0;
    const auto hammer = [&] {
        for (int i = 0; i < 2000; ++i) {
            if (getProperty(file.get(), 2).text() != "Art") {
                ++wrong;
            }
            callMethod(list.get(), 8, "C:\\m\\1.mp3", std::int32_t{-1});
            if (const auto entry = callMethod(list.get(), 5, std::int32_t{0}).object()) {
                wrong += getProperty(entry.get(), 1).text() != "C:\\m\\1.mp3";
            }
            if (i % 100 == 99) {
                callMethod(list.get(), 6);
            }
        }
    };
    std::thread first(hammer);
    std::thread second(hammer);
    first.join();
    second.join();
    EXPECT_EQ(wrong, 0);
}

TEST(TrackFiles, TextsAreComputedWhereTheLibraryHasNone)
{
    const TemporaryFolder folder("jukebox-files");
    const std::wstring music = std::filesystem::path(folder.file("a.mp3")).wstring();
    const std::wstring cover = std::filesystem::path(folder.file("c.jpg")).wstring();
    ASSERT_TRUE(writeWholeFile(music, std::string(2047 * 1024 + 1, 'x')));
    ASSERT_TRUE(writeWholeFile(cover, "picture"));
    std::string escaped;
    for (const char letter : toUtf8(music) + "\t61\t" + toUtf8(cover)) {
        escaped += letter == '\\' ? "\\\\" : std::string(1, letter);
    }
    const Library library = parseLibrary("Filename\tDuration\tEmbeddedImage\n" + escaped + "\n");
    const auto file = makeObject<FileObject>(library, 0);

    EXPECT_EQ(callMethod(file.get(), 25).text(), "2,048kb");
    EXPECT_NE(callMethod(file.get(), 26).text(), "");
    EXPECT_EQ(callMethod(file.get(), 27).text(), "1:01");
    const auto copy = callMethod(file.get(), 23, std::int32_t{2}).wide();
    const auto second = callMethod(file.get(), 23, std::int32_t{2}).wide();
    EXPECT_NE(copy, second);
    for (const std::u16string& name : {copy, second}) {
        const std::wstring path(name.begin(), name.end());
        EXPECT_EQ(readWholeFile(path), "picture");
        EXPECT_EQ(path.substr(path.size() - 4), L".jpg");
        EXPECT_TRUE(DeleteFileW(path.c_str()));
    }
    EXPECT_EQ(readWholeFile(cover), "picture");
}

TEST(TrackFiles, DurationsAndMissingFiles)
{
    const std::pair<std::int32_t, const wchar_t*> durations[] = {
        {0, L"0:00"}, {59, L"0:59"}, {600, L"10:00"}, {3599, L"59:59"}, {3605, L"1:00:05"}, {-5, L"0:00"}};
    for (const auto& [seconds, text] : durations) {
        EXPECT_EQ(durationText(seconds), text);
    }
    EXPECT_EQ(fileSizeText(L"C:\\no such file"), L"");
    EXPECT_EQ(fileDateText(L"C:\\no such file"), L"");
    EXPECT_EQ(copyToTemporaryFile(L"C:\\no such file"), L"");
    EXPECT_EQ(readWholeFile(L"C:\\no such file"), std::nullopt);
}

} // namespace
} // namespace tessera::jukebox
