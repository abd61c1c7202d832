#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <pugixml.hpp>
#include <string>

#include "shell/meta.h"
#include "shell/parameter_file.h"
#include "shell/version.h"

// A settings file of any content: whatever is read stays within the limits of its parameter, and a second reading of
// what the first one left gives the same.

namespace {

void lf_check(bool good) {
    if (!good) std::abort();
}

void lf_checkLimits() {
    const hcr::ParameterLists& lists = hcr::gf_parameterLists();
    for (const hcr::IntParameter* p : lists.ints) lf_check(p->current >= p->lower && p->current <= p->upper);
    for (const hcr::NumberChoice* p : lists.numberChoices) lf_check(p->current >= p->lower && p->current <= p->upper);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pugi::xml_document document;
    if (!document.load_buffer(data, size)) return 0;
    hcr::gf_readMeta(document, size % 2 == 0);
    if (!hcr::gf_readParameters(document)) return 0;
    lf_checkLimits();
    const std::string version = hcr::VersionData(hcr::PROGRAM_VERSION.current.get()).text();
    lf_check(hcr::VersionData(version).text() == version);
    const hcr::i32 range = hcr::RANGE.current;
    const std::string destination = hcr::DESTINATION.current.get();
    lf_check(hcr::gf_readParameters(document));
    lf_check(hcr::RANGE.current == range && hcr::DESTINATION.current.equals(destination));
    return 0;
}
