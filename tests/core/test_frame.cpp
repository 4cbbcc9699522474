// The module frame: placeholders and the station record as callers build it.
#include "bits.hpp"
#include "quillon.h"

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
