#include <stdlib.h>

#include "tests/support/environment.h"

namespace hcr::test {

void setVariable(const char* name, const char* value) {
    value != nullptr ? setenv(name, value, 1) : unsetenv(name);
}

}  // namespace hcr::test
