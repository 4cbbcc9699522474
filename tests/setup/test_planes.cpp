// Sightings met by vertical and slope planes.
#include "bits.hpp"
#include "quillon.h"
#include "records.hpp"

#include <cmath>

namespace {

// Instrument centre at (1000, 2000, 101.5).
const StationRecord FACE_I = qtest::station(1000.0, 2000.0, 100.0, 1, 1);
const StationRecord FACE_II = qtest::station(1000.0, 2000.0, 100.0, 1, -1);
const StationRecord ORIGIN = qtest::station(0.0, 0.0, 0.0, 1, 1, 0.0);
const AngleObservation NORTH = {0.0, 324000.0, 0.0};

// Planes as point triples (a vertical plane reads the first two).
using Plane = SurveyPoint[3];
const Plane OBLIQUE = {{1100, 1950, 90}, {1050, 2100, 95}, {}};
const Plane EAST_WEST = {{1100, 1900, 0}, {1100, 2100, 0}, {}};
const Plane NORTH_SOUTH = {{900, 2150, 0}, {1100, 2150, 0}, {}};
const Plane LEVEL = {{1000, 2010, 95}, {1010, 2010, 95}, {1000, 2020, 95}};     // P1 -> P2 north
const Plane SLOPED = {{1100, 1900, 100}, {1100, 2100, 100}, {1200, 1900, 150}}; // P1 -> P2 east

// The face I reading and zenith angle that aim the instrument at a point.
AngleObservation aim(const SurveyPoint& target)
{
    const SurveyPoint mark = {FACE_I.X, FACE_I.Y, FACE_I.H};
    double azimuth = 0.0;
    LIB_CalAZ(&mark, &target, &azimuth);
    const double horizontal = std::hypot(target.X - 1000.0, target.Y - 2000.0);
    return {azimuth, std::atan2(horizontal, target.H - 101.5) * QUILLON_RHO_SEC, 0.0};
}

AngleObservation face_two(const AngleObservation& face_one)
{
    return {std::fmod(face_one.Horizontal + 648000.0, 1296000.0), 1296000.0 - face_one.Zenith, 0};
}

using PlaneFunction = ResultCode (*)(const StationRecord*, const AngleObservation*,
                                     const SurveyPoint*, PlaneHitRecord*);

struct Hit {
    const SurveyPoint* plane;
    SurveyPoint target;
    double along, offset;
};

// A sight aimed at a point of the plane, on either face, finds it again. A
// vertical plane running east-west or north-south gives its X or Y exactly.
void expect_hits(PlaneFunction function, const Hit& c, bool vertical)
{
    for (int face = 1; face <= 2; ++face) {
        SCOPED_TRACE(testing::Message() << c.target.X << " " << c.target.Y << " face " << face);
        const AngleObservation sight = face == 1 ? aim(c.target) : face_two(aim(c.target));
        PlaneHitRecord out;
        ASSERT_EQ(function(face == 1 ? &FACE_I : &FACE_II, &sight, c.plane, &out), 0);
        EXPECT_NEAR(out.X, c.target.X, 1e-4);
        EXPECT_NEAR(out.Y, c.target.Y, 1e-4);
        EXPECT_NEAR(out.H, c.target.H, 1e-4);
        EXPECT_NEAR(out.SightDistance,
                    std::hypot(c.target.X - 1000.0, c.target.Y - 2000.0, c.target.H - 101.5), 1e-4);
        EXPECT_NEAR(out.PlaneAlong, c.along, 1e-4);
        EXPECT_NEAR(out.PlaneOffset, c.offset, 1e-4);
        if (vertical && c.plane[0].X == c.plane[1].X) {
            EXPECT_BITS(out.X, c.plane[0].X);
        }
        if (vertical && c.plane[0].Y == c.plane[1].Y) {
            EXPECT_BITS(out.Y, c.plane[0].Y);
        }
    }
}

struct Failure {
    const char* name;
    const StationRecord* station;
    AngleObservation sight;
    Plane plane;
    int status;
};

void expect_failures(PlaneFunction function, const Failure* cases, int count)
{
    for (int i = 0; i < count; ++i) {
        const Failure& c = cases[i];
        PlaneHitRecord out = qtest::sentinel_filled<PlaneHitRecord>();
        EXPECT_EQ(function(c.station, &c.sight, c.plane, &out), c.status) << c.name;
        EXPECT_EQ(qtest::untouched(out), c.status != 0) << c.name;
    }
}

} // namespace

