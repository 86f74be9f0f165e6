#include "artwork/SlotTable.h"

#include <utility>

namespace tessera {

// Slot 0 has no place in the order of use: its neighbours are the oldest and the newest.
SlotTable::SlotTable(int slots) : m_slots(static_cast<std::size_t>(slots)) {}

SlotTable::Taken SlotTable::take(Album& album)
{
    std::size_t slot = m_used;
    if (full()) {
        slot = m_slots[0].newer;
        unlink(slot);
    } else {
        ++m_used;
    }
    makeNewest(slot);
    return {static_cast<int>(slot), std::exchange(m_slots[slot].owner, &album)};
}

void SlotTable::touch(int slot)
{
    const auto touched = static_cast<std::size_t>(slot);
    if (slot > 0 && touched < m_used && m_slots[0].older != touched) {
        unlink(touched);
        makeNewest(touched);
    }
}

void SlotTable::unlink(std::size_t slot)
{
    const Slot& gone = m_slots[slot];
    m_slots[gone.older].newer = gone.newer;
    m_slots[gone.newer].older = gone.older;
}

void SlotTable::makeNewest(std::size_t slot)
{
    const std::size_t previous = m_slots[0].older;
    m_slots[slot].older = previous;
    m_slots[slot].newer = 0;
    m_slots[previous].newer = slot;
    m_slots[0].older = slot;
}

} // namespace tessera
