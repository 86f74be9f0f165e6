#pragma once

#include "base/Files.h"
#include "library/Marks.h"

#include <atomic>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tessera {

// Numbers of albums that hold a mark of each kind.
struct MarkCounts {
    std::size_t ranks = 0;
    std::size_t favourites = 0;
    std::size_t news = 0;

    bool any() const { return ranks + favourites + news > 0; }
    void add(const Marks& marks);
};

// What taking the marks of another database would do.
struct MarksPlan {
    struct Change {
        Album* album = nullptr;
        Marks marks;
    };

    std::string fileName; // of the other database
    std::string failure;  // the message that says why the other database was refused; empty: it was read
    MarkCounts found;     // in the other database
    MarkCounts matched;   // of these, on albums that have a partner in the library
    std::vector<Change> changes; // ascending album ids; without albums that have all the marks already
};

// Reads the other database, shows nothing and changes nothing. An album's partner has the same title,
// artist and path, the case aside, else shares the most files with it; each has one partner at most.
// What is marked there takes the place of the same kind of mark here, the other kinds stay.
MarksPlan planMarks(const std::string& fileName, const Library& library, FileSystem& files);

// Number of albums in a database that hold any mark; none when it is unsound. Cancelled passes through.
std::optional<std::size_t> markedAlbums(ByteView bytes, const std::atomic<bool>& terminating);

// What became of the albums marked in an earlier database.
struct LivingMarks {
    std::size_t living = 0; // their marks are in the later one: of the same kinds, whatever the rank is now,
                            // and new ones also by their date
    std::size_t absent = 0; // the later one does not have the album
};

// Both are sound. Cancelled passes through.
LivingMarks livingMarks(ByteView later, ByteView earlier, const std::atomic<bool>& terminating);

} // namespace tessera
