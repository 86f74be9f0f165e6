#pragma once

#include <utility>

namespace tessera::test {

// Puts a function of the test's in the place of one that this program imports from the system. The
// place is its pointer in the import table, by its linker name:
//
//   extern decltype(&SomeFunction) g_place __asm__("__imp__SomeFunction@8");
template <class Function>
class ReplacedImport {
public:
    ReplacedImport(Function& place, Function by) : m_place(place), m_real(std::exchange(place, by)) {}
    ~ReplacedImport() { m_place = m_real; }
    ReplacedImport(const ReplacedImport&) = delete;
    ReplacedImport& operator=(const ReplacedImport&) = delete;

private:
    Function& m_place;
    Function m_real;
};

} // namespace tessera::test
