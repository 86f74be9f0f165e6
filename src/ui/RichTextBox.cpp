#include "ui/RichTextBox.h"

#include "base/Text.h"
#include "system/Module.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <richedit.h>
#include <string_view>

namespace tessera {

namespace {

constexpr DWORD kStyle =
    WS_CHILD | WS_VSCROLL | WS_TABSTOP | WS_CLIPSIBLINGS | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL;
constexpr int kMargin = 4;                  // at 96 dpi
constexpr std::size_t kMostShown = 100'000; // characters
constexpr std::size_t kLongestLine = 2000;  // characters, where longer ones are laid out for minutes
constexpr LPARAM kMostText = 2 * kMostShown;

HWND createBoxWindow(const char* windowClass, HWND parent, UINT id)
{
    return CreateWindowExA(0, windowClass, "", kStyle, 0, 0, 0, 0, parent,
                           reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), moduleInstance(), nullptr);
}

// The bytes of the text that make a line: up to a line's end, or to the longest that the control can do
// with; then the last blank ends it, if there is one.
std::size_t lineLength(std::string_view text, std::size_t longest)
{
    std::size_t blank = 0;
    std::size_t end = 0;
    while (end < text.size() && text[end] != '\n' && text[end] != '\r') {
        if (end >= longest)
            return blank > 0 ? blank : end;
        const std::size_t size = characterLength(text, end);
        end += size;
        blank = text[end - size] == ' ' ? end : blank;
    }
    return end;
}

std::size_t lineEndLength(std::string_view text)
{
    return text.starts_with("\r\n") ? 2 : text.starts_with('\r') || text.starts_with('\n') ? 1 : 0;
}

// As the control gets it.
std::string asShown(std::string_view text, std::size_t longestLine)
{
    std::string result;
    for (std::size_t at = 0; at < text.size() && result.size() < kMostShown;) {
        const std::size_t length = lineLength(text.substr(at), longestLine);
        result.append(text.substr(at, length));
        at += length;
        result.append(at < text.size() ? "\r\n" : "");
        at += lineEndLength(text.substr(at));
        result.append(result.size() < kMostShown ? "" : "...");
    }
    std::ranges::replace(result, '\0', ' ');
    return result;
}

DWORD CALLBACK streamText(DWORD_PTR cookie, BYTE* buffer, LONG size, LONG* read)
{
    auto& left = *reinterpret_cast<std::string_view*>(cookie);
    const std::size_t length = std::min(left.size(), static_cast<std::size_t>(std::max(size, 0L)));
    std::memcpy(buffer, left.data(), length);
    left.remove_prefix(length);
    *read = static_cast<LONG>(length);
    return 0;
}

} // namespace

RichTextBox::~RichTextBox()
{
    if (handle())
        m_box.destroy();
}

std::span<const MapEntry<RichTextBox>> RichTextBox::messageMap()
{
    static constexpr std::array<MapEntry<RichTextBox>, 1> kMap{{
        {WM_GETDLGCODE, &RichTextBox::onDialogCode},
    }};
    return kMap;
}

// The Tab key leaves the box: there is nothing to type.
Handled RichTextBox::onDialogCode(const Message&)
{
    return DLGC_WANTARROWS | DLGC_WANTCHARS;
}

bool RichTextBox::createRich(HWND parent, UINT id)
{
    m_library = ModuleHandle(loadSystemLibrary("riched20.dll"));
    if (m_library)
        m_box.attach(createBoxWindow("RichEdit20A", parent, id));
    return static_cast<bool>(m_box);
}

bool RichTextBox::createBox(HWND parent, UINT id)
{
    m_rich = createRich(parent, id);
    if (!m_rich)
        m_box.attach(createBoxWindow("EDIT", parent, id));
    m_box.send(m_rich ? EM_EXLIMITTEXT : EM_SETLIMITTEXT, m_rich ? 0 : kMostText, m_rich ? kMostText : 0);
    settingsChanged();
    return m_box && attach(m_box.handle());
}

void RichTextBox::settingsChanged()
{
    m_box.setFont(m_commands.listFont());
    if (!m_rich)
        return;
    m_box.send(EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(m_commands.treeBackground()));
    CHARFORMATA colour{};
    colour.cbSize = sizeof colour;
    colour.dwMask = CFM_COLOR;
    colour.crTextColor = m_commands.treeText();
    m_box.send(EM_SETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&colour));
    m_box.send(EM_SETCHARFORMAT, SCF_ALL, reinterpret_cast<LPARAM>(&colour));
}

void RichTextBox::move(const RECT& place) const
{
    const int margin = scaled(kMargin, m_box.handle());
    m_box.move({std::min(place.left + margin, place.right), std::min(place.top + margin, place.bottom),
                place.right, place.bottom});
}

// Streamed in: setting a window's text would take one that looks like rich text for it.
void RichTextBox::setText(const std::string& text)
{
    if (text == m_text)
        return;
    m_text = text;
    const std::string lines = asShown(text, m_rich && systemIsWine() ? kLongestLine : kMostShown);
    if (m_rich) {
        std::string_view left = lines;
        EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&left), 0, streamText};
        m_box.send(EM_STREAMIN, SF_TEXT, reinterpret_cast<LPARAM>(&stream));
    } else {
        m_box.setText(lines);
    }
    m_box.send(EM_SETSEL, 0, 0);
    m_box.send(WM_VSCROLL, SB_TOP);
}

} // namespace tessera
