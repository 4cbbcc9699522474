// Sightings met by vertical and slope planes.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>

namespace {

StationRecord station_at(double x, double y, double h, double instrument_height, signed char a,
                         signed char b)
{
    StationRecord s{};
    s.X = x;
    s.Y = y;
    s.H = h;
    s.InstrumentHeight = instrument_height;
    s.TargetHeight = 1.3; // never read here
    s.signA = a;
    s.signB = b;
    s.refractionMode = 1;
    return s;
}

// The face I reading and zenith angle that aim the instrument at a point.
AngleObservation aim(const StationRecord& s, const SurveyPoint& target)
{
    const SurveyPoint mark = {s.X, s.Y, s.H};
    double azimuth = 0.0;
    LIB_CalAZ(&mark, &target, &azimuth);
    const double horizontal = std::hypot(target.X - s.X, target.Y - s.Y);
    const double rise = target.H - (s.H + s.InstrumentHeight);
    return {azimuth, std::atan2(horizontal, rise) * QUILLON_RHO_SEC, 0.0};
}

// The same sighting on face II: the circle turned by a half circle, the
// zenith angle read from the other side. A half circle of 648000 seconds is
// 3.1415926 radians, so the face II sight strays by about 1e-7 radians.
AngleObservation face_two(const AngleObservation& face_one)
{
    double horizontal = face_one.Horizontal + 648000.0;
    if (horizontal >= 1296000.0) {
        horizontal -= 1296000.0;
    }
    return {horizontal, 1296000.0 - face_one.Zenith, 0.0};
}

const StationRecord FACE_I = station_at(1000.0, 2000.0, 100.0, 1.5, 1, 1);
const StationRecord FACE_II = station_at(1000.0, 2000.0, 100.0, 1.5, 1, -1);

} // namespace

TEST(VerticalPlane, SightAimedAtAPointOfThePlaneHitsIt)
{
    struct Case {
        const char* name;
        SurveyPoint P1;
        SurveyPoint P2;
        SurveyPoint target;
        double along; // from P1 toward P2, in plan
    };
    const Case cases[] = {
        // General direction; the target 40 % of the way from P1 to P2.
        {"oblique",
         {1100, 1950, 90},
         {1050, 2100, 95},
         {1080, 2010, 110},
         0.4 * std::sqrt(25000.0)},
        // Runs east-west (equal X).
        {"east-west", {1100, 1900, 0}, {1100, 2100, 0}, {1100, 2030, 105}, 130.0},
        // Runs north-south (equal Y), met to the south-east.
        {"north-south", {900, 2150, 0}, {1100, 2150, 0}, {960, 2150, 95}, 60.0},
    };
    for (const Case& c : cases) {
        const SurveyPoint plane[] = {c.P1, c.P2};
        for (int face = 1; face <= 2; ++face) {
            const AngleObservation sight =
                face == 1 ? aim(FACE_I, c.target) : face_two(aim(FACE_I, c.target));
            const StationRecord& station = face == 1 ? FACE_I : FACE_II;
            PlaneHitRecord out = qtest::sentinel_filled<PlaneHitRecord>();
            ASSERT_EQ(LIB_VPlane(&station, &sight, plane, &out), 0) << c.name << face;
            EXPECT_NEAR(out.X, c.target.X, 1e-4) << c.name << face;
            EXPECT_NEAR(out.Y, c.target.Y, 1e-4) << c.name << face;
            EXPECT_NEAR(out.H, c.target.H, 1e-4) << c.name << face;
            EXPECT_NEAR(out.PlaneAlong, c.along, 1e-4) << c.name << face;
            EXPECT_NEAR(out.PlaneOffset, c.target.H - c.P1.H, 1e-4) << c.name << face;
            const double dx = c.target.X - 1000.0;
            const double dy = c.target.Y - 2000.0;
            const double dh = c.target.H - 101.5;
            EXPECT_NEAR(out.SightDistance, std::sqrt(dx * dx + dy * dy + dh * dh), 1e-4);
        }
    }
}

