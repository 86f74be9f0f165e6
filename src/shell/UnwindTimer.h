#pragma once

#include <functional>

namespace tessera {

// Looks from time to time, in the thread's message loops, whether the condition holds; then the
// condition is destroyed with everything that it owns. Throws std::bad_alloc when memory is short.
void releaseWhen(std::function<bool()> condition);

} // namespace tessera
