#pragma once

namespace hcr {

/// Walks the AI packages and writes LiveriesScanned.xml. The scan isn't part of the program yet: the file of an
/// earlier scan serves, and its absence is told by the loading.
void gf_scanLiveries();

}  // namespace hcr
