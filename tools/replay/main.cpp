#include <fmt/format.h>

#include <cstdio>
#include <exception>

#include "platform/system.h"
#include "tools/replay/replay.h"

int main(int argc, char** argv) {
    using namespace hcr;
    gf_prepareConsole();
    try {
        const ReplayOptions options = parseReplayOptions(gf_arguments(argc, argv));
        if (!options.help.empty()) {
            fmt::print("{}", options.help);
            return 0;
        }
        return replay(options);
    } catch (const std::exception& e) {
        fmt::print(stderr, "halcyrane-replay: {}\n", e.what());
        return 1;
    }
}
