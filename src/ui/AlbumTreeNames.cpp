#include "ui/AlbumTreeNames.h"

#include "base/Text.h"
#include "library/ArtistNames.h"

#include <algorithm>
#include <numeric>
#include <windows.h>

namespace tessera {

namespace {

// Bytes that compare as tree views compare texts: ignoring case, by the user's language.
std::string sortKey(const std::string& text)
{
    const std::u16string wide = toWide(text);
    const auto* const source = reinterpret_cast<const wchar_t*>(wide.data());
    const int units = static_cast<int>(wide.size());
    constexpr DWORD kWhat = LCMAP_SORTKEY | NORM_IGNORECASE;
    std::string key(wide.size() * 6 + 16, '\0');
    const auto make = [&] {
        return LCMapStringW(LOCALE_USER_DEFAULT, kWhat, source, units, reinterpret_cast<wchar_t*>(key.data()),
                            static_cast<int>(key.size()));
    };
    if (units == 0)
        return {};
    int length = make();
    if (length == 0 && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        key.resize(
            static_cast<std::size_t>(LCMapStringW(LOCALE_USER_DEFAULT, kWhat, source, units, nullptr, 0)));
        length = make();
    }
    key.resize(static_cast<std::size_t>(std::max(length, 0)));
    return key;
}

std::string rankSortText(std::int32_t rank)
{
    return rank > 0 ? format("%02ld%ld", static_cast<long>(rank), static_cast<long>(rank)) : "99(Unranked)";
}

} // namespace

void NameTable::clear()
{
    m_names.clear();
    m_groups.clear();
}

std::uint32_t NameTable::add(std::string text, std::string key)
{
    const std::uint32_t group = m_groups.try_emplace(key, groupCount()).first->second;
    const std::size_t hash = std::hash<std::string>{}(key);
    m_names.push_back({std::move(text), std::move(key), hash, group, 0});
    return static_cast<std::uint32_t>(m_names.size() - 1);
}

void NameTable::sort()
{
    std::vector<std::pair<std::string, std::uint32_t>> keys;
    keys.reserve(m_names.size());
    for (const Name& name : m_names)
        keys.emplace_back(sortKey(name.text), static_cast<std::uint32_t>(keys.size()));
    std::ranges::sort(keys);
    std::uint32_t order = 0;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        order += i > 0 && keys[i].first != keys[i - 1].first ? 1 : 0;
        m_names[keys[i].second].order = order;
    }
}

void AlbumTreeNames::clear()
{
    for (NameTable* const table : {&artists, &genres, &ranks})
        table->clear();
    for (auto* const names : {&artistOf, &genreOf, &rankOf})
        names->clear();
    m_rankNames.clear();
}

void AlbumTreeNames::fill(const AlbumCatalogue& catalogue, bool moveThe,
                          const std::set<std::string>& firstNames)
{
    clear();
    std::unordered_map<const Artist*, std::uint32_t> knownArtists;
    std::unordered_map<std::string_view, std::uint32_t> knownGenres;
    for (std::uint32_t place = 0; place < catalogue.size(); ++place) {
        const Album& album = catalogue.album(place);
        const auto [artist, newArtist] = knownArtists.try_emplace(album.artist);
        if (newArtist) {
            std::string name = album.artist ? filedArtistName(album.artist->displayName, moveThe, firstNames)
                                            : std::string();
            std::string key = toUpper(name);
            artist->second = artists.add(std::move(name), std::move(key));
        }
        artistOf.push_back(artist->second);
        const auto [genre, newGenre] = knownGenres.try_emplace(album.genre);
        if (newGenre)
            genre->second = genres.add(album.genre, toUpper(album.genre));
        genreOf.push_back(genre->second);
    }
    artists.sort();
    genres.sort();
    fillRanks(catalogue);
}

void AlbumTreeNames::fillRanks(const AlbumCatalogue& catalogue)
{
    rankOf.clear();
    for (std::uint32_t place = 0; place < catalogue.size(); ++place) {
        const std::int32_t rank = catalogue.album(place).rank;
        const auto [name, isNew] = m_rankNames.try_emplace(rank);
        if (isNew)
            name->second = ranks.add(rankSortText(rank), format("%ld", static_cast<long>(rank)));
        rankOf.push_back(name->second);
    }
    ranks.sort();
}

} // namespace tessera
