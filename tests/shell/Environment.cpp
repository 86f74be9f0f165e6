#include "system/ComPtr.h"

#include <gtest/gtest.h>
#include <optional>

namespace tessera {
namespace {

// The thread of the tests is an apartment, as a host's is.
class Apartment : public testing::Environment {
public:
    void SetUp() override { m_ole.emplace(); }
    void TearDown() override { m_ole.reset(); }

private:
    std::optional<OleInit> m_ole;
};

[[maybe_unused]] testing::Environment* const g_apartment = testing::AddGlobalTestEnvironment(new Apartment);

} // namespace
} // namespace tessera
