#include "ui/AlbumCaptions.h"

#include "base/Text.h"
#include "tokens/TokenParser.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr const char* kEllipsis = "...";

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

std::size_t fittingBytes(std::string_view text, HDC dc, int width)
{
    int fits = 0;
    SIZE size{};
    GetTextExtentExPointA(dc, text.data(), static_cast<int>(text.size()), std::max(width, 0), &fits, nullptr,
                          &size);
    return static_cast<std::size_t>(fits);
}

// Whole characters only, and no blank before the ellipsis.
std::string_view wholeCharacters(std::string_view text, std::size_t bytes)
{
    std::size_t end = 0;
    while (end < bytes && end + characterLength(text, end) <= bytes)
        end += characterLength(text, end);
    return trimRight(text.substr(0, end));
}

AlbumCaptions::Line fitted(std::string_view text, HDC dc, int width)
{
    const int whole = textSize(dc, std::string(text)).cx;
    if (whole <= width)
        return {std::string(text), whole};
    const int rest = width - textSize(dc, kEllipsis).cx;
    std::string cut(wholeCharacters(text, fittingBytes(text, dc, rest)));
    cut += kEllipsis;
    return {cut, static_cast<int>(textSize(dc, cut).cx)};
}

} // namespace

void AlbumCaptions::reset(std::string pattern, int width, int mostLines, std::size_t albums)
{
    m_pattern = std::move(pattern);
    m_width = width;
    m_mostLines = static_cast<std::size_t>(std::max(mostLines, 1));
    m_captions.clear();
    m_captions.resize(albums);
}

const AlbumCaptions::Lines& AlbumCaptions::lines(std::size_t place, const Album& album, HDC dc)
{
    Lines& caption = m_captions[place];
    if (caption.empty())
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
