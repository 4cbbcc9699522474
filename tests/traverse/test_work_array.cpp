// The work array of the exported LIB_TRSMultCycleCal, the library's one
// allocation: this program is linked with calloc and free wrapped
// (-Wl,--wrap=calloc,--wrap=free), so the allocation can be refused and the
// release watched while the exported function runs.
#include "check.hpp"

#include <cstdlib>
#include <cstring>
#include <vector>

using qtest::Call;

namespace {

// What the wrappers saw while a call was watched.
struct Watch {
    bool watching = false;
    bool refuse = false;
    int allocations = 0;
    std::size_t count = 0, size = 0;
    void* given = nullptr;
    int releases_of_given = 0;
};

Watch watch;

} // namespace

extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void __real_free(void* block);

void* __wrap_calloc(std::size_t count, std::size_t size)
{
    if (!watch.watching) {
        return __real_calloc(count, size);
    }
    ++watch.allocations;
    watch.count = count;
    watch.size = size;
    watch.given = watch.refuse ? nullptr : __real_calloc(count, size);
    return watch.given;
}

void __wrap_free(void* block)
{
    if (watch.watching && block != nullptr && block == watch.given) {
        ++watch.releases_of_given;
    }
    __real_free(block);
}
}

namespace {

// A three-station traverse that computes (type 2, A to E): every output it
// writes on success is sentinel-filled before the call.
struct Traverse {
    std::vector<TraverseStation> stations;
    TraverseControl control;
    TraverseResult result = qtest::sentinel_filled<TraverseResult>();

    Traverse()
    {
        stations.assign(3, qtest::sentinel_filled<TraverseStation>());
        const double angles[] = {648000.0, 648000.0, 648000.0};
        for (int i = 0; i < 3; ++i) {
            stations[i].Angle12 = angles[i];
            stations[i].HorizDist1 = 100.0;
            stations[i].VertDiff1 = 0.5;
        }
        stations[0].StationPoint = {1000.0, 2000.0, 30.0};
        control = {0,
                   0,
                   2,
                   0,
                   {1000.0, 2000.0, 30.0},
                   {900.0, 2000.0, 30.0},
                   {1200.0, 2000.0, 31.0},
                   {1300.0, 2000.0, 31.0}};
    }

    ResultCode run(bool refuse)
    {
        watch = Watch();
        watch.refuse = refuse;
        watch.watching = true;
        const ResultCode status = LIB_TRSMultCycleCal(stations.data(), 3, &control, &result);
        watch.watching = false;
        return status;
    }
};

bool same_bytes(const std::vector<TraverseStation>& a, const std::vector<TraverseStation>& b)
{
    return std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0;
}

} // namespace

TEST(WorkArray, RefusedAllocationWritesNothing)
{
    const Call call("LIB_TRSMultCycleCal", "allocation refused");
    Traverse t;
    const std::vector<TraverseStation> before = t.stations;
    EXPECT_STATUS(call, t.run(true), QUILLON_DOMAIN);
    EXPECT_BITS(call.at("allocations asked"), watch.allocations, 1);
    EXPECT_TRUE(same_bytes(t.stations, before)) << call << ": a station record was written";
    EXPECT_UNTOUCHED(call, t.result);
}

TEST(WorkArray, GrantedAllocationIsOneArrayPerStationReleasedOnce)
{
    const Call call("LIB_TRSMultCycleCal", "allocation granted");
    Traverse t;
    const std::vector<TraverseStation> before = t.stations;
    EXPECT_STATUS(call, t.run(false), QUILLON_OK);
    EXPECT_BITS(call.at("allocations asked"), watch.allocations, 1);
    EXPECT_BITS(call.at("entries"), watch.count, std::size_t{3});
    EXPECT_BITS(call.at("releases"), watch.releases_of_given, 1);
    EXPECT_FALSE(same_bytes(t.stations, before)) << call << ": no station record was written";
    EXPECT_BITS(call, t.result.ValidMask, 1023);
}

TEST(WorkArray, NoAllocationBelowTwoStations)
{
    const Call call("LIB_TRSMultCycleCal", "one station");
    Traverse t;
    watch = Watch();
    watch.watching = true;
    const ResultCode status = LIB_TRSMultCycleCal(t.stations.data(), 1, &t.control, &t.result);
    watch.watching = false;
    EXPECT_STATUS(call, status, QUILLON_DOMAIN);
    EXPECT_BITS(call.at("allocations asked"), watch.allocations, 0);
    EXPECT_UNTOUCHED(call, t.result);
}
