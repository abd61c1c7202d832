#include "liveries/scan.h"

#include "shell/log.h"

namespace hcr {

void gf_scanLiveries() {
    gf_log("This version doesn't scan liveries; the file of an earlier scan serves");
}

}  // namespace hcr
