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
        if (key == "options") {
            p.options = {v[0],
                         v[1],
                         v[2],
                         v[3],
                         v[4],
                         v[5],
                         v[6],
                         v[7],
                         static_cast<int>(v[8]),
                         static_cast<int>(v[9])};
        } else if (key == "sighting") {
            p.sightings.push_back({v[0], v[1], v[2], v[3], v[4], v[5], v[6], static_cast<int>(v[7]),
                                   static_cast<int>(v[8])});
        } else if (key == "station") {
            p.station = v;
        } else if (key == "result") {
            p.results.push_back(v);
        }
    }
    return problems;
}

void expect_relative(double actual, double expected, double tolerance, const char* what)
{
    EXPECT_NEAR(actual, expected, tolerance * std::fabs(expected)) << what;
}

TEST(FreeStationReference, AgreesWithTheHighPrecisionSolution)
{
    const std::vector<Problem> problems = read_problems();
    ASSERT_EQ(problems.size(), 4u) << "reference file " << QS_REFERENCE_DATA;
    double worst_plan = 0.0, worst_direction = 0.0;
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
        expect_relative(r.sigma_x, e[4], 1e-9, "sigma_x");
        expect_relative(r.sigma_y, e[5], 1e-9, "sigma_y");
        expect_relative(r.sigma_h, e[6], 1e-9, "sigma_h");
        expect_relative(r.sigma_orientation, e[7], 1e-9, "sigma_orientation");
        expect_relative(r.sigma0, e[8], 1e-9, "sigma0");
        expect_relative(r.sigma0_height, e[9], 1e-9, "sigma0_height");
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
        worst_plan = std::max(worst_plan, std::hypot(r.x - e[0], r.y - e[1]));
        for (std::size_t i = 0; i < v.size(); ++i) {
            SCOPED_TRACE(testing::Message() << "sighting " << i);
            const std::vector<double>& s = p.results[i];
            const double observed[] = {v[i].azimuth,
                                       v[i].horizontal_distance,
                                       v[i].direction_residual,
                                       v[i].direction_redundancy,
                                       v[i].direction_w,
                                       v[i].distance_residual,
                                       v[i].distance_redundancy,
                                       v[i].distance_w,
                                       v[i].height,
                                       v[i].height_residual,
                                       v[i].height_redundancy,
                                       v[i].height_w};
            const double tolerance[] = {1e-6, 1e-9, 1e-6, 1e-9, 1e-7, 1e-9,
                                        1e-9, 1e-7, 1e-9, 1e-9, 1e-9, 1e-7};
            EXPECT_NEAR(std::remainder(observed[0] - s[0], 1296000.0), 0.0, tolerance[0]);
            for (int k = 1; k < 12; ++k) {
                EXPECT_NEAR(observed[k], s[k], tolerance[k]) << "field " << k;
            }
            worst_direction = std::max(worst_direction, std::fabs(observed[2] - s[2]));
        }
    }
    std::printf("against the 40-digit solution: station %.2e m, direction residuals %.2e\"\n",
                worst_plan, worst_direction);
}

} // namespace
