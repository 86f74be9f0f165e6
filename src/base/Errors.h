#pragma once

#include <cstdint>
#include <stdexcept>

namespace tessera {

// A host call that failed; carries the COM error code.
class HostError : public std::runtime_error {
public:
    explicit HostError(std::int32_t code);
    std::int32_t code() const { return m_code; }

private:
    std::int32_t m_code;
};

inline constexpr std::int32_t kErrorPointer = static_cast<std::int32_t>(0x80004003);
inline constexpr std::int32_t kErrorOutOfMemory = static_cast<std::int32_t>(0x8007000E);

// Thrown by long work when the plug-in is shutting down; ends at the thread's border.
class Cancelled {};

// Shows the failed expression; returns when the user continues.
using AssertionHandler = void (*)(const char* expression, const char* unit, unsigned long line);
// Answers the handler that was there before; null silences assertions.
AssertionHandler setAssertionHandler(AssertionHandler handler);
void assertionFailed(const char* expression, const char* unit, unsigned long line);

} // namespace tessera

// A programming error: shows the assertion box when the expression is false. UNIT is the source
// unit's name as users report it.
#define TESSERA_ASSERT(expression, unit)                                                                     \
    (static_cast<bool>(expression) ? void(0) : ::tessera::assertionFailed(#expression, unit, __LINE__))
