#include <fmt/format.h>

#include <cstdio>
#include <exception>

#include "commands.h"
#include "platform/system.h"

int main(int argc, char** argv) {
    hcr::gf_prepareConsole();
    try {
        return runCommandLine(hcr::gf_arguments(argc, argv));
    } catch (const UsageError& e) {
        fmt::print(stderr, "halcyrane-data: {}\nhalcyrane-data --help tells how it is used.\n", e.text);
        return kExitUsage;
    } catch (const std::exception& e) {
        std::fflush(stdout);
        fmt::print(stderr, "halcyrane-data: {}\n", e.what());
        return kExitFailed;
    }
}
