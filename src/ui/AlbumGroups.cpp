#include "ui/AlbumGroups.h"

#include <algorithm>

namespace tessera {

namespace {

// Divides ranges of the albums by one kind of name.
class Divider {
public:
    Divider(AlbumPlaces& places, const Naming& naming)
        : m_places(places), m_naming(naming), m_slots(naming.names.groupCount(), kNoGroup)
    {
    }

    // The groups come behind those that are there.
    void divide(std::uint32_t first, std::uint32_t last, std::vector<AlbumGroup>& groups)
    {
        const std::size_t before = groups.size();
        for (std::uint32_t i = first; i < last; ++i)
            ++groupOf(m_places[i], groups).last; // counts for now
        order(groups, before);
        std::uint32_t begin = first;
        for (std::size_t i = before; i < groups.size(); ++i) {
            AlbumGroup& group = groups[i];
            const std::uint32_t count = group.last;
            group.first = group.last = begin;
            begin += count;
            slotOf(group.name) = static_cast<std::uint32_t>(i);
        }
        const AlbumPlaces given(m_places.begin() + first, m_places.begin() + last);
        for (const std::uint32_t place : given)
            m_places[groups[slotOf(m_naming.of[place])].last++] = place;
        for (std::size_t i = before; i < groups.size(); ++i)
            slotOf(groups[i].name) = kNoGroup;
    }

private:
    std::uint32_t& slotOf(std::uint32_t name) { return m_slots[m_naming.names[name].group]; }

    AlbumGroup& groupOf(std::uint32_t place, std::vector<AlbumGroup>& groups)
    {
        const std::uint32_t name = m_naming.of[place];
        std::uint32_t& slot = slotOf(name);
        if (slot == kNoGroup) {
            slot = static_cast<std::uint32_t>(groups.size());
            groups.push_back({name, 0, 0});
        }
        return groups[slot];
    }

    void order(std::vector<AlbumGroup>& groups, std::size_t from) const
    {
        const auto orderOf = [&](const AlbumGroup& group) { return m_naming.names[group.name].order; };
        std::stable_sort(
            groups.begin() + static_cast<std::ptrdiff_t>(from), groups.end(),
            [&](const AlbumGroup& left, const AlbumGroup& right) { return orderOf(left) < orderOf(right); });
    }

    AlbumPlaces& m_places;
    const Naming& m_naming;
    std::vector<std::uint32_t> m_slots; // of each group of names
};

} // namespace

AlbumGroups groupAlbums(AlbumPlaces places, const Naming& outer, const Naming* inner)
{
    AlbumGroups groups;
    groups.places = std::move(places);
    Divider(groups.places, outer).divide(0, static_cast<std::uint32_t>(groups.places.size()), groups.outer);
    if (!inner)
        return groups;
    Divider divider(groups.places, *inner);
    for (AlbumGroup& group : groups.outer) {
        group.firstInner = static_cast<std::uint32_t>(groups.inner.size());
        divider.divide(group.first, group.last, groups.inner);
        group.lastInner = static_cast<std::uint32_t>(groups.inner.size());
    }
    return groups;
}

} // namespace tessera
