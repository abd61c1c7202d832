#include <fmt/format.h>

#include "tools/feed/generator.h"

int main() {
    for (const hcr::TimedLine& line : hcr::generateFeed({})) fmt::print("{:.2f}\t{}\n", line.time, line.line);
}
