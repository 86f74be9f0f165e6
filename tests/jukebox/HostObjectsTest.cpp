#include "jukebox/HostObjects.h"

#include "base/Clock.h"
#include "jukebox/TrackFile.h"
#include "jukebox/WideText.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <thread>

namespace tessera::jukebox {
namespace {

constexpr const char* kLibrary =
    "Filename\tArtist\tAlbum\tName\tDuration\tGenre\tYear\tBitrate\tTrack\tType\tComment\tLyrics\tNotes\t"
    "Custom1\tCustom2\tCustom3\tPlayCount\tRating\tFileSize\tFileDate\tDurationText\tLastPlayed\tImageFile\t"
    "EmbeddedImage\n"
    "C:\\\\m\\\\1.mp3\tArt\tAlb\tNam\t215\tGen\t1999\t192\t7\tMP3\tCom\tLyr\tNot\tC1\tC2\tC3\t11\t4\t"
    "22,714kb\ta day\t3:35 min\tnever\tC:\\\\m\\\\f.jpg\tC:\\\\m\\\\missing.jpg\n"
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

HRESULT tryCall(IDispatch* object, DISPID id, WORD kind, std::vector<Variant> arguments)
{
    std::vector<VARIANT> raw;
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
        raw.push_back(argument->get());
    }
    DISPPARAMS parameters{raw.data(), nullptr, static_cast<UINT>(raw.size()), 0};
    Variant result;
    return object->Invoke(id, IID_NULL, 0, kind, &parameters, result.put(), nullptr, nullptr);
}

TEST_F(HostObjectsTest, AFileAnswersEveryField)
{
    const auto file = fileAt(0);
    const struct {
        DISPID id;
        WORD kind;
        const char* text;
    } texts[] = {
        {1, DISPATCH_PROPERTYGET, "C:\\m\\1.mp3"}, {2, DISPATCH_PROPERTYGET, "Art"},
        {3, DISPATCH_PROPERTYGET, "Alb"},          {4, DISPATCH_PROPERTYGET, "Nam"},
        {7, DISPATCH_PROPERTYGET, "Gen"},          {9, DISPATCH_PROPERTYGET, "Com"},
        {13, DISPATCH_PROPERTYGET, "C1"},          {14, DISPATCH_PROPERTYGET, "C2"},
        {15, DISPATCH_PROPERTYGET, "C3"},          {19, DISPATCH_PROPERTYGET, "MP3"},
        {20, DISPATCH_PROPERTYGET, "Lyr"},         {21, DISPATCH_PROPERTYGET, "Not"},
        {25, DISPATCH_METHOD, "22,714kb"},         {26, DISPATCH_METHOD, "a day"},
        {27, DISPATCH_METHOD, "3:35 min"},         {28, DISPATCH_METHOD, "never"},
    };
    for (const auto& field : texts) {
        const Variant value = invoke(file.get(), field.id, field.kind);
        EXPECT_EQ(value.get().vt, VT_BSTR) << field.id;
        EXPECT_EQ(value.text(), field.text) << field.id;
    }
    const std::pair<DISPID, std::int32_t> numbers[] = {{6, 215}, {8, 1999}, {10, 192},
                                                       {11, 7},  {16, 11},  {18, 4}};
    for (const auto& [id, number] : numbers) {
        const Variant value = getProperty(file.get(), id);
        EXPECT_EQ(value.get().vt, VT_I4) << id;
        EXPECT_EQ(value.number(), number) << id;
    }
    EXPECT_EQ(callMethod(file.get(), 23, std::int32_t{1}).text(), "C:\\m\\f.jpg");
    EXPECT_EQ(callMethod(file.get(), 23, std::int32_t{2}).text(), ""); // the picture is gone
    EXPECT_EQ(callMethod(file.get(), 23, std::int32_t{3}).text(), "");
}

TEST_F(HostObjectsTest, MistakesAreRefusedWithTheirCodes)
{
    const auto file = fileAt(0);
    const auto list = playlist();
    const struct {
        IDispatch* object;
        DISPID id;
        WORD kind;
        std::vector<Variant> arguments;
        HRESULT code;
    } cases[] = {
        {m_host.get(), 4, DISPATCH_METHOD, {}, DISP_E_MEMBERNOTFOUND},
        {m_host.get(), 1, DISPATCH_PROPERTYGET, {}, DISP_E_MEMBERNOTFOUND},
        {file.get(), 5, DISPATCH_PROPERTYGET, {}, DISP_E_MEMBERNOTFOUND},
        {file.get(), 1, DISPATCH_METHOD, {}, DISP_E_MEMBERNOTFOUND},
        {file.get(), 25, DISPATCH_PROPERTYGET, {}, DISP_E_MEMBERNOTFOUND},
        {file.get(), 2, DISPATCH_PROPERTYPUT, {Variant("x")}, DISP_E_MEMBERNOTFOUND},
        {m_host.get(), 2, DISPATCH_METHOD, {}, DISP_E_BADPARAMCOUNT},
        {m_host.get(), 2, DISPATCH_METHOD, {Variant(std::int32_t{1})}, DISP_E_TYPEMISMATCH},
        {m_host.get(), 3, DISPATCH_METHOD, {Variant("x")}, DISP_E_BADPARAMCOUNT},
        {m_host.get(), 9, DISPATCH_METHOD, {Variant("1")}, DISP_E_TYPEMISMATCH},
        {m_host.get(), 12, DISPATCH_METHOD, {Variant("Tree")}, DISP_E_BADPARAMCOUNT},
        {list.get(), 8, DISPATCH_METHOD, {Variant("x"), Variant("y")}, DISP_E_TYPEMISMATCH},
        {list.get(), 8, DISPATCH_METHOD, {Variant(std::int32_t{0}), Variant("x")}, DISP_E_TYPEMISMATCH},
        {file.get(), 23, DISPATCH_METHOD, {}, DISP_E_BADPARAMCOUNT},
    };
    for (const auto& mistake : cases) {
        EXPECT_EQ(tryCall(mistake.object, mistake.id, mistake.kind, mistake.arguments), mistake.code)
            << "id " << mistake.id << " kind " << mistake.kind;
    }
}

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

TEST_F(HostObjectsTest, SkinAnswersOnlyWhenThereIsOne)
{
    EXPECT_EQ(callMethod(m_host.get(), 10, std::int32_t{0}, std::int32_t{-1}).number(), 0);
    EXPECT_EQ(callMethod(m_host.get(), 12, "Tree", "BackColor").number(), -1);
    m_state.skinned = true;
    EXPECT_GT(callMethod(m_host.get(), 10, std::int32_t{0}, std::int32_t{-1}).number(), 0);
    const std::pair<const char*, const char*> keys[] = {{"Tree", "BackColor"},
                                                        {"Tree", "Text"},
                                                        {"List", "SelectedTextColor"},
                                                        {"List", "SelectedBackColor"},
                                                        {"Frame", "Face3DColor"}};
    for (const auto& [section, key] : keys) {
        EXPECT_GE(callMethod(m_host.get(), 12, section, key).number(), 0) << section << key;
    }
    EXPECT_EQ(callMethod(m_host.get(), 12, "Tree", "Shadow").number(), -1);
    callMethod(m_host.get(), 9, std::int32_t{0});
    EXPECT_FALSE(m_state.drawsSkin);
}

TEST_F(HostObjectsTest, ReferencesAreCounted)
{
    const auto file = fileAt(0);
    IUnknown* const raw = file.get();
    raw->AddRef();
    EXPECT_EQ(raw->Release(), 1u);
    EXPECT_EQ(file.query<IDispatch>().get(), file.get());
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
