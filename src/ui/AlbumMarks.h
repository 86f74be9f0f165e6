#pragma once

#include "library/Marks.h"

#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>
#include <windows.h>

namespace tessera {

// What one of the mark commands (albumCommand::kNewToday to kNoFavourite) makes of an album's
// marks; `date` is YYYYMMDD, for the commands that need one.
Marks markedBy(UINT command, Marks marks, std::int32_t date);
// Whether it changes which albums are new or favourites.
bool movesAlbums(UINT command);
// What it makes of albums, for people: "Rank 9".
std::string markName(UINT command);
// By the system's clock, in UTC.
std::int32_t today();

// The changes of marks that can be taken back, the last one first.
class MarkHistory {
public:
    struct Change {
        std::vector<std::pair<std::int32_t, Marks>> before; // by album id
        std::string name;
        bool movesAlbums;
    };

    // Before the albums are changed.
    void remember(std::span<Album* const> albums, std::string name, bool movesAlbums);
    // What takeLast would answer; null when there is none.
    const Change* last() const { return m_changes.empty() ? nullptr : &m_changes.back(); }
    // The last change, which is not remembered any more; none when there is none.
    std::optional<Change> takeLast();
    void clear() { m_changes.clear(); }

private:
    std::vector<Change> m_changes;
};

// "Rank 9, 2 albums".
std::string describeChange(const MarkHistory::Change& change);

} // namespace tessera
