#include "liveries/scan_threads.h"

#include <algorithm>
#include <thread>

namespace hcr {

std::atomic<i32> scanThreadsActive{0};
i32 scanThreadLimit = 1;

void gf_prepareScans() {
    scanThreadLimit = std::max(1, static_cast<i32>(std::thread::hardware_concurrency()));
    scanThreadsActive = 0;
}

}  // namespace hcr
