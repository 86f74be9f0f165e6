#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessera::jukebox {

// An album and its marks as the album list shows them. Texts are UTF-8.
struct MarkedAlbum {
    int row = 0; // in the list of the whole library
    std::string title;
    std::string artist;
    std::string path;
    std::string rank;      // empty: not ranked
    std::string favourite; // empty: no
    std::string isNew;     // the date; empty: no

    bool isSameAlbum(const MarkedAlbum& other) const;
    bool hasSameMarks(const MarkedAlbum& other) const;
};

// "rank 7, favourite, new 24 November 2026", "no marks".
std::string marksText(const MarkedAlbum& album);

// What a walk leaves for the next start: a line "database", a tab and the database that was walked
// through, then a line per album, its texts between tabs.
struct MarksFile {
    std::string database;
    std::vector<MarkedAlbum> albums;
};
std::string textOfMarks(const MarksFile& marks);
// None when the text is not one of these.
std::optional<MarksFile> parseMarks(std::string_view text);

} // namespace tessera::jukebox
