#pragma once

#include "ui/AlbumCatalogue.h"

#include <set>
#include <unordered_map>

namespace tessera {

// Names that groups of albums may show. Names with the same key share a group, which shows the name
// that it was made with.
class NameTable {
public:
    struct Name {
        std::string text;
        std::string key;
        std::size_t keyHash;
        std::uint32_t group; // from 0, one for each key
        std::uint32_t order; // among all names as a tree view sorts texts; the same for equal ones
    };

    void clear();
    std::uint32_t add(std::string text, std::string key); // answers the name's number
    void sort();                                          // after the last one was added
    const Name& operator[](std::uint32_t name) const { return m_names[name]; }
    std::uint32_t groupCount() const { return static_cast<std::uint32_t>(m_groups.size()); }

private:
    std::vector<Name> m_names;
    std::unordered_map<std::string, std::uint32_t> m_groups; // by key
};

// What the trees show of a library's albums beside their titles, made once for all of them.
struct AlbumTreeNames {
    NameTable artists; // a name for each artist, as it is filed
    NameTable genres;
    NameTable ranks;                     // with a prefix of two characters that sorts them
    std::vector<std::uint32_t> artistOf; // name of each album, by its place in the catalogue
    std::vector<std::uint32_t> genreOf;
    std::vector<std::uint32_t> rankOf;

    void fill(const AlbumCatalogue& catalogue, bool moveThe, const std::set<std::string>& firstNames);
    // The ranks as they are now. Names that are there keep their numbers.
    void fillRanks(const AlbumCatalogue& catalogue);
    void clear();

private:
    std::unordered_map<std::int32_t, std::uint32_t> m_rankNames;
};

} // namespace tessera
