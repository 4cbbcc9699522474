// "Where am I?" on an alignment: chainage and offset of a measured point, the
// nearest foot of a perpendicular from it on any element.
//
// Along an element, let f(s) be the component of (point - centre line at s)
// along the tangent there: positive while the point still lies ahead. The
// distance to the point falls while f > 0 and rises while f < 0, so its local
// minima - the feet - are where f changes from positive to not positive.
// Each element is walked in stretches turning by at most 1/8 rad, f taken at
// their ends; where it changes sign the foot is found in closed form on a
// line or an arc, by a bracketed Newton iteration on a transition (f' = -1 +
// curvature * offset). From the end of one element to the start of the next,
// f positive and then not positive means the point lies in the wedge outside
// an angle point (or in the gap of a joint), and the joint is its foot. So
// every change of sign along the whole table is caught, whatever rounding
// does at the joints.
#include "road_geometry.hpp"

#include <cfloat>
#include <limits>

using namespace quillon::survey;

namespace {

// A point this close before the start or beyond the end takes its foot there.
constexpr double END_TOLERANCE = 1.0e-6;

// Most a stretch searched for one foot may turn, radians: with its length at
// most 1/8 of the element's smallest radius R, the distance to a point has a
// single minimum on it whenever that minimum is below 7/8 R (f' = -1 +
// curvature * offset stays negative along it).
constexpr double STRETCH_TURN = 0.125;

constexpr int MAX_ITERATIONS = 200;

struct Target {
    double x;
    double y;
};

struct Foot {
    bool found;
    double distance;
    double chainage;
    double offset;
    double centre_x;
    double centre_y;
    double azimuth;
    std::size_t element;
};

// Component of the point along the tangent of a frame (f above).
double ahead_of(const Target& point, const Frame& frame)
{
    const Direction tangent = direction_of(frame);
    return (point.x - frame.x) * tangent.cos_azimuth + (point.y - frame.y) * tangent.sin_azimuth;
}

double distance_between(const Target& point, double x, double y)
{
    const double dx = point.x - x;
    const double dy = point.y - y;
    return std::sqrt(dx * dx + dy * dy);
}

// Keeps the nearer foot; at equal distances the earlier element.
void offer(Foot& best, const Foot& candidate)
{
    if (!best.found || candidate.distance < best.distance ||
        (candidate.distance == best.distance && candidate.element < best.element)) {
        best = candidate;
        best.found = true;
    }
}

// A foot on the centre line at a frame: the offset measured along the
// right-hand normal there.
void offer_frame(Foot& best, const Target& point, const Frame& centre, double chainage,
                 std::size_t element)
{
    const Direction tangent = direction_of(centre);
    Foot foot;
    foot.found = true;
    foot.distance = distance_between(point, centre.x, centre.y);
    foot.chainage = chainage;
    foot.offset =
        -(point.x - centre.x) * tangent.sin_azimuth + (point.y - centre.y) * tangent.cos_azimuth;
    foot.centre_x = centre.x;
    foot.centre_y = centre.y;
    foot.azimuth = fold_azimuth(centre.azimuth);
    foot.element = element;
    offer(best, foot);
}

// The joint as the foot of a point outside an angle point: the offset is the
// distance to the joint, signed by the side of the mean tangent.
void offer_joint(Foot& best, const Target& point, const Frame& end_before, const Frame& next_start,
                 double chainage, std::size_t element)
{
    const Direction before = direction_of(end_before);
    const Direction after = direction_of(next_start);
    const double mean_x = before.cos_azimuth + after.cos_azimuth;
    const double mean_y = before.sin_azimuth + after.sin_azimuth;
    const double dx = point.x - next_start.x;
    const double dy = point.y - next_start.y;
    double side = -dx * mean_y + dy * mean_x;
    if (side == 0.0) {
        side = -dx * after.sin_azimuth + dy * after.cos_azimuth;
    }
    Foot foot;
    foot.found = true;
    foot.distance = std::sqrt(dx * dx + dy * dy);
    foot.chainage = chainage;
    foot.offset = side < 0.0 ? -foot.distance : foot.distance;
    foot.centre_x = next_start.x;
    foot.centre_y = next_start.y;
    foot.azimuth = fold_azimuth(next_start.azimuth);
    foot.element = element;
    offer(best, foot);
}

// Arc length t in (0, width] from a frame where f changes sign, f(0) > 0 >=
// f(width): Newton steps on f, replaced by halving the bracket whenever a
// step would leave it or shrink it too slowly. The frame at the root is
// returned through foot.
double transition_root(const Target& point, const Frame& from, double curvature_rate, double width,
                       double f_low, double f_high, Frame& foot)
{
    if (f_high == 0.0) {
        foot = advance(from, curvature_rate, width);
        return width;
    }
    const double tolerance = std::fmax(1.0e-12, 8.0 * DBL_EPSILON * width);
    double low = 0.0;
    double high = width;
    double t = width * f_low / (f_low - f_high);
    double step_before = width;
    for (int iteration = 0; iteration < MAX_ITERATIONS; ++iteration) {
        const Frame frame = advance(from, curvature_rate, t);
        const Direction tangent = direction_of(frame);
        const double dx = point.x - frame.x;
        const double dy = point.y - frame.y;
        const double f = dx * tangent.cos_azimuth + dy * tangent.sin_azimuth;
        const double offset = -dx * tangent.sin_azimuth + dy * tangent.cos_azimuth;
        const double slope = -1.0 + frame.curvature * offset;
        if (f == 0.0) {
            foot = frame;
            return t;
        }
        if (f > 0.0) {
            low = t;
        } else {
            high = t;
        }
        double next = 0.5 * (low + high);
        if (slope < 0.0) {
            const double newton = t - f / slope;
            const bool inside = newton > low && newton < high;
            const bool fast = std::fabs(2.0 * f) <= std::fabs(step_before * slope);
            if (inside && fast) {
                next = newton;
            }
        }
        step_before = next - t;
        t = next;
        if (std::fabs(step_before) <= tolerance || high - low <= tolerance) {
            break;
        }
    }
    foot = advance(from, curvature_rate, t);
    return t;
}

// Arc length t in [0, width] from a frame to the foot on an arc: the angle,
// in the sense of travel, from the radius through the frame to the radius
// through the point, times the radius.
double arc_root(const Target& point, const Frame& from, double width)
{
    const double curvature = from.curvature;
    const Direction tangent = direction_of(from);
    const double sense = curvature > 0.0 ? 1.0 : -1.0;
    // From the centre toward the frame, and from the centre toward the point.
    const double radial_x = sense * tangent.sin_azimuth;
    const double radial_y = -sense * tangent.cos_azimuth;
    const double vx = point.x - (from.x - tangent.sin_azimuth / curvature);
    const double vy = point.y - (from.y + tangent.cos_azimuth / curvature);
    const double turned =
        sense * std::atan2(radial_x * vy - radial_y * vx, radial_x * vx + radial_y * vy);
    return std::fmin(std::fmax(turned / std::fabs(curvature), 0.0), width);
}

// True when f keeps one sign, beyond the tolerance, along the whole element
// and the joint after it offers nothing. With d the distance from the
// element's start S (tangent t0) to the point and tau the turn bound,
// |f(s) - (P - S).t0| <= d min(tau, 2) + s: the unit tangent moves by at
// most tau (and never by more than 2), the curve by at most s from S.
bool wholly_ahead_or_behind(const Target& point, const HElement* table, std::size_t record_count,
                            std::size_t index, const Element& element, double bound)
{
    const double ahead = ahead_of(point, element.start);
    const double spread =
        distance_between(point, element.start.x, element.start.y) * std::fmin(bound, 2.0) +
        element.span;
    if (ahead + spread < -END_TOLERANCE) {
        return true;
    }
    if (ahead - spread <= END_TOLERANCE) {
        return false;
    }
    if (index + 2 == record_count) {
        return true;
    }
    const HElement& next = table[index + 1];
    const Frame next_start{next.X, next.Y, fold_azimuth(next.Azimuth), 0.0};
    return ahead_of(point, next_start) > 0.0;
}

// Every foot of the point on element index, stretch by stretch (each turning
// by at most STRETCH_TURN); the joint after it, and the tolerated ends of the
// alignment.
void search_element(Foot& best, const Target& point, const HElement* table,
                    std::size_t record_count, std::size_t index)
{
    const Element element = element_of(table, index);
    const double rate = element.curvature_rate;
    const double bound = turn_bound(element.start.curvature, rate, element.span);
    if (wholly_ahead_or_behind(point, table, record_count, index, element, bound)) {
        return;
    }
    const double stretches = std::fmax(1.0, std::ceil(bound / STRETCH_TURN));
    const double stretch = element.span / stretches;
    Frame from = element.start;
    double low = 0.0;
    double f_low = ahead_of(point, from);
    if (index == 0 && f_low <= 0.0 && f_low >= -END_TOLERANCE) {
        offer_frame(best, point, from, element.chainage, index);
    }
    for (double j = 1.0; j <= stretches; j = j + 1.0) {
        const double high = j == stretches ? element.span : j * stretch;
        const Frame to = advance(from, rate, high - low);
        const double f_high = ahead_of(point, to);
        if (f_low > 0.0 && f_high <= 0.0) {
            Frame foot = to;
            double t = high - low;
            if (rate != 0.0) {
                t = transition_root(point, from, rate, high - low, f_low, f_high, foot);
            } else if (f_high < 0.0) {
                // Along a line f falls by exactly the distance travelled.
                t = from.curvature == 0.0 ? std::fmin(f_low, high - low)
                                          : arc_root(point, from, high - low);
                foot = advance(from, 0.0, t);
            }
            offer_frame(best, point, foot, element.chainage + low + t, index);
        }
        from = to;
        low = high;
        f_low = f_high;
    }
    // from is now the element's end, f_low the point's place ahead of it.
    const double end_chainage = table[index + 1].Chainage;
    if (index + 2 == record_count) {
        if (f_low > 0.0 && f_low <= END_TOLERANCE) {
            offer_frame(best, point, from, end_chainage, index);
        }
        return;
    }
    const HElement& next = table[index + 1];
    const Frame next_start{next.X, next.Y, fold_azimuth(next.Azimuth), 0.0};
    if (f_low > 0.0 && ahead_of(point, next_start) <= 0.0) {
        offer_joint(best, point, from, next_start, end_chainage, index + 1);
    }
}

// True when nothing of element index can lie nearer the point than the
// distance given: its curve lies within its chainage step of its start, the
// next record's point within the distance between the two records (bounded
// here by the sum of the coordinate differences).
bool beyond_reach(const Target& point, const HElement* table, std::size_t index, double distance)
{
    const HElement& record = table[index];
    const HElement& next = table[index + 1];
    const double span = next.Chainage - record.Chainage;
    const double step = std::fabs(next.X - record.X) + std::fabs(next.Y - record.Y);
    const double limit = distance + std::fmax(span, step);
    const double dx = point.x - record.X;
    const double dy = point.y - record.Y;
    return dx * dx + dy * dy > limit * limit;
}

} // namespace

