#pragma once

#include "artwork/CoverGrounds.h"
#include "system/Handle.h"
#include "windowing/ImageList.h"

#include <array>

namespace tessera {

// The four image lists, all with the same fixed number of slots: a list that grows copies itself
// each time, and beyond the address space it loses its images without an error.
// User-interface thread only.
class CoverLists {
public:
    // Memory of all lists together, in bytes.
    static constexpr std::int64_t kBudget = 512LL * 1024 * 1024;

    // At most `slots` slots: as many as the budget and the memory allow. Every slot but the first
    // holds rubbish; the first shows the ground. False, and no lists, when not even one can be had.
    bool create(const CoverGrounds& grounds, int slots);
    void destroy();

    int slots() const { return m_slots; }
    HIMAGELIST list(CoverList which) const { return m_lists[which].image.get(); }
    bool put(int slot, const FittedCover& cover);

    // Memory of one slot in all lists, in bytes.
    static std::int64_t bytesPerSlot(const CoverGrounds& grounds);

private:
    // A list and the bitmap by which its images are set.
    struct List {
        ImageList image;
        BitmapHandle bitmap;
        void* bits = nullptr;
        std::size_t bytes = 0;
    };
    bool tryCreate(const CoverGrounds& grounds, int slots);
    bool createOne(List& list, const CoverGround& ground, int slots) const;

    std::array<List, kCoverListCount> m_lists;
    int m_slots = 0;
};

} // namespace tessera
