#include "FakeCommands.h"

namespace tessera {

namespace {

HFONT makeFont(const char* face, int height, int weight)
{
    return CreateFontA(height, 0, 0, 0, weight, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, face);
}

} // namespace

FakeCommands::FakeCommands()
    : m_hFontCombo(makeFont("Tahoma", 14, 0)),
      m_hFontList(makeFont("Tahoma", -11, 400)),
      m_hFontBold(makeFont("Tahoma", -11, 700))
{
}

FakeCommands::~FakeCommands()
{
    for (const HFONT font : {m_hFontCombo, m_hFontList, m_hFontBold})
        DeleteObject(font);
}

void FakeCommands::setCurrentView(ListStyle style)
{
    overviewSettings.listviewStyle = static_cast<int>(style);
    calls.push_back("view " + std::to_string(static_cast<int>(style)));
}

void FakeCommands::playAlbums(std::span<Album* const> albums, bool append)
{
    std::string call = append ? "append" : "play";
    for (const Album* const album : albums)
        call += " " + album->displayTitle;
    calls.push_back(call);
}

void FakeCommands::setListFont(int height)
{
    DeleteObject(std::exchange(m_hFontList, makeFont("Tahoma", height, 400)));
}

void FakeCommands::playAlbumFrom(const Album& album, int start)
{
    calls.push_back("play " + album.displayTitle + " from " + std::to_string(start));
}

void FakeCommands::marksChanged(std::span<Album* const> changed)
{
    marked.assign(changed.begin(), changed.end());
    m_catalogue.marksChanged();
}

void FakeCommands::trackCursor(POINT, bool moved)
{
    cursorMoved.push_back(moved);
}

Library& FakeCommands::library()
{
    ++libraryLooks;
    if (m_catalogue.size() != records.albums.size())
        m_catalogue.fill(records);
    return records;
}

const TokenParser& FakeCommands::tokens() const
{
    return m_tokens;
}

int FakeCommands::showMessage(UINT, const std::string& text)
{
    messages.push_back(text);
    return IDOK;
}

HWND makeParentWindow(int width, int height)
{
    return CreateWindowExA(WS_EX_CONTROLPARENT, "STATIC", "Tessera", WS_POPUP | WS_CLIPCHILDREN, 0, 0, width,
                           height, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
}

void pumpMessages(DWORD milliseconds)
{
    const DWORD start = GetTickCount();
    MSG message;
    do {
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    } while (GetTickCount() - start < milliseconds);
}

} // namespace tessera
