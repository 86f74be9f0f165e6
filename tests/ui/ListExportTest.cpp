#include "ui/ListExport.h"
#include "FakeCommands.h"
#include "windowing/ListView.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <thread>

namespace tessera {
namespace {

// A pane with nothing but a list.
class ListPane final : public Pane {
public:
    explicit ListPane(const ListView& list) : m_list(list) {}
    int id() const override { return paneId::kLog; }
    HWND window() const override { return nullptr; }
    void settingsChanged() override {}
    void storeState() override {}
    void reload() override {}
    void clearRecords() override {}
    void setView(ListStyle) override {}
    void trackCursor(POINT, bool) override {}
    HWND exportList() const override { return m_list.handle(); }
    const char* exportBaseName() const override { return "TesseraLog"; }
    std::string exportText(int item, int column) const override { return m_list.text(item, column); }

private:
    const ListView& m_list;
};

class ListExportTest : public testing::Test {
protected:
    ListExportTest()
    {
        initCommonControls();
        m_hParent = makeParentWindow(400, 300);
        m_commands.owner = m_hParent;
        m_list.create(m_hParent, 1, {0, 0, 400, 300});
        for (const char* title : {"A", "B", "C"})
            m_list.addColumn(title, 100);
        char folder[MAX_PATH] = "";
        GetTempPathA(MAX_PATH, folder);
        m_path = std::string(folder) + "tessera-export-test.txt";
        systemFiles().remove(m_path);
    }
    ~ListExportTest() override
    {
        DestroyWindow(m_hParent);
        systemFiles().remove(m_path);
    }

    std::string content() const
    {
        const auto bytes = systemFiles().readAll(m_path);
        return bytes ? std::string(bytes->begin(), bytes->end()) : "no file";
    }
    // Types the path into the dialog that the export opens, as soon as it is there; an empty one cancels.
    void answerDialog(const std::string& path);

    FakeCommands m_commands;
    HWND m_hParent = nullptr;
    ListView m_list;
    ListPane m_pane{m_list};
    std::string m_path;
};

TEST_F(ListExportTest, LinesEndWithALineFeedAndTrailingWhiteSpaceGoes)
{
    m_list.addRow({"one", "two", "three"});
    m_list.addRow({"blank last", " ", " \t"});
    m_list.addRow({"", "", ""});
    m_list.addRow({"", "middle", ""});
    m_list.addRow({"caf\xe9", std::string(1000, 'x'), "\r\n"});
    const ExportResult result =
        exportList(m_list.handle(), shownTexts(m_list.handle()), m_path, systemFiles());
    EXPECT_EQ(result.error, static_cast<DWORD>(ERROR_SUCCESS));
    EXPECT_EQ(result.records, 5u);
    EXPECT_EQ(content(),
              "one\ttwo\tthree\nblank last\n\n\tmiddle\ncaf\xe9\t" + std::string(1000, 'x') + "\n");
}

// A tag with tabs and line breaks would make columns and rows of its own.
TEST_F(ListExportTest, ControlCharactersOfATagAreBlanks)
{
    m_list.addRow({"", "", ""});
    const CellText tag = [](int, int column) {
        return column == 0 ? std::string("one\ttwo\r\nthree\0four\x1F\x7F.", 22) : std::string("\t\n");
    };
    std::size_t records = 0;
    EXPECT_EQ(listText(m_list.handle(), tag, records), "one two  three four  .\n");
    EXPECT_EQ(records, 1U);
}

TEST_F(ListExportTest, EmptyListWritesAnEmptyFileOverWhatWasThere)
{
    m_list.addRow({"old", "", ""});
    exportList(m_list.handle(), shownTexts(m_list.handle()), m_path, systemFiles());
    m_list.clear();
    EXPECT_EQ(exportList(m_list.handle(), shownTexts(m_list.handle()), m_path, systemFiles()).records, 0u);
    EXPECT_EQ(content(), "");
}

TEST_F(ListExportTest, RefusalCarriesTheSystemsReason)
{
    m_list.addRow({"x", "y", "z"});
    EXPECT_NE(
        exportList(m_list.handle(), shownTexts(m_list.handle()), "C:\\no such folder\\x.txt", systemFiles())
            .error,
        static_cast<DWORD>(ERROR_SUCCESS));
    EXPECT_EQ(m_list.count(), 1);
}

void ListExportTest::answerDialog(const std::string& path)
{
    std::thread([path] {
        HWND dialog = nullptr;
        for (int tries = 0; tries < 200 && dialog == nullptr; ++tries) {
            Sleep(25);
            dialog = FindWindowA("#32770", "Enter the name of the file to export to");
        }
        Sleep(500);
        if (!path.empty())
            SendMessageA(GetDlgItem(dialog, 0x47c), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
        PostMessageA(dialog, WM_COMMAND, path.empty() ? IDCANCEL : IDOK, 0);
    }).detach();
}

TEST_F(ListExportTest, DialogAsksAndTheMessageReports)
{
    m_list.addRow({"one", "", ""});
    m_list.addRow({"two", "", ""});
    ShowWindow(m_hParent, SW_SHOW);
    answerDialog(m_path);
    exportListToText(m_commands, m_pane);
    EXPECT_EQ(content(), "one\ntwo\n");
    ASSERT_EQ(m_commands.messages.size(), 1u);
    const std::string& text = m_commands.messages[0];
    EXPECT_TRUE(text.starts_with("Finished writing to " + m_path + "\n\n2 records written in 0.")) << text;
    EXPECT_TRUE(text.ends_with(" seconds.")) << text;

    answerDialog("");
    exportListToText(m_commands, m_pane);
    EXPECT_EQ(m_commands.messages.size(), 1u) << "cancelled: nothing said";
}

} // namespace
} // namespace tessera
