#include "windowing/CarriedPointer.h"

namespace tessera {
namespace {

thread_local CarriedPointer* t_top = nullptr;

} // namespace

CarriedPointer::CarriedPointer(const void* pointer) : m_pointer(pointer), m_below(t_top)
{
    t_top = this;
}

CarriedPointer::~CarriedPointer()
{
    CarriedPointer** place = &t_top;
    while (*place != this) {
        place = &(*place)->m_below;
    }
    *place = m_below;
}

bool CarriedPointer::isKnown(const void* pointer)
{
    for (const CarriedPointer* carried = t_top; carried; carried = carried->m_below) {
        if (pointer && carried->m_pointer == pointer) {
            return true;
        }
    }
    return false;
}

} // namespace tessera
