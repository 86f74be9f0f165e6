#include "options/NewDatabaseWizard.h"

#include "options/WizardPropertySheet.h"
#include "options/ids.h"
#include "system/Handle.h"
#include "tokens/TokenParser.h"
#include "ui/FakeCommands.h"
#include "windowing/Control.h"

#include <functional>
#include <gtest/gtest.h>
#include <shlobj.h>

namespace tessera {

namespace {

class WizardCommands : public FakeCommands {
public:
    const TokenParser& tokens() const override { return parser; }
    HFONT wizardCaptionFont() const override { return caption.get(); }
    int showMessage(UINT flags, const std::string& text) override
    {
        lastFlags = flags;
        return FakeCommands::showMessage(flags, text);
    }

    TokenParser parser;
    UINT lastFlags = 0;
    FontHandle caption{
        CreateFontA(-12, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, ANTIALIASED_QUALITY, 0, "Tahoma")};
};

using Steps = std::vector<std::function<void()>>;

Steps* g_steps = nullptr;
std::size_t g_step = 0;
int g_waits = 0; // ticks for which one step has been waiting
CWizardPropertySheet* g_wizard = nullptr;

// Runs by itself while the wizard's own loop, or that of a dialog over it, is running.
void CALLBACK nextStep(HWND, UINT, UINT_PTR, DWORD)
{
    if (!g_wizard || !g_wizard->handle()) {
        return;
    }
    if (g_step < g_steps->size()) {
        (*g_steps)[g_step++]();
    } else {
        g_wizard->cancel(); // the steps have not ended it
    }
}

// A step that is taken again and again until the condition holds.
std::function<void()> waitingFor(std::function<bool()> condition)
{
    return [condition] {
        if (condition()) {
            g_waits = 0;
        } else if (++g_waits < 200) {
            --g_step;
        } else {
            ADD_FAILURE() << "waited in vain";
        }
    };
}

class WizardTest : public testing::Test {
protected:
    WizardTest()
    {
        initCommonControls();
        commands.parser.setArtworkFolder("C:\\Cover Art");
        ShowWindow(owner, SW_SHOWNOACTIVATE);
    }
    ~WizardTest() override { DestroyWindow(owner); }

    bool run(Steps steps)
    {
        g_steps = &steps;
        g_step = 0;
        g_waits = 0;
        const UINT_PTR timer = SetTimer(nullptr, 0, 30, &nextStep);
        const bool finished = runNewDatabaseWizard(owner, commands, settings, &g_wizard);
        KillTimer(nullptr, timer);
        EXPECT_EQ(g_step, steps.size()) << "the wizard ended early";
        EXPECT_TRUE(IsWindowEnabled(owner));
        EXPECT_EQ(g_wizard, nullptr);
        return finished;
    }

    static HWND sheet() { return g_wizard->handle(); }
    static HWND page() { return reinterpret_cast<HWND>(SendMessageA(sheet(), PSM_GETCURRENTPAGEHWND, 0, 0)); }
    static HWND item(int id) { return GetDlgItem(page(), id); }
    static void press(int button) { SendMessageA(sheet(), PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); }
    static std::function<void()> pressing(int button)
    {
        return [button] { press(button); };
    }
    static const inline std::function<void()> next = pressing(PSBTN_NEXT);
    static const inline std::function<void()> back = pressing(PSBTN_BACK);
    static const inline std::function<void()> finish = pressing(PSBTN_FINISH);
    static const inline std::function<void()> cancel = pressing(PSBTN_CANCEL);
    static std::function<void()> typing(int id, std::string text)
    {
        return [id, text] { SetWindowTextA(item(id), text.c_str()); };
    }
    // A dialog over the wizard, by its title.
    static HWND dialog(const char* title) { return FindWindowA("#32770", title); }
    static void press(HWND window, WPARAM key) { SendMessageA(window, WM_KEYDOWN, key, 1); }

