// The free station against an independent solution at 40 significant digits
// (free_station_reference.py, written with mpmath: full design and weight
// matrices, its own start). Tolerances: 1e-9 m for coordinates, heights,
// distances and their residuals; 1e-6" for the orientation, azimuths and
// direction residuals; 1e-9 for redundancy numbers; 1e-9 relative for the
// standard deviations and 1e-7 for w.
#include "quillon/survey.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Problem {
    std::string name;
    qs_free_station_options options{};
    std::vector<qs_sighting> sightings;
    std::vector<double> station;              // as the file's "station" line
    std::vector<std::vector<double>> results; // as its "result" lines
};

std::vector<double> numbers(std::istringstream& line)
{
    std::vector<double> values;
    std::string word;
    while (line >> word) {
        values.push_back(std::strtod(word.c_str(), nullptr));
    }
    return values;
}

std::vector<Problem> read_problems()
{
    std::ifstream file(QS_REFERENCE_DATA);
    std::vector<Problem> problems;
    std::string text;
    while (std::getline(file, text)) {
        std::istringstream line(text);
        std::string key;
        line >> key;
        if (key == "problem") {
            problems.emplace_back();
            std::getline(line >> std::ws, problems.back().name);
            continue;
        }
        if (key.empty() || key[0] == '#') {
            continue;
        }
        Problem& p = problems.back();
        const std::vector<double> v = numbers(line);
        const auto n = [&v](std::size_t i) { return static_cast<int>(v[i]); };
        if (key == "options") {
            p.options = {v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], n(8), n(9)};
        } else if (key == "sighting") {
            p.sightings.push_back({v[0], v[1], v[2], v[3], v[4], v[5], v[6], n(7), n(8)});
        } else if (key == "station") {
            p.station = v;
        } else if (key == "result") {
            p.results.push_back(v);
        }
    }
    return problems;
}

TEST(FreeStationReference, AgreesWithTheHighPrecisionSolution)
{
    const std::vector<Problem> problems = read_problems();
    ASSERT_EQ(problems.size(), 4u) << "reference file " << QS_REFERENCE_DATA;
    for (const Problem& p : problems) {
        SCOPED_TRACE(p.name);
        ASSERT_EQ(p.station.size(), 15u);
        ASSERT_EQ(p.results.size(), p.sightings.size());
        qs_free_station_result r;
        std::vector<qs_sighting_result> v(p.sightings.size());
        ASSERT_EQ(qs_free_station(p.sightings.data(), p.sightings.size(), &p.options, &r, v.data()),
                  QS_OK);
        const std::vector<double>& e = p.station;
        EXPECT_NEAR(r.x, e[0], 1e-9);
        EXPECT_NEAR(r.y, e[1], 1e-9);
        EXPECT_NEAR(r.h, e[2], 1e-9);
        EXPECT_NEAR(std::remainder(r.orientation - e[3], 1296000.0), 0.0, 1e-6);
        const double sigmas[] = {r.sigma_x,           r.sigma_y, r.sigma_h,
                                 r.sigma_orientation, r.sigma0,  r.sigma0_height};
        for (int k = 0; k < 6; ++k) {
            EXPECT_NEAR(sigmas[k], e[4 + k], 1e-9 * std::fabs(e[4 + k])) << "sigma " << k;
        }
        EXPECT_NEAR(r.blunder_w, e[10], 1e-7);
        // Ties (one degree of freedom, two heights) may name either of the
        // observations; the one named has the largest |w| of the reference.
        ASSERT_LT(r.blunder_index, p.results.size());
        const int w_field[] = {0, 4, 7, 11};
        ASSERT_TRUE(r.blunder_kind >= QS_DIRECTION && r.blunder_kind <= QS_HEIGHT);
        EXPECT_NEAR(std::fabs(p.results[r.blunder_index][w_field[r.blunder_kind]]), e[10], 1e-7);
        if (e[10] > 1.0) { // a spoiled observation stands out: no tie
            EXPECT_EQ(r.blunder_kind, static_cast<int>(e[11]));
            EXPECT_EQ(r.blunder_index, static_cast<std::size_t>(e[12]));
        }
        EXPECT_EQ(r.dof, static_cast<std::size_t>(e[13]));
        EXPECT_EQ(r.height_count, static_cast<std::size_t>(e[14]));
        for (std::size_t i = 0; i < v.size(); ++i) {
            SCOPED_TRACE(testing::Message() << "sighting " << i);
            const std::vector<double>& s = p.results[i];
            const qs_sighting_result& o = v[i];
            const double observed[] = {
                o.azimuth,     o.horizontal_distance, o.direction_residual,  o.direction_redundancy,
                o.direction_w, o.distance_residual,   o.distance_redundancy, o.distance_w,
                o.height,      o.height_residual,     o.height_redundancy,   o.height_w};
            const double tolerance[] = {1e-6, 1e-9, 1e-6, 1e-9, 1e-7, 1e-9,
                                        1e-9, 1e-7, 1e-9, 1e-9, 1e-9, 1e-7};
            EXPECT_NEAR(std::remainder(observed[0] - s[0], 1296000.0), 0.0, tolerance[0]);
            for (int k = 1; k < 12; ++k) {
                EXPECT_NEAR(observed[k], s[k], tolerance[k]) << "field " << k;
            }
        }
    }
}

} // namespace