TEST(VerticalPlane, SightAimedAtThePlaneHitsIt)
{
    expect_hits(LIB_VPlane, {OBLIQUE, {1080, 2010, 110}, 0.4 * std::sqrt(25000.0), 20}, true);
    expect_hits(LIB_VPlane, {EAST_WEST, {1100, 2030, 105}, 130.0, 105.0}, true);
    expect_hits(LIB_VPlane, {NORTH_SOUTH, {960, 2150, 95}, 60.0, 95.0}, true);
}

TEST(VerticalPlane, FailuresInTheirOrder)
{
    const AngleObservation at = aim({1080, 2010, 110});
    const AngleObservation away = {at.Horizontal + 648000.0, at.Zenith, 0.0};
    const StationRecord under_p1 = qtest::station(1100, 1950, 0);
    const SurveyPoint o1 = OBLIQUE[0], o2 = OBLIQUE[1], e1 = EAST_WEST[0], e2 = EAST_WEST[1];
    const double limit = qtest::LIMIT, above = qtest::ABOVE_LIMIT;
    const Failure cases[] = {
        {"sight away from the plane", &FACE_I, away, {o1, o2}, 5},
        {"face II angles read on face I", &FACE_I, face_two(at), {o1, o2}, 5},
        {"plane through the sight", &FACE_I, at, {{1100, 2000, 0}, {1200, 2000, 0}}, 3},
        // A plane point plumb over the station counts as azimuth 0.
        {"station under P1", &under_p1, at, {{1100, 1950, 0}, {1200, 1950, 0}}, 3},
        // Coincident plane points share their azimuths and give 3, unless a
        // signed zero sends their directions to either side of south.
        {"plane points coincide", &FACE_I, at, {o1, {1100, 1950, 7}}, 3},
        {"coincide but for -0", &ORIGIN, at, {{-10, 0.0, 0}, {-10, -0.0, 5}}, 1},
        {"northing beyond the limit", &ORIGIN, NORTH, {{above, -10, 0}, {above, 10, 0}}, 2},
        {"northing at the limit", &ORIGIN, NORTH, {{limit, -10, 0}, {limit, 10, 0}}, 0},
        // One second above the horizon for ten thousand kilometres.
        {"height out of range", &FACE_I, {0.0, 1.0, 0.0}, {{1e7, 1900, 0}, {1e7, 2100, 0}}, 2},
        // A face II reading just over a half circle reduces to just over 0,
        // while the sight (648000 seconds falling 0.011 s short of the true
        // half circle) points just west of north: the check is not folded at
        // the end of the circle. Half a second further east the two agree.
        {"reduced reading past north", &FACE_II, {648000.005, 972000.0, 0}, {e1, e2}, 5},
        {"reduced reading clear of north", &FACE_II, {648000.5, 972000.0, 0}, {e1, e2}, 0},
    };
    expect_failures(LIB_VPlane, cases, sizeof cases / sizeof cases[0]);
}

TEST(SlopePlane, SightAimedAtThePlaneHitsIt)
{
    // East of the level plane's line is right of it; north of the sloped
    // plane's line (rising half a metre per metre northward) is left of it;
    // on the line the offset is 0.
    expect_hits(LIB_SPlane, {LEVEL, {1030, 2050, 95}, 30.0, 40.0}, false);
    expect_hits(LIB_SPlane, {LEVEL, {1030, 2010, 95}, 30.0, 0.0}, false);
    expect_hits(LIB_SPlane, {SLOPED, {1150, 1930, 125}, 30.0, -std::sqrt(3125.0)}, false);
}

TEST(SlopePlane, FailuresInTheirOrder)
{
    const AngleObservation down = aim({1030, 2050, 95});
    const AngleObservation up = {down.Horizontal, 648000.0 - down.Zenith, 0.0};
    const SurveyPoint l1 = LEVEL[0], l2 = LEVEL[1], l3 = LEVEL[2];
    const Failure cases[] = {
        {"collinear", &FACE_I, down, {{1000, 2000, 95}, {1010, 2000, 96}, {1020, 2000, 97}}, 3},
        {"plumb along a wall", &FACE_I, {}, {{1010, 2000, 0}, {1010, 2010, 0}, {1010, 2000, 9}}, 3},
        {"plane met behind the instrument", &FACE_I, up, {l1, l2, l3}, 5},
        {"face II angles on face I", &FACE_I, face_two(down), {l1, l2, l3}, 5},
        {"northing out of range", &ORIGIN, NORTH, {{2e8, 0, 0}, {2e8, 10, 0}, {2e8, 0, 10}}, 2},
        // Only the northing is tested: a wall 2e8 m to the east is met.
        {"easting", &ORIGIN, {324000.0, 324000.0, 0}, {{0, 2e8, 0}, {9, 2e8, 0}, {0, 2e8, 9}}, 0},
    };
    expect_failures(LIB_SPlane, cases, sizeof cases / sizeof cases[0]);
}
