// Sightings met by vertical and slope planes.
#include "check.hpp"
#include "records.hpp"

using qtest::Call;

namespace {

// Instrument centre at (1000, 2000, 101.5).
const StationRecord FACE_I = qtest::station(1000, 2000, 100),
                    FACE_II = qtest::station(1000, 2000, 100, 1, -1);
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
    const double dx = target.X - 1000.0, dy = target.Y - 2000.0;
    const double azimuth = std::fmod(std::atan2(dy, dx) * QUILLON_RHO_SEC + 1296000.0, 1296000.0);
    return {azimuth, std::atan2(std::hypot(dx, dy), target.H - 101.5) * QUILLON_RHO_SEC, 0.0};
}

AngleObservation face_two(const AngleObservation& face_one)
{
    return {std::fmod(face_one.Horizontal + 648000.0, 1296000.0), 1296000.0 - face_one.Zenith, 0};
}

// The two plane functions, with the names their checks report.
struct PlaneFunction {
    const char* name;
    decltype(&LIB_VPlane) call;
};
const PlaneFunction VPLANE = {"LIB_VPlane", LIB_VPlane}, SPLANE = {"LIB_SPlane", LIB_SPlane};

// A sight aimed at a point of the plane, on either face, finds it again. A
// vertical plane running east-west or north-south gives its X or Y exactly.
void expect_hit(const PlaneFunction& function, const Plane& plane, SurveyPoint t, double along,
                double offset)
{
    const bool vertical = function.call == LIB_VPlane;
    for (const StationRecord* station : {&FACE_I, &FACE_II}) {
        const Call call(function.name, "target (" + std::to_string(t.X) + ", " +
                                           std::to_string(t.Y) + "), face " +
                                           (station == &FACE_I ? "I" : "II"));
        const AngleObservation sight = station == &FACE_I ? aim(t) : face_two(aim(t));
        PlaneHitRecord out;
        ASSERT_STATUS(call, function.call(station, &sight, plane, &out), 0);
        EXPECT_BELOW(call, std::hypot(out.X - t.X, out.Y - t.Y, out.H - t.H), 1e-4);
        EXPECT_WITHIN(call, out.SightDistance, std::hypot(t.X - 1000.0, t.Y - 2000.0, t.H - 101.5),
                      1e-4);
        EXPECT_BELOW(call, std::hypot(out.PlaneAlong - along, out.PlaneOffset - offset), 1e-4);
        if (vertical && plane[0].X == plane[1].X) {
            EXPECT_BITS(call, out.X, plane[0].X);
        }
        if (vertical && plane[0].Y == plane[1].Y) {
            EXPECT_BITS(call, out.Y, plane[0].Y);
        }
    }
}

} // namespace

TEST(Planes, SightAimedAtThePlaneHitsIt)
{
    expect_hit(VPLANE, OBLIQUE, {1080, 2010, 110}, 0.4 * std::sqrt(25000.0), 20);
    expect_hit(VPLANE, EAST_WEST, {1100, 2030, 105}, 130.0, 105.0);
    expect_hit(VPLANE, NORTH_SOUTH, {960, 2150, 95}, 60.0, 95.0);
    // East of the level plane's line is right of it; north of the sloped
    // plane's line (rising half a metre per metre northward) is left of it.
    expect_hit(SPLANE, LEVEL, {1030, 2050, 95}, 30.0, 40.0);
    // West of it is left, though its direction from P1 (326 degrees) is past a half circle.
    expect_hit(SPLANE, LEVEL, {1030, 1990, 95}, 30.0, -20.0);
    expect_hit(SPLANE, SLOPED, {1150, 1930, 125}, 30.0, -std::sqrt(3125.0));
}

TEST(Planes, FailuresInTheirOrder)
{
    const AngleObservation at = aim({1080, 2010, 110});
    const AngleObservation away = {at.Horizontal + 648000.0, at.Zenith, 0.0};
    const SurveyPoint o1 = OBLIQUE[0];
    const double limit = qtest::LIMIT, above = qtest::ABOVE_LIMIT;
    PlaneFunction function = VPLANE;
    auto fails = [&](const char* name, const StationRecord& station, AngleObservation sight,
                     const Plane& plane, int status) {
        const Call call(function.name, name);
        PlaneHitRecord out = qtest::sentinel_filled<PlaneHitRecord>();
        EXPECT_STATUS(call, function.call(&station, &sight, plane, &out), status);
        EXPECT_WRITTEN_IF(call, out, status == 0);
    };
    fails("sight away from the plane", FACE_I, away, OBLIQUE, 5);
    fails("under P1: azimuth 0", qtest::station(1100, 1950, 0), at, {o1, {1200, 1950, 0}}, 3);
    // Coincident plane points share their azimuths and give 3, unless a
    // signed zero sends their directions to either side of south.
    fails("plane points coincide", FACE_I, at, {o1, {1100, 1950, 7}}, 3);
    fails("coincide but for -0", ORIGIN, at, {{-10, 0.0, 0}, {-10, -0.0, 5}}, 1);
    fails("northing beyond the limit", ORIGIN, NORTH, {{above, -10, 0}, {above, 10, 0}}, 2);
    fails("northing at the limit", ORIGIN, NORTH, {{limit, -10, 0}, {limit, 10, 0}}, 0);
    // One second above the horizon for ten thousand kilometres.
    fails("height out of range", FACE_I, {0.0, 1.0, 0.0}, {{1e7, 1900, 0}, {1e7, 2100, 0}}, 2);
    // Reduced to face I the reading lies just east of north, the sight (a
    // half circle of 3.1415926) just west: the check is not folded at north.
    fails("reduced reading past north", FACE_II, {648000.005, 972000.0, 0}, EAST_WEST, 5);
    fails("reduced reading clear of north", FACE_II, {648000.5, 972000.0, 0}, EAST_WEST, 0);

    const AngleObservation down = aim({1030, 2050, 95});
    const AngleObservation up = {down.Horizontal, 648000.0 - down.Zenith, 0.0};
    function = SPLANE;
    fails("collinear", FACE_I, down, {{1000, 2000, 95}, {1010, 2000, 96}, {1020, 2000, 97}}, 3);
    fails("plane met behind the instrument", FACE_I, up, LEVEL, 5);
    fails("face II angles on face I", FACE_I, face_two(down), LEVEL, 5);
    fails("northing out of range", ORIGIN, NORTH, {{2e8, 0, 0}, {2e8, 10, 0}, {2e8, 0, 10}}, 2);
    // Only the northing is tested: a wall 2e8 m to the east is met.
    fails("easting", ORIGIN, {324000.0, 324000.0, 0}, {{0, 2e8, 0}, {9, 2e8, 0}, {0, 2e8, 9}}, 0);
}
