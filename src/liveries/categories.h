#pragma once

namespace hcr {

/// Logs what is installed of each class and of airline "ZZZ", fills the pools, and turns the parameters of classes off
/// of which nothing is installed. Run thread.
void gf_reportCategories();

}  // namespace hcr
