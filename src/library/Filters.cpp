#include "library/Filters.h"

#include "library/Lines.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <unordered_set>

namespace tessera {

namespace {

constexpr std::string_view kSeparators = ", ;";

// Of one match; a name and a pattern of 255 characters each take 65,000 at most.
constexpr std::size_t kMostSteps = 1'000'000;

// The first pieces of a wildcard match; a piece is a whole character.
class Walk {
public:
    explicit Walk(std::string_view text, std::size_t position = 0) : m_text(text), m_position(position) {}

    bool atEnd() const { return m_position >= m_text.size(); }
    std::string_view character() const
    {
        return m_text.substr(m_position, characterLength(m_text, m_position));
    }
    bool is(char c) const { return !atEnd() && character() == std::string_view(&c, 1); }
    void advance() { m_position += characterLength(m_text, m_position); }

private:
    std::string_view m_text;
    std::size_t m_position;
};

using PatternList = std::vector<std::string>; // upper-case pieces

// A file may hold millions of patterns, and a name be as long as its tag: any of them may be the last.
bool matchesAny(std::string_view upperText, const PatternList& patterns, const JobContext& context)
{
    return std::ranges::any_of(patterns, [&](const std::string& pattern) {
        context.stopIfTerminating();
        return matchesWildcard(upperText, pattern);
    });
}

struct ExclusionPair {
    PatternList artist;
    PatternList album;
};

// The settings of one pass, patterns taken apart once.
struct Rules {
    std::int32_t minTracks;
    bool excludeUnassigned;
    PatternList types;
    std::vector<ExclusionPair> exclusions;

    bool reject(const Album& album, const JobContext& context) const
    {
        return static_cast<std::int64_t>(album.tracks.size()) < minTracks ||
               (excludeUnassigned && album.hostTitle.empty()) ||
               matchesAny(toUpper(album.type), types, context) || isExcluded(album, context);
    }

private:
    bool isExcluded(const Album& album, const JobContext& context) const
    {
        if (exclusions.empty())
            return false;
        const std::string artist = toUpper(album.artist ? album.artist->displayName : std::string());
        const std::string title = toUpper(album.displayTitle);
        return std::ranges::any_of(exclusions, [&](const ExclusionPair& pair) {
            return matchesAny(artist, pair.artist, context) && matchesAny(title, pair.album, context);
        });
    }
};

std::vector<ExclusionPair> loadExclusions(const std::string& path, JobContext& context)
{
    if (path.empty())
        return {};
    const auto bytes = context.files.readAll(path);
    if (!bytes) {
        context.prompt.message(Severity::Exclamation,
                               format("Could not open the exclusions file '%s'!", shownName(path).c_str()));
        return {};
    }
    const Exclusions lists = parseExclusions({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
    std::vector<ExclusionPair> pairs;
    for (std::size_t i = 0; i < lists.artists.size(); ++i) {
        context.stopIfTerminating();
        pairs.push_back({split(lists.artists[i], kSeparators), split(lists.albums[i], kSeparators)});
    }
    return pairs;
}

using AlbumSet = std::unordered_set<const Album*>;

// One sweep through each collection, however many albums go.
void removeAlbums(Library& library, const AlbumSet& albums)
{
    const auto goes = [&](const auto& album) { return albums.contains(std::to_address(album)); };
    library.tracks.eraseIf([&](const auto& track) { return goes(track->album); });
    library.artists.eraseIf(
        [&](const auto& artist) { return artist->albums.eraseIf(goes) > 0 && artist->albums.empty(); });
    library.albums.eraseIf(goes);
}

AlbumSet rejectedAlbums(const Library& library, const Rules& rules, JobContext& context)
{
    AlbumSet rejected;
    const auto count = static_cast<std::int32_t>(library.albums.size());
    for (std::int32_t id = 1; id <= count; ++id) {
        context.stopIfTerminating();
        context.log.progress(static_cast<std::uint32_t>(id), static_cast<std::uint32_t>(count));
        const auto found = library.albums.find(id);
        if (found != library.albums.end() && rules.reject(*found->second, context))
            rejected.insert(found->second.get());
    }
    return rejected;
}

} // namespace

bool matchesWildcard(std::string_view text, std::string_view pattern)
{
    Walk at(text);
    Walk wanted(pattern);
    std::optional<Walk> restartText;
    std::optional<Walk> restartPattern;
    for (std::size_t steps = 0; !at.atEnd(); ++steps) {
        if (steps == kMostSteps)
            return false;
        if (wanted.is('*')) {
            wanted.advance();
            if (wanted.atEnd())
                return true;
            restartText = at;
            restartPattern = wanted;
        } else if (!wanted.atEnd() && (wanted.is('?') || wanted.character() == at.character())) {
            at.advance();
            wanted.advance();
        } else if (restartText) {
            restartText->advance();
            at = *restartText;
            wanted = *restartPattern;
        } else {
            return false;
        }
    }
    while (wanted.is('*'))
        wanted.advance();
    return wanted.atEnd();
}

Exclusions parseExclusions(std::string_view bytes)
{
    const std::string text = textOfFile(bytes);
    Exclusions exclusions;
    std::optional<std::string_view> artist;
    forEachLine(text, [&](std::string_view line) {
        if (isBlankOrComment(line)) {
            artist.reset();
        } else if (!artist) {
            artist = line;
        } else {
            exclusions.artists.push_back(toUpper(*artist));
            exclusions.albums.push_back(toUpper(line));
            artist.reset();
        }
    });
    return exclusions;
}

void applyFilters(Library& library, const FilterSettings& settings, JobContext& context)
{
    context.log.line("Applying any additional filters on data");
    const std::size_t count = library.albums.size();
    const Rules rules{settings.minTracksPerAlbum, settings.excludeUnassigned,
                      split(toUpper(settings.excludedTypes), kSeparators),
                      loadExclusions(settings.exclusionList, context)};
    const AlbumSet rejected = rejectedAlbums(library, rules, context);
    if (!rejected.empty())
        removeAlbums(library, rejected);
    if (rejected.empty())
        context.log.line("No albums filtered out");
    else
        context.log.print("Albums excluded - %ld out of %ld", static_cast<long>(rejected.size()),
                          static_cast<long>(count));
}

} // namespace tessera
