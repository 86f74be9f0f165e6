#pragma once

#include "FakeHost.h"
#include "support/HostedPlugin.h"

#include <memory>

namespace tessera {

// The plug-in with a fake host.
class RunningPlugin : public HostedPlugin {
public:
    explicit RunningPlugin(std::shared_ptr<HostScript> script_ = smallLibrary())
        : HostedPlugin(makeFakeHost(script_)), script(std::move(script_))
    {
    }

    std::shared_ptr<HostScript> script;
};

// Stops the worker inside its host call with a given number until it is let go.
class WorkerStop {
public:
    WorkerStop(HostScript& script, int call)
    {
        script.onCall = [this, &script, call](int number) {
            if (number == call && GetCurrentThreadId() != script.uiThread) {
                reached.set();
                m_goOn.wait(10000);
            }
        };
    }
    void letGo() { m_goOn.set(); }

    Event reached;

private:
    Event m_goOn;
};

} // namespace tessera
