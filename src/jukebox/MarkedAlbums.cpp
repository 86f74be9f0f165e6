#include "jukebox/MarkedAlbums.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tessera::jukebox {

namespace {

constexpr std::string_view kDatabase = "database";
constexpr std::size_t kFields = 7;

constexpr std::string MarkedAlbum::*kTexts[kFields - 1] = {&MarkedAlbum::title,     &MarkedAlbum::artist,
                                                           &MarkedAlbum::path,      &MarkedAlbum::rank,
                                                           &MarkedAlbum::favourite, &MarkedAlbum::isNew};

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> pieces;
    for (std::size_t end = 0; end != std::string_view::npos;
         text.remove_prefix(std::min(end + 1, text.size()))) {
        end = text.find(separator);
        pieces.push_back(text.substr(0, end));
    }
    return pieces;
}

// A text holds its line and its place in it.
std::string onePiece(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
    return text;
}

std::optional<MarkedAlbum> parseAlbum(std::string_view line)
{
    const std::vector<std::string_view> fields = split(line, '\t');
    MarkedAlbum album;
    if (fields.size() != kFields ||
        std::from_chars(fields[0].data(), fields[0].data() + fields[0].size(), album.row).ec != std::errc()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < std::size(kTexts); ++i) {
        album.*kTexts[i] = fields[i + 1];
    }
    return album;
}

} // namespace

bool MarkedAlbum::isSameAlbum(const MarkedAlbum& other) const
{
    return onePiece(title) == onePiece(other.title) && onePiece(artist) == onePiece(other.artist) &&
           onePiece(path) == onePiece(other.path);
}

bool MarkedAlbum::hasSameMarks(const MarkedAlbum& other) const
{
    return rank == other.rank && favourite == other.favourite && isNew == other.isNew;
}

std::string marksText(const MarkedAlbum& album)
{
    std::string text;
    const auto add = [&](const std::string& mark) { text += (text.empty() ? "" : ", ") + mark; };
    if (!album.rank.empty()) {
        add("rank " + album.rank);
    }
    if (!album.favourite.empty()) {
        add("favourite");
    }
    if (!album.isNew.empty()) {
        add("new " + album.isNew);
    }
    return text.empty() ? "no marks" : text;
}

std::string textOfMarks(const MarksFile& marks)
{
    std::string text = std::string(kDatabase) + '\t' + onePiece(marks.database) + '\n';
    for (const MarkedAlbum& album : marks.albums) {
        text += std::to_string(album.row);
        for (const auto field : kTexts) {
            text += '\t' + onePiece(album.*field);
        }
        text += '\n';
    }
    return text;
}

std::optional<MarksFile> parseMarks(std::string_view text)
{
    std::vector<std::string_view> lines = split(text, '\n');
    const std::vector<std::string_view> head = split(lines.front(), '\t');
    if (head.size() != 2 || head[0] != kDatabase || !lines.back().empty()) {
        return std::nullopt; // cut off
    }
    MarksFile marks{std::string(head[1]), {}};
    for (std::size_t i = 1; i + 1 < lines.size(); ++i) {
        std::optional<MarkedAlbum> album = parseAlbum(lines[i]);
        if (!album) {
            return std::nullopt;
        }
        marks.albums.push_back(std::move(*album));
    }
    return marks;
}

} // namespace tessera::jukebox
