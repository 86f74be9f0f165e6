#include "ui/AlbumCaptions.h"

#include "tokens/TokenParser.h"

#include <algorithm>

namespace tessera {

namespace {

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
        lines.push_back(fitLine(dc, takeLine(left), m_width));
    while (!left.empty() && lines.size() < m_mostLines);
    return lines;
}

} // namespace tessera
