#include <gtest/gtest.h>

#include "platform/sockets.h"

namespace hcr::test {
namespace {

/// Started for all tests, as the program's run does it for its readers.
struct SocketLibrary : testing::Environment {
    void SetUp() override { ASSERT_EQ(gf_startSockets(), 0); }
    void TearDown() override { gf_endSockets(); }
};

[[maybe_unused]] testing::Environment* const kSocketLibrary = testing::AddGlobalTestEnvironment(new SocketLibrary);

}  // namespace
}  // namespace hcr::test
