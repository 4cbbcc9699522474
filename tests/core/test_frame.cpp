// The module frame: placeholders and record layouts as callers see them.
#include "bits.hpp"
#include "quillon.h"

#include <cstddef>

TEST(Frame, PlaceholderFunctionAndVariable)
{
    EXPECT_EQ(fnTalvor(), 42);
    EXPECT_EQ(fnTalvor(), 42);
    EXPECT_EQ(nTalvor, 0);
}

TEST(Frame, PlaceholderClassCopiesItsByte)
{
    CTalvor source;
    CTalvor target;
    EXPECT_EQ(&(target = source), &target);
    EXPECT_EQ(sizeof(CTalvor), 1u);
}

TEST(Frame, StationBytesFollowTheDoubles)
{
    // Callers build the record byte by byte on the instrument.
    EXPECT_EQ(offsetof(StationRecord, signA), 5 * sizeof(double));
    EXPECT_EQ(offsetof(StationRecord, signB), 5 * sizeof(double) + 1);
    EXPECT_EQ(offsetof(StationRecord, refractionMode), 5 * sizeof(double) + 2);
    StationRecord station{};
    unsigned char* raw = reinterpret_cast<unsigned char*>(&station);
    raw[41] = 255;
    EXPECT_EQ(station.signB, -1);
}

TEST(Frame, StatusCodes)
{
    EXPECT_EQ(QUILLON_OK, 0);
    EXPECT_EQ(QUILLON_DOMAIN, 1);
    EXPECT_EQ(QUILLON_RANGE, 2);
    EXPECT_EQ(QUILLON_COINCIDENT, 3);
    EXPECT_EQ(QUILLON_TABLE, 4);
    EXPECT_EQ(QUILLON_BEHIND, 5);
    EXPECT_EQ(QUILLON_PARALLEL, 6);
}

TEST(Frame, ConversionConstantsUsePiAs3_1415926)
{
    EXPECT_BITS(QUILLON_RHO_SEC, 648000.0 / 3.1415926);
    EXPECT_BITS(QUILLON_RAD_PER_SEC, 3.1415926 / 648000.0);
}
