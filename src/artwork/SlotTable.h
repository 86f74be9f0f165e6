#pragma once

#include <cstddef>
#include <vector>

namespace tessera {

struct Album;

// Which album has which slot of the image lists. Slot 0 is the default cover's and never given
// away; the others go to albums as they come, then from the album that was drawn longest ago.
class SlotTable {
public:
    explicit SlotTable(int slots = 0);

    bool full() const { return m_used >= m_slots.size(); }
    // True when no album can have a slot at all.
    bool hopeless() const { return m_slots.size() < 2; }

    struct Taken {
        int slot = 0;
        Album* loser = nullptr; // whose slot it was
    };
    // Not while hopeless.
    Taken take(Album& album);
    // The slot's cover is being drawn.
    void touch(int slot);

private:
    struct Slot {
        Album* owner = nullptr;
        std::size_t older = 0; // neighbours in the order of use; 0 ends the chain
        std::size_t newer = 0;
    };
    void unlink(std::size_t slot);
    void makeNewest(std::size_t slot);

    std::vector<Slot> m_slots;
    std::size_t m_used = 1; // slots given out, the first one included
};

} // namespace tessera
