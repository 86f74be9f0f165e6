#pragma once

#include <array>
#include <cstdint>

namespace tessera {

// What text routines ask of the system about its code page; made once, at first use.
struct CodePage {
    std::array<unsigned char, 256> upper; // of single-byte characters; others stand for themselves
    std::array<unsigned char, 256> lower;
    std::array<bool, 256> lead;
    bool doubleByte = false; // some byte leads
};

const CodePage& codePage();

// The two bytes of a double-byte character, upper or lower case; the lead byte is the high one.
std::uint16_t foldPair(std::uint16_t pair, bool toUpper);
// One unit of wide text that is not ASCII, lower case.
char16_t foldWideUnit(char16_t unit);

} // namespace tessera
