// Horizontal alignment given element by element: the complete element table,
// the point at a chainage, and the list of chainages to stake out.
#include "horizontal.hpp"

#include <cstring>

using namespace quillon;
using namespace quillon::road;

namespace {

bool in_positive_range(double length) { return length > 0.0 && length <= RANGE_LIMIT; }

bool start_valid(const HElement& first)
{
    // The start azimuth may be a full two circles here, one more than the
    // element functions accept.
    return in_range(first.X) && in_range(first.Y) && first.Azimuth >= 0.0 &&
           first.Azimuth <= ROAD_AZIMUTH_LIMIT && in_range(first.Chainage);
}

bool element_valid(const HElement& element)
{
    if (element.Type != LINE && element.Type != ARC && element.Type != TRANSITION) {
        return false;
    }
    if (!in_positive_range(element.Length)) {
        return false;
    }
    if (element.Type == ARC || element.Type == TRANSITION) {
        if (!in_positive_range(element.Radius)) {
            return false;
        }
        if (element.Turn != TURN_LEFT && element.Turn != TURN_RIGHT) {
            return false;
        }
    }
    if (element.Type == TRANSITION && element.Spiral != ENTRY && element.Spiral != EXIT) {
        return false;
    }
    return true;
}

// End of element i written into record i+1: azimuth and position.
ResultCode compute_end(const HElement& element, HElement& next)
{
    ResultCode status = OK;
    PlanePoint end = {0.0, 0.0};
    if (element.Type == LINE) {
        status = LIB_CalWay_H_Line_On(&element, element.Length, &end);
        // A line followed by a line keeps its own azimuth: the alignment may
        // break there. The test reads the next record as it stands, which
        // for the last element is the caller's end slot.
        if (status == OK && next.Type != LINE) {
            next.Azimuth = element.Azimuth;
        }
    } else if (element.Type == ARC) {
        status = azimuth_then_point(element, element.Length, LIB_CalWay_H_Circle_AZ,
                                    LIB_CalWay_H_Circle_On, &next.Azimuth, &end);
    } else if (element.Spiral == ENTRY) {
        status = azimuth_then_point(element, element.Length, LIB_CalWay_H_Curve_AZ,
                                    LIB_CalWay_H_Curve_On, &next.Azimuth, &end);
    } else {
        TangentPoint far_end;
        status = LIB_CalWay_H_Curve_End(&element, &far_end);
        if (status == OK) {
            end = {far_end.X, far_end.Y};
            next.Azimuth = far_end.Azimuth;
        }
    }
    if (status != OK) {
        return status;
    }
    next.X = end.X;
    next.Y = end.Y;
    return OK;
}

// Along a straight the azimuth is the element's own.
ResultCode line_azimuth(const HElement* element, double, double* azimuth)
{
    *azimuth = element->Azimuth;
    return OK;
}

// Element i evaluated at chainage K inside it; the position is written
// before the azimuth.
ResultCode evaluate(const HElement* table, unsigned int i, double K, TangentPoint* out)
{
    const HElement& element = table[i];
    const double l = K - element.Chainage;
    if (element.Type == LINE) {
        return point_then_azimuth(element, l, LIB_CalWay_H_Line_On, line_azimuth, out);
    } else if (element.Type == ARC) {
        return point_then_azimuth(element, l, LIB_CalWay_H_Circle_On, LIB_CalWay_H_Circle_AZ, out);
    } else if (element.Type == TRANSITION && element.Spiral == ENTRY) {
        return point_then_azimuth(element, l, LIB_CalWay_H_Curve_On, LIB_CalWay_H_Curve_AZ, out);
    } else if (element.Type == TRANSITION && element.Spiral == EXIT) {
        // An exit curve is evaluated backward from its far end, where the
        // curvature is zero: the next record holds that end and the forward
        // azimuth there, turned here into the backward azimuth.
        const HElement& next = table[i + 1];
        HElement backward = element;
        backward.X = next.X;
        backward.Y = next.Y;
        backward.Azimuth = take_turn_if_above<ArcSeconds>(next.Azimuth + HALF_CIRCLE);
        return point_then_azimuth(backward, next.Chainage - K, LIB_CalWay_H_Curve_On,
                                  LIB_CalWay_H_Curve_AZ, out);
    }
    return OK;
}

// The chainages to stake out must lie in range, the interval from 0 to the
// range limit, and their count within an element table's; piles need a
// start chainage to count from. Every failure gives the same status and
// writes nothing, so the count is tested before any chainage is read: a
// count above the table's never reads beyond the 81 a table can hold.
bool pile_request_valid(const double* chainages, unsigned int given, double interval)
{
    if (given > ROAD_TABLE_CAPACITY) {
        return false;
    }
    for (unsigned int j = 0; j < given; ++j) {
        if (!in_range(chainages[j])) {
            return false;
        }
    }
    if (!(interval >= 0.0 && interval <= RANGE_LIMIT)) {
        return false;
    }
    return !(given == 0 && interval > 0.0);
}

// One more pile, when the list has room for it.
bool append_pile(double* piles, unsigned int* count, double chainage)
{
    if (*count >= ROAD_LIST_CAPACITY) {
        return false;
    }
    piles[*count] = chainage;
    *count = *count + 1;
    return true;
}

// Piles every interval D after the given chainages: mode 0 starts at the
// first multiple of D from the first chainage on, mode 1 one interval after
// it, any other mode at 0. The last chainage is already in the list: the
// piles stop before reaching it. TABLE when the list runs full.
ResultCode add_piles(const double* chainages, unsigned int given, double D, unsigned char mode,
                     double* piles, unsigned int* count)
{
    double p = 0.0;
    if (mode == 0) {
        p = std::ceil(chainages[0] / D) * D;
    } else if (mode == 1) {
        p = chainages[0] + D;
    }
    const double E = chainages[given - 1];
    if (p < E && !append_pile(piles, count, p)) {
        return TABLE;
    }
    while (piles[*count - 1] + D < E) {
        if (!append_pile(piles, count, piles[*count - 1] + D)) {
            return TABLE;
        }
    }
    return OK;
}

// Ascending order, as an exchange sort leaves it: for each position the
// smallest of the entries from there on, swapped in. Where no two entries
// compare equal with different bits, the sorted list is the only one there
// is, and an insertion sort finds it in one pass over a list that is
// already nearly in order (the main points, then the piles). Only zeros of
// both signs tell the two sorts apart: then the exchange sort runs.
bool zeros_of_both_signs(const double* piles, unsigned int count)
{
    bool positive = false;
    bool negative = false;
    for (unsigned int i = 0; i < count; ++i) {
        if (piles[i] == 0.0) {
            negative = negative || std::signbit(piles[i]);
            positive = positive || !std::signbit(piles[i]);
        }
    }
    return positive && negative;
}

void sort_piles(double* piles, unsigned int count)
{
    if (zeros_of_both_signs(piles, count)) {
        for (unsigned int i = 0; i < count; ++i) {
            for (unsigned int j = i + 1; j < count; ++j) {
                if (piles[j] < piles[i]) {
                    const double swap = piles[i];
                    piles[i] = piles[j];
                    piles[j] = swap;
                }
            }
        }
        return;
    }
    for (unsigned int i = 1; i < count; ++i) {
        const double pile = piles[i];
        unsigned int j = i;
        while (j > 0 && pile < piles[j - 1]) {
            piles[j] = piles[j - 1];
            j = j - 1;
        }
        piles[j] = pile;
    }
}

// A pile within the tolerance of the one before it is removed and the list
// closed up, each slot freed at the end set to -1. One forward pass: the
// entry that moves up after a removal is kept without being compared with
// the same predecessor again, so of three close entries in a row the first
// and the third stay.
unsigned int remove_close_piles(double* piles, unsigned int count)
{
    if (count == 0) {
        return 0;
    }
    unsigned int kept = 1;
    unsigned int next = 1;
    while (next < count) {
        if (piles[next] - piles[kept - 1] <= CHAINAGE_TOLERANCE) {
            next = next + 1;
            if (next < count) {
                piles[kept] = piles[next];
                kept = kept + 1;
                next = next + 1;
            }
        } else {
            piles[kept] = piles[next];
            kept = kept + 1;
            next = next + 1;
        }
    }
    for (unsigned int i = kept; i < count; ++i) {
        piles[i] = -1.0;
    }
    return kept;
}

void copy_station(const HElement& record, TangentPoint* out)
{
    out->X = record.X;
    out->Y = record.Y;
    out->Azimuth = record.Azimuth;
}

} // namespace