    HWND owner = makeParentWindow(640, 480);
    WizardCommands commands;
    DatabaseSettings settings;
};

} // namespace

TEST_F(WizardTest, EachOfSixPagesFillsItsPlaceAndHasTheButtonsThatWork)
{
    settings.lastUsed = "x.ts2";
    int pages = 0;
    const auto look = [&] {
        constexpr int kBack = 0x3023, kNext = 0x3024, kFinish = 0x3025;
        const auto usable = [](int id) {
            const HWND button = GetDlgItem(sheet(), id);
            return IsWindowEnabled(button) && IsWindowVisible(button);
        };
        RECT client{}, units{0, 0, 275, 175};
        GetClientRect(page(), &client);
        MapDialogRect(page(), &units);
        EXPECT_NEAR(client.right, units.right, 1);
        EXPECT_NEAR(client.bottom, units.bottom, 1);
        EXPECT_EQ(windowText(sheet()), "Step " + std::to_string(++pages) + " of 6");
        EXPECT_EQ(usable(kBack), pages > 1) << pages;
        EXPECT_EQ(usable(kNext), pages < 6) << pages;
        EXPECT_EQ(usable(kFinish), pages == 6) << pages;
    };
    EXPECT_TRUE(run({look, next, look, next, look, next, look, next, look, next, look, finish}));
    EXPECT_EQ(pages, 6);
}

TEST_F(WizardTest, FinishTakesTheSevenFields)
{
    settings.lastUsed = "C:\\old.ts2";
    settings.lastSearchCriteria = "jazz";
    settings.excludedTypes = "OGG";
    settings.exclusionList = "C:\\list.txt";
    settings.excludeUnassigned = true;
    settings.minTracksPerAlbum = 4;
    settings.artworkDirectories = "\ta.jpg\t\tb.jpg\t";
    settings.loadLastAtStartup = false;
    EXPECT_TRUE(run({
        next,
        [&] {
            EXPECT_EQ(windowText(item(IDC_DATABASE_FILE)), "C:\\old.ts2");
            EXPECT_EQ(windowText(item(IDC_SEARCH_CRITERIA)), "jazz");
            EXPECT_FALSE(IsDlgButtonChecked(page(), IDC_PRESERVE_SETTINGS));
            CheckDlgButton(page(), IDC_PRESERVE_SETTINGS, BST_CHECKED);
        },
        typing(IDC_DATABASE_FILE, "  "), // blanks are a name
        typing(IDC_SEARCH_CRITERIA, "rock & roll"),
        next,
        [&] {
            EXPECT_EQ(windowText(item(IDC_EXCLUDED_TYPES)), "OGG");
            EXPECT_EQ(windowText(item(IDC_EXCLUSIONS_FILE)), "C:\\list.txt");
        },
        typing(IDC_EXCLUDED_TYPES, "MP?, WMA"),
        typing(IDC_EXCLUSIONS_FILE, "D:\\other.txt"),
        next,
        [&] {
            EXPECT_TRUE(IsDlgButtonChecked(page(), IDC_EXCLUDE_UNASSIGNED));
            EXPECT_EQ(windowText(item(IDC_MIN_TRACKS)), "4");
            CheckDlgButton(page(), IDC_EXCLUDE_UNASSIGNED, BST_UNCHECKED);
        },
        typing(IDC_MIN_TRACKS, "007"),
        next,
        next,
        back,
        back,
        back,
        back, // and nothing is lost on the way
        [&] {
            EXPECT_EQ(windowText(item(IDC_DATABASE_FILE)), "  ");
            EXPECT_TRUE(IsDlgButtonChecked(page(), IDC_PRESERVE_SETTINGS));
        },
        next,
        next,
        [&] { EXPECT_EQ(windowText(item(IDC_MIN_TRACKS)), "007"); },
        next,
        next,
        finish,
    }));
    EXPECT_EQ(settings.lastUsed, "  ");
    EXPECT_EQ(settings.lastSearchCriteria, "rock & roll");
    EXPECT_EQ(settings.excludedTypes, "MP?, WMA");
    EXPECT_EQ(settings.exclusionList, "D:\\other.txt");
    EXPECT_FALSE(settings.excludeUnassigned);
    EXPECT_EQ(settings.minTracksPerAlbum, 7);
    EXPECT_EQ(settings.artworkDirectories, "a.jpg\tb.jpg");
    EXPECT_FALSE(settings.loadLastAtStartup);
    EXPECT_TRUE(commands.messages.empty());
}

TEST_F(WizardTest, CancelChangesNothing)
{
    settings.lastUsed = "C:\\old.ts2";
    const std::string artwork = settings.artworkDirectories;
    EXPECT_FALSE(run({next, typing(IDC_DATABASE_FILE, "new.ts2"), next, typing(IDC_EXCLUDED_TYPES, "OGG"),
                      next, typing(IDC_MIN_TRACKS, "9"), next,
                      [] { press(item(IDC_DIRECTORIES), VK_DELETE); }, next, cancel}));
    EXPECT_EQ(settings.lastUsed, "C:\\old.ts2");
    EXPECT_EQ(settings.excludedTypes, "");
    EXPECT_EQ(settings.minTracksPerAlbum, 1);
    EXPECT_EQ(settings.artworkDirectories, artwork);
}

TEST_F(WizardTest, AnEmptyDatabaseNameIsRefused)
{
    EXPECT_FALSE(run({next, next,
                      [&] {
                          EXPECT_EQ(windowText(sheet()), "Step 2 of 6");
                          EXPECT_EQ(commands.messages,
                                    std::vector<std::string>{"The database name cannot be blank!"});
                          EXPECT_EQ(commands.lastFlags & MB_ICONMASK, UINT{MB_ICONEXCLAMATION});
                      },
                      cancel}));
}

TEST_F(WizardTest, AMinimumBelowOneIsRefusedAndBecomesOne)
{
    settings.lastUsed = "x.ts2";
    Steps steps = {next, next, next};
    const char* const refused[] = {"0", "-3", "", "abc", "-99999999999999999999"};
    for (const char* const text : refused) {
        steps.insert(steps.end(), {typing(IDC_MIN_TRACKS, text), next, [text] {
                                       SCOPED_TRACE(text);
                                       EXPECT_EQ(windowText(sheet()), "Step 4 of 6");
                                       EXPECT_EQ(windowText(item(IDC_MIN_TRACKS)), "1");
                                   }});
    }
    steps.insert(steps.end(), {typing(IDC_MIN_TRACKS, "12abc"), next, next, finish});
    EXPECT_TRUE(run(steps));
    EXPECT_EQ(settings.minTracksPerAlbum, 12);
    EXPECT_EQ(commands.messages,
              std::vector<std::string>(std::size(refused),
                                       "The minimum number of tracks cannot be less than one!"));
    EXPECT_EQ(commands.lastFlags & MB_ICONMASK, UINT{MB_ICONEXCLAMATION});
}

TEST(LeadingNumber, IsSignedAndNeverWraps)
{
    EXPECT_EQ(leadingNumber("007"), 7);
    EXPECT_EQ(leadingNumber("-3x"), -3);
    EXPECT_EQ(leadingNumber("x3"), 0);
    EXPECT_EQ(leadingNumber("2147483648"), 2147483647);
    EXPECT_EQ(leadingNumber("99999999999999999999999"), 2147483647);
    EXPECT_EQ(leadingNumber("-4294967295"), -2147483647 - 1);
}

TEST_F(WizardTest, TheArtworkRowsAreEdited)
{
    settings.lastUsed = "x.ts2";
    const auto sample = [](const char* expected) { EXPECT_EQ(windowText(item(IDC_SAMPLE)), expected); };
    const auto edit = [] { return FindWindowExA(item(IDC_DIRECTORIES), nullptr, "Edit", nullptr); };
    EXPECT_TRUE(run({
        next,
        next,
        next,
        next,
        [&] {
            const HWND list = item(IDC_DIRECTORIES);
            EXPECT_EQ(SendMessageA(list, LB_GETCURSEL, 0, 0), 0);
            EXPECT_EQ(SendMessageA(list, LB_GETCOUNT, 0, 0), 3);
            press(list, VK_DOWN);
            sample("Sample: C:\\My Music\\Harlan Voss\\Tidewater\\folder.jpg");
            press(list, VK_DELETE);
            sample("Sample: C:\\My Music\\Harlan Voss\\Tidewater\\*front*.jpg");
            press(list, VK_INSERT);
            SetWindowTextA(edit(), "<artist>.png");
            press(edit(), VK_RETURN);
            sample("Sample: Harlan Voss.png");
            press(list, VK_INSERT);
            SetWindowTextA(edit(), "D:\\<Album>.gif"); // still open when the page is left
        },
        next,
        back,
        [&] { sample("Sample: D:\\Tidewater.gif"); },
        next,
        finish,
    }));
    EXPECT_EQ(
        settings.artworkDirectories,
        "<MJArtworkDir>\\<Artist> - <Album>.jpg\t<AlbumPath>\\*front*.jpg\t<artist>.png\tD:\\<Album>.gif");
}

TEST_F(WizardTest, NoRowsGiveAnEmptySetting)
{
    settings.lastUsed = "x.ts2";
    settings.artworkDirectories = "\t";
    EXPECT_TRUE(run({next, next, next, next,
                     [] {
                         EXPECT_EQ(windowText(item(IDC_SAMPLE)), "Sample: ");
                         press(item(IDC_DIRECTORIES), VK_INSERT);
                     },
                     next, finish}));
    EXPECT_EQ(settings.artworkDirectories, "");
}

TEST_F(WizardTest, TheSaveDialogFillsTheDatabaseField)
{
    constexpr const char* kTitle = "Enter the name of the database to create";
    EXPECT_FALSE(run({next, [] { PostMessageA(item(IDC_DATABASE_BROWSE), BM_CLICK, 0, 0); },
                      waitingFor([] { return dialog(kTitle) != nullptr; }),
                      waitingFor([] { return IsWindowVisible(GetDlgItem(dialog(kTitle), 0x47c)) != FALSE; }),
                      [] {
                          SendMessageA(GetDlgItem(dialog(kTitle), 0x47c), WM_SETTEXT, 0,
                                       reinterpret_cast<LPARAM>("C:\\windows\\temp\\chosen"));
                          PostMessageA(dialog(kTitle), WM_COMMAND, IDOK, 0);
                      },
                      waitingFor([] { return dialog(kTitle) == nullptr; }),
                      [] {
                          const std::string name = windowText(item(IDC_DATABASE_FILE));
                          EXPECT_STRCASEEQ(name.c_str(), "C:\\windows\\temp\\chosen.ts2");
                      },
                      cancel}));
}

TEST_F(WizardTest, TheFolderBrowserFillsTheRow)
{
    constexpr const char* kTitle = "Browse for Folder";
    settings.lastUsed = "x.ts2";
    settings.artworkDirectories = "C:\\windows";
    const auto child = [](const char* name) {
        return FindWindowExA(item(IDC_DIRECTORIES), nullptr, name, nullptr);
    };
    EXPECT_TRUE(run({
        next,
        next,
        next,
        next,
        [] { press(item(IDC_DIRECTORIES), VK_F2); },
        [&] { PostMessageA(child("Button"), BM_CLICK, 0, 0); },
        waitingFor([] { return IsWindowVisible(dialog(kTitle)) != FALSE; }),
        [] {
            SendMessageA(dialog(kTitle), BFFM_SETSELECTIONA, TRUE,
                         reinterpret_cast<LPARAM>("C:\\windows\\system32"));
            PostMessageA(dialog(kTitle), WM_COMMAND, IDOK, 0);
        },
        waitingFor([] { return dialog(kTitle) == nullptr; }),
        [&] {
            EXPECT_TRUE(IsWindowVisible(child("Edit"))) << "the edit stays open";
            EXPECT_EQ(GetFocus(), child("Edit"));
        },
        next,
        finish,
    }));
    EXPECT_STRCASEEQ(settings.artworkDirectories.c_str(), "C:\\windows\\system32");
}

TEST_F(WizardTest, CanBeCancelledFromOutsideAtAnyTime)
{
    settings.lastUsed = "x.ts2";
    const auto close = [] { g_wizard->cancel(); };
    // With an edit open.
    EXPECT_FALSE(run({next, next, next, next, [] { press(item(IDC_DIRECTORIES), VK_F2); }, close}));
    // With a file dialog, the folder browser or a box open.
    EXPECT_FALSE(
        run({next, next, [] { PostMessageA(item(IDC_EXCLUSIONS_BROWSE), BM_CLICK, 0, 0); }, waitingFor([] {
                 return dialog("Enter the name of the file containing the exclusions list") != nullptr;
             }),
             close}));
    EXPECT_FALSE(run({next, [] { MessageBoxA(sheet(), "Is anybody there?", "Box", MB_OK); }, close}));
    EXPECT_EQ(settings.lastUsed, "x.ts2");
}

TEST_F(WizardTest, KeysWorkThroughTheWizardsOwnLoop)
{
    settings.lastUsed = "x.ts2";
    const auto list = [] { return item(IDC_DIRECTORIES); };
    const auto edit = [] { return FindWindowExA(item(IDC_DIRECTORIES), nullptr, "Edit", nullptr); };
    const auto key = [](WPARAM code) { return [code] { PostMessageA(GetFocus(), WM_KEYDOWN, code, 1); }; };
    EXPECT_FALSE(run({
        [] { EXPECT_TRUE(IsChild(sheet(), GetFocus())); },
        key(VK_RETURN), // Next is the default button
        [] { EXPECT_EQ(GetFocus(), item(IDC_DATABASE_FILE)); },
        next,
        [] { EXPECT_EQ(GetFocus(), item(IDC_EXCLUDED_TYPES)); },
        next,
        [] { EXPECT_EQ(GetFocus(), item(IDC_EXCLUDE_UNASSIGNED)); },
        next,
        [&] { EXPECT_EQ(GetFocus(), list()); },
        key(VK_F2),
        [&] { EXPECT_EQ(GetFocus(), edit()); },
        [&] { SetWindowTextA(edit(), "kept"); },
        key(VK_RETURN), // ends the edit and presses nothing
        [&] {
            EXPECT_EQ(windowText(sheet()), "Step 5 of 6");
            EXPECT_EQ(GetFocus(), list());
            EXPECT_EQ(windowText(item(IDC_SAMPLE)), "Sample: kept");
        },
        key(VK_INSERT),
        key(VK_ESCAPE), // ends the edit and not the wizard
        [&] {
            EXPECT_EQ(SendMessageA(list(), LB_GETCOUNT, 0, 0), 3);
            EXPECT_EQ(GetFocus(), list());
        },
        key(VK_ESCAPE),
    }));
    const auto focusIsOn = [](const char* label) {
        return [label] {
            EXPECT_EQ(windowText(GetFocus()), label);
            EXPECT_TRUE(IsWindowVisible(GetFocus()) && IsWindowEnabled(GetFocus()));
        };
    };
    const auto clicking = [](int button) {
        return [button] { SetFocus(GetDlgItem(sheet(), button)), SendMessageA(GetFocus(), BM_CLICK, 0, 0); };
    };
    EXPECT_TRUE(run({
        next,
        clicking(0x3023),
        focusIsOn("&Next >"), // Back is disabled now
        next,
        next,
        next,
        next,
        clicking(0x3024),
        focusIsOn("Finish"), // Next is hidden now
        key(VK_RETURN),
    }));
}

} // namespace tessera
