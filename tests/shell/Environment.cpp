#include "system/ComPtr.h"
#include "system/Registry.h"

#include <gtest/gtest.h>
#include <optional>

namespace tessera {
namespace {

// The thread of the tests is an apartment, as a host's is.
class Apartment : public testing::Environment {
public:
    void SetUp() override
    {
        // Without a window manager Wine waits two seconds for each window that it thinks managed.
        RegistryKey::create(HKEY_CURRENT_USER, "Software\\Wine\\AppDefaults\\test_shell.exe\\X11 Driver")
            .setText("Managed", "N");
        m_ole.emplace();
    }
    void TearDown() override { m_ole.reset(); }

private:
    std::optional<OleInit> m_ole;
};

[[maybe_unused]] testing::Environment* const g_apartment = testing::AddGlobalTestEnvironment(new Apartment);

} // namespace
} // namespace tessera
