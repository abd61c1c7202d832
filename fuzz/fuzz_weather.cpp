#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/model/run_state.h"
#include "feed/qnh_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace hcr;
    gQnhReader.text = std::string_view(reinterpret_cast<const char*>(data), size);
    gQnhReader.handleText();
    if (gQnh < 900 || gQnh > 1100) std::abort();
    return 0;
}
