#pragma once

#include "base/Errors.h"
#include "system/Threads.h"
#include "ui/Commands.h"

namespace tessera {

// Lets what is on display read from the host, under the host's lock. False when it may not be called
// now, so that it is to be asked again later; true when the work was done or the host refused it. A
// call may run a message loop, and the records and windows may be gone after it: the work holds what
// it reads from, and whoever asked for it looks again at what is left.
template <class Work>
bool readFromHost(Commands& commands, Work&& work)
{
    if (!commands.mayCallHost())
        return false;
    try {
        const ScopedLock lock(commands.hostLock());
        work(commands.host());
    } catch (const HostError&) {
        return true;
    }
    return true;
}

} // namespace tessera
