#include "ui/AlbumCatalogue.h"

#include "base/CodePage.h"
#include "base/Text.h"
#include "ui/AlbumColumns.h"

#include <algorithm>
#include <numeric>
#include <string_view>

namespace tessera {

namespace {

constexpr int kAlbumColumn = 0;
constexpr int kArtistColumn = 1;
constexpr int kGenreColumn = 7;

// Whether a match begins where a character does.
bool beginsCharacter(std::string_view text, std::size_t position)
{
    std::size_t at = 0;
    while (at < position)
        at += characterLength(text, at);
    return at == position;
}

bool holds(const std::string& text, const std::string& criteria)
{
    std::size_t at = text.find(criteria);
    if (!codePage().doubleByte)
        return at != std::string::npos;
    while (at != std::string::npos && !beginsCharacter(text, at))
        at = text.find(criteria, at + 1);
    return at != std::string::npos;
}

constexpr int kDigits = 3;
constexpr int kDigitBits = 11;
constexpr std::size_t kDigitValues = std::size_t{1} << kDigitBits;

std::size_t digitOf(std::uint32_t key, int digit)
{
    return key >> (digit * kDigitBits) & (kDigitValues - 1);
}

// How many keys have each value of each digit.
using DigitCounts = std::array<std::array<std::uint32_t, kDigitValues>, kDigits>;

DigitCounts countDigits(const std::vector<AlbumCatalogue::KeyedPlace>& items)
{
    DigitCounts counts{};
    for (const auto& item : items) {
        for (int digit = 0; digit < kDigits; ++digit)
            ++counts[static_cast<std::size_t>(digit)][digitOf(item.key, digit)];
    }
    return counts;
}

// Least digit first; what has the same digit keeps its order. A digit that all share is left out.
void radixSort(std::vector<AlbumCatalogue::KeyedPlace>& items, std::vector<AlbumCatalogue::KeyedPlace>& spare)
{
    if (items.empty())
        return;
    DigitCounts counts = countDigits(items);
    spare.resize(items.size());
    for (int digit = 0; digit < kDigits; ++digit) {
        auto& starts = counts[static_cast<std::size_t>(digit)];
        if (starts[digitOf(items.front().key, digit)] == items.size())
            continue;
        std::exclusive_scan(starts.begin(), starts.end(), starts.begin(), 0U);
        for (const auto& item : items)
            spare[starts[digitOf(item.key, digit)]++] = item;
        items.swap(spare);
    }
}

// Numbers that compare as the signed ones do.
std::uint32_t ordered(std::int32_t value)
{
    return static_cast<std::uint32_t>(value) ^ 0x80000000U;
}

} // namespace

void AlbumCatalogue::fill(const Library& library)
{
    clear();
    m_entries.reserve(library.albums.size());
    for (const auto& [id, album] : library.albums) {
        m_entries.push_back({album.get(), {}, {}, {}});
        fillTexts(m_entries.back());
    }
}

void AlbumCatalogue::clear()
{
    m_entries.clear();
    for (auto& keys : m_keys)
        keys.clear();
}

void AlbumCatalogue::fillTexts(Entry& entry)
{
    entry.title = toLower(entry.album->displayTitle);
    entry.artist = entry.album->artist ? toLower(entry.album->artist->displayName) : std::string();
    entry.genre = toLower(entry.album->genre);
}

void AlbumCatalogue::marksChanged()
{
    for (const std::size_t column : {10U, 11U, 12U}) // rank, favourite, new
        m_keys[column].clear();
}

std::uint32_t AlbumCatalogue::find(std::int32_t albumId) const
{
    const auto found =
        std::ranges::lower_bound(m_entries, albumId, {}, [](const Entry& entry) { return entry.album->id; });
    const bool there = found != m_entries.end() && found->album->id == albumId;
    return static_cast<std::uint32_t>((there ? found : m_entries.end()) - m_entries.begin());
}

void AlbumCatalogue::search(const std::string& criteria, SearchFields fields, AlbumPlaces& found) const
{
    if (criteria.empty()) {
        found.resize(m_entries.size());
        std::iota(found.begin(), found.end(), 0U);
        return;
    }
    const std::string lower = toLower(criteria);
    found.clear();
    for (std::uint32_t place = 0; place < m_entries.size(); ++place) {
        const Entry& entry = m_entries[place];
        if ((fields.artist && holds(entry.artist, lower)) || (fields.album && holds(entry.title, lower)) ||
            (fields.genre && holds(entry.genre, lower)))
            found.push_back(place);
    }
}

void AlbumCatalogue::sort(AlbumPlaces& places, int column, bool ascending)
{
    const std::vector<std::uint32_t>& columnKeys = keys(column);
    const std::uint32_t flip = ascending ? 0 : 0xFFFFFFFFU;
    m_order.resize(places.size());
    std::ranges::transform(places, m_order.begin(), [&](std::uint32_t place) {
        return KeyedPlace{columnKeys[place] ^ flip, place};
    });
    radixSort(m_order, m_spare);
    std::ranges::transform(m_order, places.begin(), &KeyedPlace::place);
}

const std::vector<std::uint32_t>& AlbumCatalogue::keys(int column)
{
    std::vector<std::uint32_t>& columnKeys = m_keys[static_cast<std::size_t>(column)];
    if (columnKeys.empty())
        makeKeys(column, columnKeys);
    return columnKeys;
}

void AlbumCatalogue::makeKeys(int column, std::vector<std::uint32_t>& keys) const
{
    const auto number = albumColumns()[static_cast<std::size_t>(column)].number;
    if (!number)
        return makeTextKeys(column, keys);
    keys.resize(m_entries.size());
    std::ranges::transform(m_entries, keys.begin(),
                           [&](const Entry& entry) { return ordered(number(*entry.album)); });
}

// The text that a column sorts by, in lower case: kept already, or made in `made`.
std::string_view AlbumCatalogue::sortText(const Entry& entry, int column, std::string& made)
{
    switch (column) {
    case kAlbumColumn:
        return entry.title;
    case kArtistColumn:
        return entry.artist;
    case kGenreColumn:
        return entry.genre;
    default:
        made = toLower(columnTexts(*entry.album)[static_cast<std::size_t>(column)]);
        return made;
    }
}

// The rank of each album's text among all; equal texts share it.
void AlbumCatalogue::makeTextKeys(int column, std::vector<std::uint32_t>& keys) const
{
    std::vector<std::string> made(m_entries.size());
    std::vector<std::pair<std::string_view, std::uint32_t>> texts(m_entries.size());
    for (std::uint32_t place = 0; place < m_entries.size(); ++place)
        texts[place] = {sortText(m_entries[place], column, made[place]), place};
    std::ranges::sort(texts);
    keys.resize(m_entries.size());
    std::uint32_t rank = 0;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        rank += i > 0 && texts[i].first != texts[i - 1].first ? 1 : 0;
        keys[texts[i].second] = rank;
    }
}

} // namespace tessera
