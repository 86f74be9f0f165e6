#include "jukebox/Screen.h"

#include "jukebox/Report.h"
#include "jukebox/WideText.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

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

struct TitleAnswer {
    HDITEMA item{};
    std::array<char, kTextUnits> text{};
};

struct NodeAnswer {
    TVITEMA item{};
    std::array<char, kTextUnits> text{};
};

BOOL CALLBACK collect(HWND window, LPARAM list) noexcept
{
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

HWND headerOf(HWND list)
{
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(ask(list, LVM_GETHEADER).value_or(0)));
}

// Row -1 is all of them.
void setRowState(HWND list, int row, UINT state)
{
    AnswerBuffer<LVITEMA> buffer;
    buffer->state = state;
    buffer->stateMask = LVIS_SELECTED | (row >= 0 ? LVIS_FOCUSED : 0u);
    if (!ask(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&*buffer))) {
        buffer.abandon();
    }
}

HTREEITEM nextNode(HWND tree, UINT relation, HTREEITEM node)
{
    const auto next = ask(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(node));
    return reinterpret_cast<HTREEITEM>(static_cast<LONG_PTR>(next.value_or(0)));
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
    const HWND header = headerOf(list);
    return header ? static_cast<int>(ask(header, HDM_GETITEMCOUNT).value_or(0)) : 0;
}

std::vector<std::string> columnTitles(HWND list)
{
    std::vector<std::string> titles;
    const HWND header = headerOf(list);
    for (int column = 0; column < columnCount(list); ++column) {
        AnswerBuffer<TitleAnswer> buffer;
        buffer->item.mask = HDI_TEXT;
        buffer->item.pszText = buffer->text.data();
        buffer->item.cchTextMax = static_cast<int>(buffer->text.size());
        if (!ask(header, HDM_GETITEMA, static_cast<WPARAM>(column),
                 reinterpret_cast<LPARAM>(&buffer->item))) {
            buffer.abandon();
            return {};
        }
        titles.emplace_back(buffer->text.data());
    }
    return titles;
}

void selectRows(HWND list, std::span<const int> rows)
{
    setRowState(list, -1, 0);
    const int count = rowCount(list);
    bool first = true;
    for (const int row : rows) {
        if (row < 0 || row >= count) {
            continue;
        }
        setRowState(list, row, LVIS_SELECTED | (first ? LVIS_FOCUSED : 0u));
        if (std::exchange(first, false)) {
            (void)ask(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
        }
    }
}

std::vector<HTREEITEM> nodesBelow(HWND tree, HTREEITEM node, std::size_t most)
{
    std::vector<HTREEITEM> nodes;
    HTREEITEM next = nextNode(tree, node ? TVGN_CHILD : TVGN_ROOT, node);
    while (next && nodes.size() < most) {
        nodes.push_back(next);
        next = nextNode(tree, TVGN_NEXT, next);
    }
    return nodes;
}

std::string nodeText(HWND tree, HTREEITEM node)
{
    AnswerBuffer<NodeAnswer> buffer;
    buffer->item.mask = TVIF_TEXT;
    buffer->item.hItem = node;
    buffer->item.pszText = buffer->text.data();
    buffer->item.cchTextMax = static_cast<int>(buffer->text.size());
    if (!ask(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&buffer->item))) {
        buffer.abandon();
        return {};
    }
    return buffer->text.data();
}

void chooseEntry(HWND combo, int entry)
{
    if (!IsWindowVisible(combo)) {
        return;
    }
    (void)ask(combo, CB_SETCURSEL, static_cast<WPARAM>(entry));
    (void)ask(GetParent(combo), WM_COMMAND, MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(combo)), CBN_SELCHANGE),
              reinterpret_cast<LPARAM>(combo));
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
