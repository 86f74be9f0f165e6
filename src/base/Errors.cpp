#include "base/Errors.h"

#include "base/Text.h"

#include <atomic>

namespace tessera {

namespace {

std::atomic<AssertionHandler> g_assertionHandler{nullptr};

} // namespace

HostError::HostError(std::int32_t code)
    : std::runtime_error(format("The host refused a call (0x%08lX)",
                                static_cast<unsigned long>(static_cast<std::uint32_t>(code)))),
      m_code(code)
{
}

AssertionHandler setAssertionHandler(AssertionHandler handler)
{
    return g_assertionHandler.exchange(handler);
}

void assertionFailed(const char* expression, const char* unit, unsigned long line)
{
    if (const AssertionHandler handler = g_assertionHandler.load())
        handler(expression, unit, line);
}

} // namespace tessera
