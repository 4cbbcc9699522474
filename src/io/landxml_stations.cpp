// Station equations: from the chainage of an equation on, the stations a
// drawing prints run on from its "ahead" station.
#include "landxml.hpp"

#include <algorithm>
#include <cmath>

namespace quillon::io {

void read_equations(Context& context, pugi::xml_node alignment, AlignmentData& data)
{
    struct Raw {
        pugi::xml_node node;
        double internal;
        double back;
        double ahead;
        bool has_internal;
        bool has_back;
    };
    std::vector<Raw> raws;
    for (pugi::xml_node node : alignment.children()) {
        if (local_name(node) != "StaEquation") {
            continue;
        }
        Raw raw{node, 0.0, 0.0, 0.0, false, false};
        if (!attribute_number(context, node, "staAhead", raw.ahead)) {
            context.refuse(QIO_MALFORMED, node, "StaEquation has no staAhead");
        }
        raw.has_internal = attribute_number(context, node, "staInternal", raw.internal);
        raw.has_back = attribute_number(context, node, "staBack", raw.back);
        const std::string increment = node.attribute("staIncrement").value();
        if (increment == "decreasing") {
            context.refuse(QIO_UNSUPPORTED, node,
                           "StaEquation with decreasing stations is not read");
        }
        if (!raw.has_internal && !raw.has_back) {
            context.refuse(QIO_MALFORMED, node,
                           "StaEquation gives neither staInternal nor staBack");
        }
        raw.internal *= context.linear;
        raw.back *= context.linear;
        raw.ahead *= context.linear;
        raws.push_back(raw);
    }
    // Without staInternal, an equation's chainage follows from its back
    // station and the equations before it, in the order of the file.
    double previous_chainage = data.station_start;
    double previous_station = data.station_start;
    for (Raw& raw : raws) {
        if (!raw.has_internal) {
            raw.internal = previous_chainage + (raw.back - previous_station);
        }
        previous_chainage = raw.internal;
        previous_station = raw.ahead;
    }
    std::stable_sort(raws.begin(), raws.end(),
                     [](const Raw& a, const Raw& b) { return a.internal < b.internal; });

    previous_chainage = data.station_start;
    previous_station = data.station_start;
    data.equations.clear();
    for (const Raw& raw : raws) {
        const double reached = previous_station + (raw.internal - previous_chainage);
        if (raw.has_back && std::fabs(raw.back - reached) > QIO_TOLERANCE) {
            context.note(raw.node, "StaEquation: staBack " + number(raw.back) +
                                       ", but the stations reach " + number(reached) + " there");
        }
        if (raw.internal < data.station_start - QIO_TOLERANCE ||
            raw.internal > data.chainage_end + QIO_TOLERANCE) {
            context.note(raw.node, "StaEquation at chainage " + number(raw.internal) +
                                       " lies outside the alignment");
        }
        data.equations.push_back(qio_station_equation{
            raw.internal, raw.has_back ? raw.back : reached, raw.ahead, context.line(raw.node)});
        previous_chainage = raw.internal;
        previous_station = raw.ahead;
    }
}

} // namespace quillon::io
