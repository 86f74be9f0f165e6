#include "jukebox/Screen.h"

#include "jukebox/Report.h"
#include "jukebox/WideText.h"

#include <algorithm>
#include <array>
#include <commctrl.h>
#include <memory>

namespace tessera::jukebox {

namespace {

constexpr std::size_t kTextUnits = 4096;

// Memory that a window writes its answer to. One whose window did not answer in time is never
// used again and never freed: the answer may still come.
template <class Content>
class AnswerBuffer {
public:
    AnswerBuffer() : m_content(std::make_unique<Content>()) {}
    Content* operator->() { return m_content.get(); }
    Content& operator*() { return *m_content; }
    void abandon() { (void)m_content.release(); } // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)

private:
    std::unique_ptr<Content> m_content;
};

struct TextAnswer {
    std::array<wchar_t, kTextUnits> text{};
};

struct ItemAnswer {
    LVITEMA item{};
    std::array<char, kTextUnits> text{};
};

BOOL CALLBACK collect(HWND window, LPARAM list) noexcept
{
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

bool isOurs(HWND window)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == GetCurrentProcessId() && IsWindowVisible(window);
}

} // namespace

std::optional<LRESULT> ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT milliseconds)
{
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutA(window, message, wParam, lParam, SMTO_NORMAL, milliseconds, &answer)) {
        return std::nullopt;
    }
    return static_cast<LRESULT>(answer);
}

bool answers(HWND window, UINT milliseconds)
{
    return ask(window, WM_NULL, 0, 0, milliseconds).has_value();
}

std::wstring textOf(HWND window)
{
    AnswerBuffer<TextAnswer> buffer;
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutW(window, WM_GETTEXT, kTextUnits, reinterpret_cast<LPARAM>(buffer->text.data()),
                             SMTO_NORMAL, 3000, &answer)) {
        buffer.abandon();
        return {};
    }
    return {buffer->text.data(), std::min<std::size_t>(answer, kTextUnits - 1)};
}

bool setText(HWND window, const std::wstring& text)
{
    AnswerBuffer<std::wstring> buffer;
    *buffer = text;
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(buffer->c_str()), SMTO_NORMAL,
                             3000, &answer)) {
        buffer.abandon();
        return false;
    }
    return true;
}

std::string classOf(HWND window)
{
    char name[64] = {};
    GetClassNameA(window, name, sizeof name);
    return name;
}

std::vector<HWND> topLevelWindows()
{
    std::vector<HWND> windows;
    EnumWindows(collect, reinterpret_cast<LPARAM>(&windows));
    std::erase_if(windows, [](HWND window) { return !isOurs(window); });
    return windows;
}

std::vector<HWND> childrenOf(HWND window)
{
    std::vector<HWND> children;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        children.push_back(child);
    }
    return children;
}

std::vector<HWND> descendantsOf(HWND window)
{
    std::vector<HWND> windows;
    EnumChildWindows(window, collect, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

HWND childWithId(HWND window, int id)
{
    const std::vector<HWND> children = childrenOf(window);
    const auto found = std::find_if(children.begin(), children.end(),
                                    [id](HWND child) { return GetDlgCtrlID(child) == id; });
    return found == children.end() ? nullptr : *found;
}

HWND descendantWithId(HWND window, int id, const std::string& windowClass)
{
    for (const HWND child : descendantsOf(window)) {
        if (GetDlgCtrlID(child) == id && lstrcmpiA(classOf(child).c_str(), windowClass.c_str()) == 0) {
            return child;
        }
    }
    return nullptr;
}

HWND dialogCaptioned(const std::wstring& caption)
{
    for (const HWND window : topLevelWindows()) {
        if (classOf(window) == "#32770" && textOf(window) == caption) {
            return window;
        }
    }
    return nullptr;
}

std::vector<std::wstring> labelsOf(HWND dialog)
{
    std::vector<std::wstring> labels;
    for (const HWND child : descendantsOf(dialog)) {
        if (classOf(child) == "Static" && IsWindowVisible(child)) {
            labels.push_back(textOf(child));
        }
    }
    std::erase_if(labels, [](const std::wstring& label) { return label.empty(); });
    std::stable_sort(labels.begin(), labels.end(),
                     [](const auto& left, const auto& right) { return left.size() > right.size(); });
    return labels;
}

std::optional<std::vector<std::string>> rowOf(HWND list, int row, int columns)
{
    std::vector<std::string> texts;
    for (int column = 0; column < columns; ++column) {
        AnswerBuffer<ItemAnswer> buffer;
        buffer->item.iSubItem = column;
        buffer->item.pszText = buffer->text.data();
        buffer->item.cchTextMax = static_cast<int>(buffer->text.size());
        if (!ask(list, LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&buffer->item))) {
            buffer.abandon();
            return std::nullopt;
        }
        // A virtual list may point elsewhere instead of copying.
        texts.emplace_back(buffer->item.pszText ? buffer->item.pszText : "");
    }
    return texts;
}

int rowCount(HWND list)
{
    return static_cast<int>(ask(list, LVM_GETITEMCOUNT).value_or(-1));
}

int columnCount(HWND list)
{
    const auto header = ask(list, LVM_GETHEADER);
    return header ? static_cast<int>(
                        ask(reinterpret_cast<HWND>(static_cast<LONG_PTR>(*header)), HDM_GETITEMCOUNT)
                            .value_or(0))
                  : 0;
}

std::vector<std::string> describeScreen()
{
    std::vector<std::string> lines;
    for (const HWND window : topLevelWindows()) {
        const std::wstring caption = textOf(window);
        if (caption.empty() && classOf(window) != "#32770") {
            continue;
        }
        std::string line = "window '" + toUtf8(caption) + "' (" + classOf(window) +
                           (IsWindowEnabled(window) ? "" : ", disabled") + ")";
        if (classOf(window) == "#32770") {
            for (const std::wstring& label : labelsOf(window)) {
                line += "; '" + onOneLine(toUtf8(label)) + "'";
            }
        }
        lines.push_back(line);
    }
    return lines;
}

} // namespace tessera::jukebox
