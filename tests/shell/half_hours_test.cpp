#include "shell/half_hours.h"

#include <gtest/gtest.h>

#include <vector>

using namespace hcr;

namespace {

HalfHours lf_bits(const std::vector<std::size_t>& hours) {
    HalfHours bits;
    for (const std::size_t hour : hours) bits.set(hour);
    return bits;
}

}  // namespace

TEST(HalfHours, ReadsRangesAndLists) {
    struct Row {
        const char* text;
        HalfHours bits;
    };
    const Row rows[] = {
        {"0:47", HalfHours().set()},
        {"7", lf_bits({7})},
        {" 3 ,\t5 ", lf_bits({3, 5})},
        {"", {}},
        {"3:5", lf_bits({3, 4, 5})},
        {"9:9", lf_bits({9})},
        {"12abc", lf_bits({12})},
        {" 3x : 4y", lf_bits({3, 4})},
        {"3,48,5", lf_bits({3, 5})},
        {"47,,0", lf_bits({0, 47})},
        {"5:3", {}},
        {"1:2:3", {}},
        {"48", {}},
        {"-1", {}},
        {"+1", {}},
        {"99999999999999999999", {}},
        {"1:48", {}},
        {":", {}},
        {"1:", {}},
        {"x:1:2", {}},
    };
    for (const Row& row : rows) EXPECT_EQ(gf_hours2bitset(row.text), row.bits) << row.text;
}

TEST(HalfHours, WritesOneRunOnly) {
    EXPECT_EQ(gf_bitset2hours(lf_bits({3, 4, 5})), "3:5");
    EXPECT_EQ(gf_bitset2hours(lf_bits({47})), "47");
    EXPECT_EQ(gf_bitset2hours(HalfHours().set()), "0:47");
    EXPECT_EQ(gf_bitset2hours(lf_bits({3, 5})), std::nullopt);
    EXPECT_EQ(gf_bitset2hours({}), std::nullopt);
}
