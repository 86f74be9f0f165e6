#pragma once

#include <windows.h>

namespace tessera {

// A pointer that messages of this thread may carry, as long as the object lives. Any program can send the
// same message with any pointer: whoever receives one takes what is known here and nothing else.
class CarriedPointer {
public:
    explicit CarriedPointer(const void* pointer);
    ~CarriedPointer();
    CarriedPointer(const CarriedPointer&) = delete;
    CarriedPointer& operator=(const CarriedPointer&) = delete;

    static bool isKnown(const void* pointer);
    static bool isKnown(LPARAM parameter) { return isKnown(reinterpret_cast<const void*>(parameter)); }

private:
    const void* m_pointer;
    CarriedPointer* m_below;
};

} // namespace tessera