namespace quillon::survey {

bool locate_on(const HElement* table, std::size_t record_count, double x, double y,
               qs_station_offset& out)
{
    const Target point{x, y};
    const std::size_t elements = record_count - 1;

    // First the elements on either side of the record point nearest the
    // point, then every other one that could hold a nearer foot.
    std::size_t nearest = 0;
    double smallest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < elements; ++i) {
        const double dx = x - table[i].X;
        const double dy = y - table[i].Y;
        const double squared = dx * dx + dy * dy;
        if (squared < smallest) {
            smallest = squared;
            nearest = i;
        }
    }
    const std::size_t before = nearest > 0 ? nearest - 1 : nearest;
    Foot best{};
    best.found = false;
    search_element(best, point, table, record_count, nearest);
    if (before != nearest) {
        search_element(best, point, table, record_count, before);
    }
    for (std::size_t i = 0; i < elements; ++i) {
        if (i == nearest || i == before) {
            continue;
        }
        if (best.found && beyond_reach(point, table, i, best.distance)) {
            continue;
        }
        search_element(best, point, table, record_count, i);
    }
    if (!best.found) {
        return false;
    }
    out.chainage = best.chainage;
    out.offset = best.offset;
    out.x = x;
    out.y = y;
    out.azimuth = best.azimuth;
    out.centre_x = best.centre_x;
    out.centre_y = best.centre_y;
    out.element = best.element;
    return true;
}

} // namespace quillon::survey

extern "C" qs_status qs_alignment_locate(const HElement* table, std::size_t record_count, double x,
                                         double y, qs_station_offset* out)
{
    if (!alignment_valid(table, record_count) || !within_range(x) || !within_range(y)) {
        return QS_BAD_ARGUMENT;
    }
    qs_station_offset found;
    if (!locate_on(table, record_count, x, y, found)) {
        return QS_OUTSIDE_ALIGNMENT;
    }
    *out = found;
    return QS_OK;
}
