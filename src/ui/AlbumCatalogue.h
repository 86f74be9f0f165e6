#pragma once

#include "library/Records.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessera {

// Albums by their places in the database's order.
using AlbumPlaces = std::vector<std::uint32_t>;

// Which fields a search looks at.
struct SearchFields {
    bool artist = true;
    bool album = true;
    bool genre = true;
};

// What lists need to know of every album again and again, made once for a loaded library: its
// place, its lower-cased texts and its sort keys. Must be emptied before the library is.
class AlbumCatalogue {
public:
    struct KeyedPlace {
        std::uint32_t key;
        std::uint32_t place;
    };

    void fill(const Library& library);
    void clear();
    // Marks of some albums are others: sorts by them are made anew.
    void marksChanged();

    std::size_t size() const { return m_entries.size(); }
    Album& album(std::uint32_t place) const { return *m_entries[place].album; }
    // The place of an album by its id; size() when there is none.
    std::uint32_t find(std::int32_t albumId) const;

    // The places of all albums that have the criteria in one of the fields, in database order.
    // No criteria: every album.
    void search(const std::string& criteria, SearchFields fields, AlbumPlaces& found) const;

    // Whether the album's title, or its artist's name, begins with a lower-cased text.
    bool begins(std::uint32_t place, bool artist, const std::string& lower) const
    {
        const Entry& entry = m_entries[place];
        return (artist ? entry.artist : entry.title).starts_with(lower);
    }

    // Sorts by a column. Albums that tie keep their order.
    void sort(AlbumPlaces& places, int column, bool ascending);

private:
    struct Entry {
        Album* album;
        std::string title; // these three in lower case
        std::string artist;
        std::string genre;
    };

    static void fillTexts(Entry& entry);
    static std::string_view sortText(const Entry& entry, int column, std::string& made);
    const std::vector<std::uint32_t>& keys(int column);
    void makeKeys(int column, std::vector<std::uint32_t>& keys) const;
    void makeTextKeys(int column, std::vector<std::uint32_t>& keys) const;

    std::vector<Entry> m_entries;
    std::array<std::vector<std::uint32_t>, kColumnCount> m_keys; // empty: not made yet
    std::vector<KeyedPlace> m_order;                             // these two are kept for their memory
    std::vector<KeyedPlace> m_spare;
};

} // namespace tessera
