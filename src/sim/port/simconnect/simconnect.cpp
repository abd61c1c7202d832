#include "sim/port/simconnect/simconnect.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string>

#include "shell/text.h"
#include "shell/version.h"
#include "sim/port/sim_port.h"

namespace hcr {
namespace {

std::string lf_advice(const std::string& file) {
    return fmt::format(
        "{} comes with the SDK of the simulator (folder SimConnect SDK/lib, the 64-bit one): copy it into the folder "
        "of {}. The option --sandbox starts without a simulator.",
        file, kProgramName);
}

[[noreturn]] void lf_failNotLoaded(const std::filesystem::path& name, const LibraryFault& fault) {
    const std::string file = gf_shownPath(name.filename());
    if (!fault.file.empty()) {
        throw std::runtime_error(
            fmt::format("{} can't be loaded: {}\n\n{}", gf_shownPath(fault.file), fault.reason, lf_advice(file)));
    }
    throw std::runtime_error(fmt::format("{} was not found ({}). It was looked for in\n    {}\n\n{}", file,
                                         fault.reason, fmt::join(fault.places, "\n    "), lf_advice(file)));
}

/// The functions that the library lacks, parted by commas.
std::string lf_bind(const Library& library, SimPort& port) {
    std::string missing;
    gf_visitSimPort(port, [&]<typename Function>(const char* name, Function& function) {
        function = reinterpret_cast<Function>(gf_libraryFunction(library, name));
        if (function == nullptr) missing += (missing.empty() ? "" : ", ") + std::string(name);
    });
    return missing;
}

}  // namespace

std::filesystem::path gf_simConnectName() {
    return gf_libraryFileName("SimConnect");
}

Library gf_loadSimConnect(const std::filesystem::path& name) {
    LibraryFault fault;
    Library library = gf_openLibrary(name, fault);
    if (!library.loaded()) lf_failNotLoaded(name, fault);
    SimPort port;
    if (const std::string missing = lf_bind(library, port); !missing.empty()) {
        const std::string file = gf_shownPath(library.file);
        gf_closeLibrary(library);
        throw std::runtime_error(fmt::format("{} is not the library of this simulator, it lacks {}.\n\n{}", file,
                                             missing, lf_advice(gf_shownPath(name.filename()))));
    }
    gSimPort = port;
    return library;
}

}  // namespace hcr
