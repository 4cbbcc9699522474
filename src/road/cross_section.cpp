// The road's cross-section: widths and cross slopes looked up along the
// chainage, the edge point in plan and the edge elevation.
#include "../core/core.hpp"

using namespace quillon;

namespace {

// Sides of the road, seen in the direction of the chainage.
enum Side : unsigned char { SIDE_LEFT = 0, SIDE_RIGHT = 1 };

// Looks chainage K up in a table whose Left and Right values lie within
// [low, high], interpolating linearly between records in mode 0.
ResultCode look_up(const SectionRecord* table, unsigned char count, double K, SectionRecord* out,
                   unsigned char mode, double low, double high)
{
    const unsigned int n = count;
    if (n > ROAD_LIST_CAPACITY) {
        return TABLE;
    }
    // An empty table has no first record to read.
    if (n == 0) {
        return DOMAIN;
    }
    for (unsigned int i = 0; i < n; ++i) {
        const SectionRecord& record = table[i];
        if (!in_range(record.Chainage) || !within(record.Left, low, high) ||
            !within(record.Right, low, high)) {
            return DOMAIN;
        }
    }
    out->Chainage = K;
    const SectionRecord& first = table[0];
    const SectionRecord& last = table[n - 1];
    if (K <= first.Chainage) {
        out->Left = first.Left;
        out->Right = first.Right;
        return OK;
    }
    if (K >= last.Chainage) {
        out->Left = last.Left;
        out->Right = last.Right;
        return OK;
    }
    // Any mode but 0 looks nothing up between the table's chainages; a
    // single record has nothing between.
    for (unsigned int i = 0; i + 1 < n; ++i) {
        const SectionRecord& a = table[i];
        const SectionRecord& b = table[i + 1];
        if (K >= a.Chainage && K < b.Chainage && mode == 0) {
            const double d = b.Chainage - a.Chainage;
            out->Left = (b.Left - a.Left) / d * (K - a.Chainage) + a.Left;
            if (!within(out->Left, low, high)) {
                return RANGE;
            }
            out->Right = (K - a.Chainage) * (b.Right - a.Right) / d + a.Right;
            if (!within(out->Right, low, high)) {
                return RANGE;
            }
            return OK;
        }
    }
    return OK;
}

} // namespace

ResultCode LIB_CalWay_Width(const SectionRecord* table, unsigned char count, double chainage,
                            SectionRecord* out, unsigned char mode)
{
    return look_up(table, count, chainage, out, mode, 0.0, RANGE_LIMIT);
}

ResultCode LIB_CalWay_SideSlope(const SectionRecord* table, unsigned char count, double chainage,
                                SectionRecord* out, unsigned char mode)
{
    return look_up(table, count, chainage, out, mode, -1.0, 1.0);
}

ResultCode LIB_CalWay_H_Side(const TangentPoint* centre, const SectionRecord* widths,
                             TangentPoint* out, unsigned char side)
{
    if (side == SIDE_LEFT || side == SIDE_RIGHT) {
        double p = 0.0;
        double w = 0.0;
        if (side == SIDE_LEFT) {
            p = add_turn_if_negative<ArcSeconds>(centre->Azimuth - QUARTER_CIRCLE);
            w = widths->Left;
        } else {
            p = take_turn_if_above<ArcSeconds>(centre->Azimuth + QUARTER_CIRCLE);
            w = widths->Right;
        }
        out->Azimuth = p;
        out->X = centre->X + w * std::cos(sec_to_rad(p));
        out->Y = centre->Y + w * std::sin(sec_to_rad(p));
    }
    // Any other side writes nothing; what the output holds is checked all the
    // same. The azimuth bound is two full circles, inclusive.
    if (!within(out->Azimuth, 0.0, ROAD_AZIMUTH_LIMIT)) {
        return RANGE;
    }
    if (!in_range(out->X) || !in_range(out->Y)) {
        return RANGE;
    }
    return OK;
}

ResultCode LIB_CalWay_V_Side(const SectionRecord* widths, const SectionRecord* slopes,
                             double centre_elevation, double range_start, double range_end,
                             double* elevation, unsigned char side)
{
    const double K = widths->Chainage;
    // The range is widened by the tolerance at both ends.
    if (K - range_start >= -CHAINAGE_TOLERANCE && K - range_end <= CHAINAGE_TOLERANCE) {
        if (side == SIDE_LEFT) {
            *elevation = widths->Left * slopes->Left + centre_elevation;
        } else if (side == SIDE_RIGHT) {
            *elevation = widths->Right * slopes->Right + centre_elevation;
        }
        if (*elevation > RANGE_LIMIT || *elevation < -RANGE_LIMIT) {
            return RANGE;
        }
        return OK;
    }
    // A chainage outside the range is not an error.
    *elevation = 0.0;
    return OK;
}
