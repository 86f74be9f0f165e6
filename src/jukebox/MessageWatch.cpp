#include "jukebox/MessageWatch.h"

#include "jukebox/Screen.h"
#include "jukebox/WideText.h"

#include <algorithm>

namespace tessera::jukebox {

namespace {

constexpr DWORD kLookEveryMs = 100;

} // namespace

bool isMessageBox(HWND window, const std::wstring& caption)
{
    if (classOf(window) != "#32770" || textOf(window) != caption) {
        return false;
    }
    const std::vector<HWND> children = childrenOf(window);
    return std::all_of(children.begin(), children.end(), [](HWND child) {
        const std::string kind = classOf(child);
        return kind == "Button" || kind == "Static";
    });
}

MessageWatch::MessageWatch(Report& report, std::wstring caption)
    : m_report(report), m_caption(std::move(caption)), m_thread("message watch", [this] {
          do {
              look();
          } while (!m_end.wait(kLookEveryMs));
      })
{
}

MessageWatch::~MessageWatch()
{
    m_end.set();
    m_thread.join();
}

void MessageWatch::look()
{
    std::erase_if(m_seen, [](HWND box) { return !IsWindow(box); });
    for (const HWND window : topLevelWindows()) {
        if (!isMessageBox(window, m_caption)) {
            continue;
        }
        if (std::find(m_seen.begin(), m_seen.end(), window) == m_seen.end()) {
            const std::vector<std::wstring> labels = labelsOf(window);
            m_report.message(labels.empty() ? "" : toUtf8(labels.front()));
            m_seen.push_back(window);
            ++m_count;
        }
        answer(window);
    }
}

void MessageWatch::answer(HWND box)
{
    for (const int button : {IDNO, IDOK, IDCANCEL}) {
        if (GetDlgItem(box, button)) {
            PostMessageA(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                         reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
            return;
        }
    }
}

} // namespace tessera::jukebox
