#include "library/AlbumPartners.h"

#include "base/Text.h"

#include <algorithm>
#include <functional>
#include <string>
#include <tuple>

namespace tessera {

namespace {

using Index = std::uint32_t;
using Identities = std::span<const AlbumIdentity>;

struct Named {
    std::string name; // title, artist and path
    Index album;
};

// By name; albums of the same name in their order.
std::vector<Named> sortedByName(Identities albums)
{
    std::vector<Named> all;
    all.reserve(albums.size());
    for (Index i = 0; i < albums.size(); ++i) {
        std::string name(albums[i].title);
        name.append(1, '\0').append(albums[i].artist).append(1, '\0').append(albums[i].path);
        all.push_back({toUpper(name), i});
    }
    std::ranges::sort(all, {}, [](const Named& named) { return std::tie(named.name, named.album); });
    return all;
}

// Takes the albums of the next name off the front.
std::vector<Index> takeGroup(std::span<const Named>& sorted)
{
    std::vector<Index> group;
    const std::string& name = sorted.front().name;
    while (!sorted.empty() && sorted.front().name == name) {
        group.push_back(sorted.front().album);
        sorted = sorted.subspan(1);
    }
    return group;
}

// Which of some albums a file belongs to. Sorted numbers instead of names keep it small.
class FileIndex {
public:
    FileIndex(Identities albums, std::span<const Index> chosen)
    {
        for (const Index album : chosen) {
            for (const std::string_view name : albums[album].files)
                m_entries.push_back({hash(name), album, name});
        }
        std::ranges::sort(m_entries, {},
                          [](const Entry& entry) { return std::tie(entry.hash, entry.album); });
        const auto isRepeated = [](const Entry& left, const Entry& right) {
            return left.hash == right.hash && equalNoCase(left.name, right.name);
        };
        m_entries.erase(std::unique(m_entries.begin(), m_entries.end(), isRepeated), m_entries.end());
    }

    Index find(std::string_view name) const
    {
        const std::size_t wanted = hash(name);
        for (auto at = std::ranges::lower_bound(m_entries, wanted, {}, &Entry::hash);
             at != m_entries.end() && at->hash == wanted; ++at) {
            if (equalNoCase(at->name, name))
                return at->album;
        }
        return kNoPartner;
    }

private:
    struct Entry {
        std::size_t hash;
        Index album;
        std::string_view name;
    };

    static std::size_t hash(std::string_view name) { return std::hash<std::string>()(toUpper(name)); }

    std::vector<Entry> m_entries;
};

class Matching {
public:
    Matching(Identities ours, Identities theirs)
        : m_ours(ours),
          m_theirs(theirs),
          m_ourPartner(ours.size(), kNoPartner),
          m_theirPartner(theirs.size(), kNoPartner)
    {
    }

    std::vector<Index> run()
    {
        matchNames();
        releaseUncounted();
        matchFiles(unmatched(m_ourPartner), unmatchedThatCount());
        return std::move(m_ourPartner);
    }

private:
    struct Shared {
        std::size_t files;
        Index theirs;
        Index ours;
    };

    void matchNames()
    {
        const std::vector<Named> allOurs = sortedByName(m_ours);
        const std::vector<Named> allTheirs = sortedByName(m_theirs);
        std::span<const Named> ours(allOurs);
        std::span<const Named> theirs(allTheirs);
        while (!ours.empty() && !theirs.empty()) {
            if (ours.front().name < theirs.front().name)
                ours = ours.subspan(1);
            else if (theirs.front().name < ours.front().name)
                theirs = theirs.subspan(1);
            else
                matchGroup(takeGroup(ours), takeGroup(theirs));
        }
    }

    // Albums of one name: such that share files belong together, the others as they come.
    void matchGroup(const std::vector<Index>& ours, const std::vector<Index>& theirs)
    {
        if (ours.size() > 1 || theirs.size() > 1)
            matchFiles(ours, theirs);
        auto their = theirs.begin();
        for (const Index our : ours) {
            if (m_ourPartner[our] != kNoPartner)
                continue;
            their = std::find_if(their, theirs.end(),
                                 [&](Index index) { return m_theirPartner[index] == kNoPartner; });
            if (their == theirs.end())
                return;
            join(our, *their);
        }
    }

    void matchFiles(const std::vector<Index>& ours, const std::vector<Index>& theirs)
    {
        if (theirs.empty())
            return;
        std::vector<Shared> pairs = sharedFiles(ours, theirs);
        std::ranges::sort(pairs, [](const Shared& left, const Shared& right) {
            return std::tie(right.files, left.theirs, left.ours) <
                   std::tie(left.files, right.theirs, right.ours);
        });
        for (const Shared& pair : pairs) {
            if (m_ourPartner[pair.ours] == kNoPartner && m_theirPartner[pair.theirs] == kNoPartner)
                join(pair.ours, pair.theirs);
        }
    }

    std::vector<Shared> sharedFiles(const std::vector<Index>& ours, const std::vector<Index>& theirs) const
    {
        const FileIndex index(m_theirs, theirs);
        std::vector<Shared> pairs;
        std::vector<Index> hits;
        for (const Index our : ours) {
            hits.clear();
            for (const std::string_view file : m_ours[our].files)
                hits.push_back(index.find(file));
            std::erase(hits, kNoPartner);
            std::ranges::sort(hits);
            for (auto at = hits.begin(); at != hits.end();) {
                const auto end = std::upper_bound(at, hits.end(), *at);
                pairs.push_back({static_cast<std::size_t>(end - at), *at, our});
                at = end;
            }
        }
        return pairs;
    }

    void join(Index our, Index their)
    {
        m_ourPartner[our] = their;
        m_theirPartner[their] = our;
    }

    // Albums that only kept their places have nothing to give.
    void releaseUncounted()
    {
        for (Index& their : m_ourPartner) {
            if (their != kNoPartner && !m_theirs[their].counts)
                their = kNoPartner;
        }
    }

    static std::vector<Index> unmatched(const std::vector<Index>& partners)
    {
        std::vector<Index> all;
        for (Index i = 0; i < partners.size(); ++i) {
            if (partners[i] == kNoPartner)
                all.push_back(i);
        }
        return all;
    }

    std::vector<Index> unmatchedThatCount() const
    {
        std::vector<Index> all = unmatched(m_theirPartner);
        std::erase_if(all, [this](Index index) { return !m_theirs[index].counts; });
        return all;
    }

    Identities m_ours;
    Identities m_theirs;
    std::vector<Index> m_ourPartner;
    std::vector<Index> m_theirPartner;
};

} // namespace

std::vector<std::uint32_t> findPartners(std::span<const AlbumIdentity> ours,
                                        std::span<const AlbumIdentity> theirs)
{
    return Matching(ours, theirs).run();
}

} // namespace tessera
