// The module frame: placeholders and the station record as callers build it.
#include "check.hpp"
#include "core/core.hpp"
#include "quillon.h"

#include <cstdint>
#include <limits>

TEST(Frame, Placeholders)
{
    EXPECT_EQ(fnTalvor(), 42);
    EXPECT_EQ(nTalvor, 0);
    CTalvor source;
    CTalvor target;
    EXPECT_EQ(&(target = source), &target);
    EXPECT_EQ(sizeof(CTalvor), 1u);
}

TEST(Frame, StationSignByteReadsAsMinusOne)
{
    // Instrument programs write the face byte as 255.
    StationRecord station{};
    reinterpret_cast<unsigned char*>(&station)[41] = 255;
    EXPECT_EQ(station.signB, -1);
}

// The shared angle and number helpers every family builds on.
TEST(Frame, SharedHelpersStayDefinedAtTheEdges)
{
    using namespace quillon;
    const double NaN = std::numeric_limits<double>::quiet_NaN();
    // Truncation to 32 bits saturates and maps a not-a-number to 0.
    const struct {
        double value;
        std::int32_t whole;
    } truncations[] = {{-3.7, -3},          {2147483647.9, INT32_MAX},
                       {1e300, INT32_MAX},  {-2147483648.9, INT32_MIN},
                       {-1e300, INT32_MIN}, {NaN, 0}};
    for (const auto& [call, c] : qtest::rows("to_int32_truncated", truncations)) {
        EXPECT_BITS(call, to_int32_truncated(c.value), c.whole);
    }
    // Folds, remainders and roundings, as exact values.
    const struct {
        const char* name;
        double (*helper)(double);
        double argument, expected;
    } values[] = {
        {"fold_half_circle", fold_half_circle, 648000.0, 648000.0},
        {"fold_half_circle", fold_half_circle, 648000.5, -647999.5},
        {"fold_half_circle", fold_half_circle, -648000.0, -648000.0},
        {"fold_half_circle", fold_half_circle, -648001.0, 647999.0},
        {"circle_remainder", circle_remainder, -1296000.0, 0.0}, // never -0
        {"circle_remainder", circle_remainder, -1296001.0, -1.0},
        {"circle_remainder", circle_remainder, 2592005.0, 5.0},
        {"whole_seconds", whole_seconds, -10.9, -10.0},
        {"whole_seconds", whole_seconds, -0.5, -0.0},
        {"through_float", through_float, 0.1, 0.100000001490116119384765625},
        {"through_float", through_float, 1e300, std::numeric_limits<double>::infinity()},
    };
    for (const auto& [row, c] : qtest::rows(values)) {
        EXPECT_BITS(row.of(c.name), c.helper(c.argument), c.expected);
    }
}
