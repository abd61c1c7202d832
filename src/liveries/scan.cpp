#include "liveries/scan.h"

#include "shell/log.h"

namespace hcr {

std::atomic<i32> scanThreadsActive{0};
i32 scanThreadLimit = 1;

void gf_scanLiveries() {
    gf_log("This version doesn't scan liveries; the file of an earlier scan serves");
}

}  // namespace hcr