ResultCode LIB_CalWay_H_Ele_MainPoint(const HElement* elements, unsigned char n, HElement* table)
{
    const unsigned int records = n;
    if (records > ROAD_TABLE_CAPACITY || records < 2) {
        return TABLE;
    }
    if (!start_valid(elements[0])) {
        return DOMAIN;
    }
    for (unsigned int i = 0; i + 1 < records; ++i) {
        if (!element_valid(elements[i])) {
            return DOMAIN;
        }
    }
    // The last slot is not copied: it becomes the end record.
    for (unsigned int i = 0; i + 1 < records; ++i) {
        // Byte for byte, padding included; the caller may build in place.
        std::memmove(&table[i], &elements[i], sizeof(HElement));
    }
    for (unsigned int i = 0; i + 1 < records; ++i) {
        const ResultCode status = compute_end(table[i], table[i + 1]);
        if (status != OK) {
            return status;
        }
        table[i + 1].Chainage = table[i].Chainage + table[i].Length;
        if (!in_range(table[i + 1].Chainage)) {
            return RANGE;
        }
    }
    table[records - 1].Type = END_RECORD;
    return OK;
}

ResultCode LIB_CalWay_H_On(const HElement* table, unsigned char n, double chainage,
                           TangentPoint* out)
{
    const unsigned int records = n;
    // An empty table has no end record to fall back on.
    if (records == 0) {
        return TABLE;
    }
    const double K = chainage;
    for (unsigned int i = 0; i + 1 < records; ++i) {
        const double to_start = K - table[i].Chainage;
        // Well beyond this record and at or beyond the next: neither test
        // below can hold.
        if (to_start >= CHAINAGE_TOLERANCE && K >= table[i + 1].Chainage) {
            continue;
        }
        // A main point is delivered as stored, not recomputed.
        if (std::fabs(to_start) < CHAINAGE_TOLERANCE) {
            copy_station(table[i], out);
            break;
        }
        if (K > table[i].Chainage && K < table[i + 1].Chainage) {
            const ResultCode status = evaluate(table, i, K, out);
            if (status != OK) {
                return status;
            }
            break;
        }
    }
    // At or beyond the end (within the tolerance) the end record stands.
    if (table[records - 1].Chainage - K < CHAINAGE_TOLERANCE) {
        copy_station(table[records - 1], out);
    }
    return OK;
}

ResultCode LIB_CalWay_Pile(const double* chainages, unsigned char m, double interval, double* piles,
                           uint32_t* pile_count, unsigned char mode)
{
    const unsigned int given = m;
    if (!pile_request_valid(chainages, given, interval)) {
        return DOMAIN;
    }
    for (unsigned int j = 0; j < given; ++j) {
        piles[j] = chainages[j];
    }
    unsigned int count = given;
    if (interval == 0.0) {
        *pile_count = count;
        return OK;
    }
    // A full list is delivered as it stands, unsorted.
    if (add_piles(chainages, given, interval, mode, piles, &count) != OK) {
        *pile_count = count;
        return TABLE;
    }
    sort_piles(piles, count);
    *pile_count = remove_close_piles(piles, count);
    return OK;
}
