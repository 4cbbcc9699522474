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

// End of element i written into record i+1: azimuth first, then position.
ResultCode compute_end(const HElement& element, HElement& next)
{
    ResultCode status = OK;
    PlanePoint end;
    if (element.Type == LINE) {
        status = LIB_CalWay_H_Line_On(&element, element.Length, &end);
        if (status != OK) {
            return status;
        }
        next.X = end.X;
        next.Y = end.Y;
        // A line followed by a line keeps its own azimuth: the alignment may
        // break there. The test reads the next record as it stands, which
        // for the last element is the caller's end slot.
        if (next.Type != LINE) {
            next.Azimuth = element.Azimuth;
        }
    } else if (element.Type == ARC) {
        status = LIB_CalWay_H_Circle_AZ(&element, element.Length, &next.Azimuth);
        if (status != OK) {
            return status;
        }
        status = LIB_CalWay_H_Circle_On(&element, element.Length, &end);
        if (status != OK) {
            return status;
        }
        next.X = end.X;
        next.Y = end.Y;
    } else if (element.Spiral == ENTRY) {
        status = LIB_CalWay_H_Curve_AZ(&element, element.Length, &next.Azimuth);
        if (status != OK) {
            return status;
        }
        status = LIB_CalWay_H_Curve_On(&element, element.Length, &end);
        if (status != OK) {
            return status;
        }
        next.X = end.X;
        next.Y = end.Y;
    } else {
        TangentPoint far_end;
        status = LIB_CalWay_H_Curve_End(&element, &far_end);
        if (status != OK) {
            return status;
        }
        next.X = far_end.X;
        next.Y = far_end.Y;
        next.Azimuth = far_end.Azimuth;
    }
    return OK;
}

// Element i evaluated at chainage K inside it; the position is written
// before the azimuth.
ResultCode evaluate(const HElement* table, unsigned int i, double K, TangentPoint* out)
{
    const HElement& element = table[i];
    const double l = K - element.Chainage;
    ResultCode status = OK;
    PlanePoint position;
    if (element.Type == LINE) {
        status = LIB_CalWay_H_Line_On(&element, l, &position);
        if (status != OK) {
            return status;
        }
        out->X = position.X;
        out->Y = position.Y;
        out->Azimuth = element.Azimuth;
    } else if (element.Type == ARC) {
        status = LIB_CalWay_H_Circle_On(&element, l, &position);
        if (status != OK) {
            return status;
        }
        out->X = position.X;
        out->Y = position.Y;
        return LIB_CalWay_H_Circle_AZ(&element, l, &out->Azimuth);
    } else if (element.Type == TRANSITION && element.Spiral == ENTRY) {
        status = LIB_CalWay_H_Curve_On(&element, l, &position);
        if (status != OK) {
            return status;
        }
        out->X = position.X;
        out->Y = position.Y;
        return LIB_CalWay_H_Curve_AZ(&element, l, &out->Azimuth);
    } else if (element.Type == TRANSITION && element.Spiral == EXIT) {
        // An exit curve is evaluated backward from its far end, where the
        // curvature is zero: the next record holds that end and the forward
        // azimuth there, turned here into the backward azimuth.
        const HElement& next = table[i + 1];
        HElement backward = element;
        backward.X = next.X;
        backward.Y = next.Y;
        backward.Azimuth = take_turn_if_above<ArcSeconds>(next.Azimuth + HALF_CIRCLE);
        const double back = next.Chainage - K;
        status = LIB_CalWay_H_Curve_On(&backward, back, &position);
        if (status != OK) {
            return status;
        }
        out->X = position.X;
        out->Y = position.Y;
        return LIB_CalWay_H_Curve_AZ(&backward, back, &out->Azimuth);
    }
    return OK;
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
        // A main point is delivered as stored, not recomputed.
        if (std::fabs(K - table[i].Chainage) < CHAINAGE_TOLERANCE) {
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
    for (unsigned int j = 0; j < given; ++j) {
        if (!in_range(chainages[j])) {
            return DOMAIN;
        }
    }
    const double D = interval;
    // The chainages of a whole element table at most.
    if (!(D >= 0.0 && D <= RANGE_LIMIT) || given > ROAD_TABLE_CAPACITY) {
        return DOMAIN;
    }
    // Piles need a start chainage to count from.
    if (given == 0 && D > 0.0) {
        return DOMAIN;
    }
    for (unsigned int j = 0; j < given; ++j) {
        piles[j] = chainages[j];
    }
    if (D == 0.0) {
        *pile_count = given;
        return OK;
    }

    double p = 0.0;
    if (mode == 0) {
        p = std::ceil(chainages[0] / D) * D;
    } else if (mode == 1) {
        p = chainages[0] + D;
    }
    const double E = chainages[given - 1];
    unsigned int count = given;
    if (p < E) {
        if (given < ROAD_LIST_CAPACITY) {
            piles[count] = p;
            count = count + 1;
        } else {
            *pile_count = given;
            return TABLE;
        }
    }
    // The end chainage is already in the list: stop before reaching it.
    while (piles[count - 1] + D < E) {
        if (count >= ROAD_LIST_CAPACITY) {
            *pile_count = count;
            return TABLE;
        }
        piles[count] = piles[count - 1] + D;
        count = count + 1;
    }

    for (unsigned int i = 0; i < count; ++i) {
        for (unsigned int j = i + 1; j < count; ++j) {
            if (piles[j] < piles[i]) {
                const double swap = piles[i];
                piles[i] = piles[j];
                piles[j] = swap;
            }
        }
    }

    // One forward pass: after a removal the entry moved up is not compared
    // with the same predecessor again, so of three close entries in a row the
    // first and the third stay.
    for (unsigned int i = 0; i + 1 < count; ++i) {
        if (piles[i + 1] - piles[i] <= CHAINAGE_TOLERANCE) {
            for (unsigned int j = i + 1; j + 1 < count; ++j) {
                piles[j] = piles[j + 1];
            }
            piles[count - 1] = -1.0;
            count = count - 1;
        }
    }

    *pile_count = count;
    return OK;
}