TEST(VerticalPlane, SpecialBranchesGiveThePlaneExactly)
{
    const SurveyPoint east_west[] = {{1100, 1900, 0}, {1100, 2100, 0}};
    PlaneHitRecord out;
    AngleObservation sight = aim(FACE_I, {1100, 2030, 105});
    sight.Horizontal += 0.5; // off the target, still on the plane
    ASSERT_EQ(LIB_VPlane(&FACE_I, &sight, east_west, &out), 0);
    EXPECT_BITS(out.X, 1100.0);

    const SurveyPoint north_south[] = {{900, 2150, 0}, {1100, 2150, 0}};
    sight = aim(FACE_I, {960, 2150, 95});
    sight.Zenith += 30.0;
    ASSERT_EQ(LIB_VPlane(&FACE_I, &sight, north_south, &out), 0);
    EXPECT_BITS(out.Y, 2150.0);
}

TEST(VerticalPlane, Failures)
{
    const SurveyPoint oblique[] = {{1100, 1950, 90}, {1050, 2100, 95}};
    const AngleObservation at_plane = aim(FACE_I, {1080, 2010, 110});
    const AngleObservation away = {at_plane.Horizontal + 648000.0, at_plane.Zenith, 0.0};
    struct Case {
        const char* name;
        StationRecord station;
        AngleObservation sight;
        SurveyPoint P1;
        SurveyPoint P2;
        int status;
    };
    const Case cases[] = {
        {"sight away from the plane", FACE_I, away, oblique[0], oblique[1], 5},
        // Face II angles read as face I: the reading is a half circle off.
        {"faces not reduced", FACE_I, face_two(at_plane), oblique[0], oblique[1], 5},
        {"face II reading of the wrong face", FACE_II, at_plane, oblique[0], oblique[1], 5},
        // Both plane points in one line of sight from the station.
        {"plane through the sight", FACE_I, at_plane, {1100, 2000, 0}, {1200, 2000, 0}, 3},
        // Station plumb under P1 (no azimuth, 0) and P2 due north.
        {"station under a plane point",
         station_at(1100, 1950, 0, 1.5, 1, 1),
         at_plane,
         {1100, 1950, 0},
         {1200, 1950, 0},
         3},
        {"northing out of range", FACE_I, {0.0, 324000.0, 0.0}, {2e8, 1900, 0}, {2e8, 2100, 0}, 2},
        // One second above the horizon for ten thousand kilometres.
        {"height out of range", FACE_I, {0.0, 1.0, 0.0}, {1e7, 1900, 0}, {1e7, 2100, 0}, 2},
    };
    for (const Case& c : cases) {
        const SurveyPoint plane[] = {c.P1, c.P2};
        PlaneHitRecord out = qtest::sentinel_filled<PlaneHitRecord>();
        EXPECT_EQ(LIB_VPlane(&c.station, &c.sight, plane, &out), c.status) << c.name;
        EXPECT_TRUE(qtest::untouched(out)) << c.name;
    }
}

TEST(VerticalPlane, RangeLimitItselfIsAccepted)
{
    const StationRecord station = station_at(0, 0, 0, 0, 1, 1);
    const SurveyPoint plane[] = {{99999999.9999, -10, 0}, {99999999.9999, 10, 0}};
    const AngleObservation north = {0.0, 324000.0, 0.0};
    PlaneHitRecord out;
    EXPECT_EQ(LIB_VPlane(&station, &north, plane, &out), 0);
    EXPECT_BITS(out.X, 99999999.9999);
}

TEST(SlopePlane, SightAimedAtAPointOfThePlaneHitsIt)
{
    struct Case {
        const char* name;
        SurveyPoint P1, P2, P3;
        SurveyPoint target;
        double along;
        double offset; // negative left of P1 -> P2
    };
    const Case cases[] = {
        // Level plane at 95 m, line P1 -> P2 due north from the station's
        // plan position: east of it is right.
        {"level, right",
         {1000, 2000, 95},
         {1010, 2000, 95},
         {1000, 2010, 95},
         {1030, 2040, 95},
         30.0,
         40.0},
        {"level, left",
         {1000, 2000, 95},
         {1010, 2000, 95},
         {1000, 2010, 95},
         {1030, 1960, 95},
         30.0,
         -40.0},
        // Rising half a metre per metre to the north; the line P1 -> P2
        // runs east, the target lies north of it, so to its left.
        {"sloped, left",
         {1100, 1900, 100},
         {1100, 2100, 100},
         {1200, 1900, 150},
         {1150, 1930, 125},
         30.0,
         -std::sqrt(50.0 * 50.0 + 25.0 * 25.0)},
    };
    for (const Case& c : cases) {
        const SurveyPoint plane[] = {c.P1, c.P2, c.P3};
        for (int face = 1; face <= 2; ++face) {
            const AngleObservation sight =
                face == 1 ? aim(FACE_I, c.target) : face_two(aim(FACE_I, c.target));
            const StationRecord& station = face == 1 ? FACE_I : FACE_II;
            PlaneHitRecord out = qtest::sentinel_filled<PlaneHitRecord>();
            ASSERT_EQ(LIB_SPlane(&station, &sight, plane, &out), 0) << c.name << face;
            EXPECT_NEAR(out.X, c.target.X, 1e-4) << c.name << face;
            EXPECT_NEAR(out.Y, c.target.Y, 1e-4) << c.name << face;
            EXPECT_NEAR(out.H, c.target.H, 1e-4) << c.name << face;
            EXPECT_NEAR(out.PlaneAlong, c.along, 1e-4) << c.name << face;
            EXPECT_NEAR(out.PlaneOffset, c.offset, 1e-4) << c.name << face;
            const double dx = c.target.X - 1000.0;
            const double dy = c.target.Y - 2000.0;
            const double dh = c.target.H - 101.5;
            EXPECT_NEAR(out.SightDistance, std::sqrt(dx * dx + dy * dy + dh * dh), 1e-4);
        }
    }
}

