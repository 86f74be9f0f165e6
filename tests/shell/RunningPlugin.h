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

} // namespace tessera
