#include "ui/AlbumCaptions.h"

#include "tokens/TokenParser.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr const wchar_t* kEllipsis = L"...";

// Takes the first line off the text, its line break too.
std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

int widthOf(std::wstring_view text, HDC dc)
{
    SIZE size{};
    GetTextExtentPoint32W(dc, text.data(), static_cast<int>(text.size()), &size);
    return static_cast<int>(size.cx);
}

// Whole characters only, and no blank before the ellipsis.
std::wstring_view fittingPart(std::wstring_view text, HDC dc, int width)
{
    int fits = 0;
    SIZE size{};
    GetTextExtentExPointW(dc, text.data(), static_cast<int>(text.size()), std::max(width, 0), &fits, nullptr,
                          &size);
    std::wstring_view part = text.substr(0, static_cast<std::size_t>(fits));
    if (!part.empty() && IS_HIGH_SURROGATE(part.back()))
        part.remove_suffix(1);
    while (part.ends_with(L' '))
        part.remove_suffix(1);
    return part;
}

AlbumCaptions::Line fitted(std::string_view text, HDC dc, int width)
{
    const WideText wide(text);
    const std::wstring_view whole(wide.data(), static_cast<std::size_t>(wide.size()));
    if (const int wholeWidth = widthOf(whole, dc); wholeWidth <= width)
        return {std::wstring(whole), wholeWidth};
    std::wstring cut(fittingPart(whole, dc, width - widthOf(kEllipsis, dc)));
    cut += kEllipsis;
    const int cutWidth = widthOf(cut, dc);
    return {std::move(cut), cutWidth};
}

} // namespace

void AlbumCaptions::reset(std::string pattern, int width, int mostLines, std::size_t albums)
{
    m_pattern = std::move(pattern);
    m_width = width;
    m_mostLines = static_cast<std::size_t>(std::max(mostLines, 0));
    m_captions.clear();
    m_captions.resize(albums);
}

const AlbumCaptions::Lines& AlbumCaptions::lines(std::size_t place, const Album& album, HDC dc)
{
    Lines& caption = m_captions[place];
    if (caption.empty() && m_mostLines > 0)
        caption = make(album, dc);
    return caption;
}

AlbumCaptions::Lines AlbumCaptions::make(const Album& album, HDC dc) const
{
    const std::string text = m_tokens.expandAlbum(m_pattern, album);
    Lines lines;
    std::string_view left = text;
    do
        lines.push_back(fitted(takeLine(left), dc, m_width));
    while (!left.empty() && lines.size() < m_mostLines);
    return lines;
}

} // namespace tessera
