#pragma once

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

namespace tessera {

// Records, or pointers to them, by id; walked in ascending id order. A sorted array with the names
// of std::map: the records of a library come in the order of their ids, so that adding one is an
// append, and a walk reads memory in one stream. Adding anywhere else and `erase` move what is
// behind; iterators last until the next change. Ids do not change, records may.
template <class Record>
class RecordMap {
public:
    using key_type = std::int32_t;
    using mapped_type = Record;
    using value_type = std::pair<std::int32_t, Record>;
    using const_iterator = typename std::vector<value_type>::const_iterator;
    using iterator = const_iterator;

    const_iterator begin() const { return m_entries.begin(); }
    const_iterator end() const { return m_entries.end(); }
    const value_type* data() const { return m_entries.data(); }
    std::size_t size() const { return m_entries.size(); }
    bool empty() const { return m_entries.empty(); }
    void clear() { m_entries = std::vector<value_type>(); }
    void reserve(std::size_t count) { m_entries.reserve(count); }

    const_iterator find(std::int32_t id) const
    {
        const const_iterator at = place(id);
        return isAt(at, id) ? at : end();
    }
    bool contains(std::int32_t id) const { return find(id) != end(); }
    // Throws std::out_of_range when there is none.
    const Record& at(std::int32_t id) const
    {
        const const_iterator found = find(id);
        if (found == end())
            throw std::out_of_range("no such record");
        return found->second;
    }
    // An empty record when there was none.
    Record& operator[](std::int32_t id)
    {
        const const_iterator at = emplace(id, Record()).first;
        return m_entries[static_cast<std::size_t>(at - begin())].second;
    }
    // Keeps what is there: false then.
    template <class Value>
    std::pair<const_iterator, bool> emplace(std::int32_t id, Value&& record)
    {
        if (m_entries.empty() || m_entries.back().first < id) {
            m_entries.emplace_back(id, std::forward<Value>(record));
            return {end() - 1, true};
        }
        const const_iterator at = place(id);
        if (isAt(at, id))
            return {at, false};
        return {m_entries.emplace(at, id, std::forward<Value>(record)), true};
    }

    std::size_t erase(std::int32_t id)
    {
        const const_iterator found = find(id);
        if (found == end())
            return 0;
        m_entries.erase(found);
        return 1;
    }
    // In one sweep; the predicate sees each record once, in order. Answers how many went.
    template <class Predicate>
    std::size_t eraseIf(Predicate predicate)
    {
        return std::erase_if(m_entries, [&](const value_type& entry) { return predicate(entry.second); });
    }

private:
    const_iterator place(std::int32_t id) const
    {
        return std::ranges::lower_bound(m_entries, id, {}, &value_type::first);
    }
    bool isAt(const_iterator at, std::int32_t id) const { return at != end() && at->first == id; }

    std::vector<value_type> m_entries; // ascending ids
};

} // namespace tessera