TEST(SlopePlane, Failures)
{
    const SurveyPoint level[] = {{1000, 2000, 95}, {1010, 2000, 95}, {1000, 2010, 95}};
    const SurveyPoint collinear[] = {{1000, 2000, 95}, {1010, 2000, 96}, {1020, 2000, 97}};
    // A wall at X = 1010 and a plumb sight along it.
    const SurveyPoint wall[] = {{1010, 2000, 0}, {1010, 2010, 0}, {1010, 2000, 10}};
    const SurveyPoint far_north[] = {{2e8, 0, 0}, {2e8, 10, 0}, {2e8, 0, 10}};
    const AngleObservation down = aim(FACE_I, {1030, 2040, 95});
    const AngleObservation up = {down.Horizontal, 1296000.0 - down.Zenith - 648000.0, 0.0};
    struct Case {
        const char* name;
        const SurveyPoint* plane;
        AngleObservation sight;
        int status;
    };
    const Case cases[] = {
        {"collinear plane points", collinear, down, 3},
        {"plumb sight along a wall", wall, {0.0, 0.0, 0.0}, 3},
        {"plane met behind the instrument", level, up, 5},
        {"face II angles on face I", level, face_two(down), 5},
        {"northing out of range", far_north, {0.0, 324000.0, 0.0}, 2},
    };
    for (const Case& c : cases) {
        PlaneHitRecord out = qtest::sentinel_filled<PlaneHitRecord>();
        EXPECT_EQ(LIB_SPlane(&FACE_I, &c.sight, c.plane, &out), c.status) << c.name;
        EXPECT_TRUE(qtest::untouched(out)) << c.name;
    }
}

TEST(SlopePlane, OnlyTheNorthingIsRangeTested)
{
    // A wall 2e8 m to the east, sighted level toward the east.
    const StationRecord station = station_at(0, 0, 0, 0, 1, 1);
    const SurveyPoint far_east[] = {{0, 2e8, 0}, {10, 2e8, 0}, {0, 2e8, 10}};
    const AngleObservation east = {324000.0, 324000.0, 0.0};
    PlaneHitRecord out;
    EXPECT_EQ(LIB_SPlane(&station, &east, far_east, &out), 0);
    EXPECT_NEAR(out.Y, 2e8, 1e-6);
}

TEST(VerticalPlane, FaceCheckIsNotFoldedAtTheEndOfTheCircle)
{
    // A face II reading just over a half circle reduces to just over 0,
    // while the sight itself (648000 seconds being 0.011 seconds short of
    // the true half circle) points just west of north: the azimuth of the
    // point is then close to 1296000 and the check fails. Half a second
    // further east the two agree.
    const SurveyPoint east_west[] = {{1100, 1900, 0}, {1100, 2100, 0}};
    struct Case {
        double reading;
        int status;
    };
    const Case cases[] = {{648000.005, 5}, {648000.5, 0}};
    for (const Case& c : cases) {
        const AngleObservation sight = {c.reading, 972000.0, 0.0};
        PlaneHitRecord out = qtest::sentinel_filled<PlaneHitRecord>();
        EXPECT_EQ(LIB_VPlane(&FACE_II, &sight, east_west, &out), c.status) << c.reading;
        EXPECT_EQ(qtest::untouched(out), c.status != 0) << c.reading;
    }
}
