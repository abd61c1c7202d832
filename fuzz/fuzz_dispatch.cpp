#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "shell/messages.h"
#include "shell/run_stop.h"
#include "sim/dispatch.h"
#include "sim/drain.h"
#include "sim/session_reset.h"

// The input is a row of messages from the simulator, each behind its length in two bytes. Every message is handed over
// in a block of just that length.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace hcr;
    gf_resetSimSession();
    gPendingCreates.clear();
    gPendingCreates.push_back({41, 4740001, "KLM1"});
    gPendingCreates.push_back({42, 17, "KLM2*"});
    while (size >= 2) {
        const std::size_t told = data[0] + std::size_t{256} * data[1];
        const std::size_t length = told < size - 2 ? told : size - 2;
        std::vector<std::uint8_t> message(data + 2, data + 2 + length);
        data += 2 + length;
        size -= 2 + length;
        if (message.empty()) continue;
        try {
            gf_dispatch(reinterpret_cast<SIMCONNECT_RECV*>(message.data()), static_cast<u32>(length), nullptr);
        } catch (const UserErrorException&) {
            // a simulator that isn't wanted
        }
    }
    gStop = gUserStop = false;
    return 0;
}
