// What the system's dialogs are asked, and what they leave behind.

#include "windowing/FileDialogs.h"

#include "base/Text.h"
#include "support/ReplacedImport.h"
#include "support/TemporaryFolder.h"
#include "system/Threads.h"

#include <algorithm>
#include <commdlg.h>
#include <gtest/gtest.h>
#include <shellapi.h>
#include <shlobj.h>

extern decltype(&GetOpenFileNameA) g_openFileName __asm__("__imp__GetOpenFileNameA@4");
extern decltype(&ShellExecuteA) g_shellExecute __asm__("__imp__ShellExecuteA@24");

using namespace tessera;
using namespace tessera::test;

namespace {

std::string currentDirectory()
{
    char path[MAX_PATH] = "";
    GetCurrentDirectoryA(sizeof path, path);
    return path;
}

// Some systems change the directory whatever the flags say.
BOOL WINAPI wanderOff(OPENFILENAMEA* request)
{
    SetCurrentDirectoryA("C:\\windows");
    return std::copy_n("C:\\windows\\a.ts2", 17, request->lpstrFile) != nullptr;
}

std::string g_parameters;

std::string g_program;

HINSTANCE WINAPI noteParameters(HWND, LPCSTR, LPCSTR program, LPCSTR parameters, LPCSTR, INT)
{
    g_program = program;
    g_parameters = parameters;
    return nullptr;
}

int g_posted;

// Looks at what the dialog's loop takes out of the queue.
LRESULT CALLBACK notePosted(int code, WPARAM removed, LPARAM parameter)
{
    const auto& message = *reinterpret_cast<const MSG*>(parameter);
    g_posted += code == HC_ACTION && removed == PM_REMOVE && message.message == BFFM_SETSELECTIONA;
    return CallNextHookEx(nullptr, code, removed, parameter);
}

// Null: any dialog; the title of the folder browser is in the language of the user.
HWND waitForDialog(const char* title)
{
    for (int i = 0; i < 200; ++i) {
        if (const HWND dialog = FindWindowA("#32770", title)) {
            Sleep(700); // until it takes input
            return dialog;
        }
        Sleep(20);
    }
    return nullptr;
}

} // namespace

TEST(FileDialogs, FilterEndsWithTwoTerminators)
{
    EXPECT_EQ(systemFilter("Text (*.txt)|*.txt|All|*.*||"),
              std::string_view("Text (*.txt)\0*.txt\0All\0*.*\0\0", 28));
    EXPECT_EQ(systemFilter(""), std::string_view("\0\0", 2));
}

TEST(FileDialogs, SaveAnswersTheTypedPathAndKeepsTheCurrentDirectory)
{
    char before[MAX_PATH];
    GetCurrentDirectoryA(MAX_PATH, before);
    Thread user("user", [] {
        const HWND dialog = waitForDialog("Enter the name");
        SendMessageA(GetDlgItem(dialog, 0x47C), WM_SETTEXT, 0,
                     reinterpret_cast<LPARAM>("C:\\windows\\temp\\made"));
        PostMessageA(dialog, WM_COMMAND, IDOK, 0);
    });
    FileDialogOptions options;
    options.title = "Enter the name";
    options.filter = "Database Files (*.ts2)|*.ts2|All Files (*.*)|*.*||";
    options.defaultExtension = ".ts2";
    options.initialName = "bad<name>?"; // cannot be shown; the dialog opens without it
    options.flags = kSaveFlags & ~static_cast<DWORD>(OFN_CREATEPROMPT);
    EXPECT_EQ(saveFile(nullptr, options), "C:\\windows\\temp\\made.ts2");
    char after[MAX_PATH];
    GetCurrentDirectoryA(MAX_PATH, after);
    EXPECT_STREQ(after, before);
}

TEST(FileDialogs, CancelIsNone)
{
    Thread user("user", [] { PostMessageA(waitForDialog("To be cancelled"), WM_COMMAND, IDCANCEL, 0); });
    EXPECT_EQ(openFile(nullptr, {.title = "To be cancelled", .filter = "All|*.*||", .flags = kOpenFlags}),
              std::nullopt);
}

TEST(FileDialogs, TheCurrentDirectoryStays)
{
    const ReplacedImport dialog(g_openFileName, &wanderOff);
    const std::string before = currentDirectory();
    EXPECT_NE(before, "C:\\windows");
    EXPECT_EQ(openFile(nullptr, {}), "C:\\windows\\a.ts2");
    EXPECT_EQ(currentDirectory(), before);
}

// Some systems scroll the selection out of view while they open the nodes above it.
TEST(FileDialogs, FolderBrowserSelectsItsFolderOnceMoreWhenTheTreeIsThere)
{
    g_posted = 0;
    Thread user("user", [] { PostMessageA(waitForDialog(nullptr), WM_COMMAND, IDOK, 0); });
    const HHOOK hook = SetWindowsHookExA(WH_GETMESSAGE, &notePosted, nullptr, GetCurrentThreadId());
    EXPECT_EQ(browseFolder(nullptr, "C:\\windows\\system32"), "C:\\windows\\system32");
    UnhookWindowsHookEx(hook);
    EXPECT_EQ(g_posted, 1);
}

// An album's folder may be any text: it must be a folder, and is never taken for a switch.
TEST(FileDialogs, TheFileBrowserGetsFoldersAloneAndDividersInQuotes)
{
    const ReplacedImport execute(g_shellExecute, &noteParameters);
    const TemporaryFolder folder("browser");
    for (const auto& [name, quote] : {std::pair{"A b", ""}, {"A, b", "\""}, {"a=b", "\""}}) {
        const std::string path = folder.file(name);
        ASSERT_TRUE(CreateDirectoryA(path.c_str(), nullptr));
        EXPECT_TRUE(showFolder(nullptr, path));
        EXPECT_EQ(g_parameters, std::string("/n,/e,") + quote + path + quote);
        EXPECT_TRUE(equalNoCase(g_program, "C:\\windows\\explorer.exe")) << g_program;
    }
    EXPECT_TRUE(showFolder(nullptr, "C:")) << "tracks may lie in a drive's root";
    const std::string program = folder.file("x.exe");
    CloseHandle(CreateFileA(program.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    g_parameters = "none";
    for (const std::string& text : {program, std::string("/root,\\\\server\\x.exe"), folder.file("gone"),
                                    std::string(), std::string("windows"), folder.file("A b\" /select")})
        EXPECT_FALSE(showFolder(nullptr, text)) << text;
    EXPECT_EQ(g_parameters, "none");
}
