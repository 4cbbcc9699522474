// Fuzz target of the LandXML reader: the input is a file's bytes, read from
// memory; every alignment of a design it accepts is then taken as the
// device's tables, its stations converted, its notes read, and its tables
// evaluated by the survey layer, as the office tool does. Beyond the
// sanitizers' reports, a finding is a broken promise of the header: a
// message not terminated within its buffer, a table without its end record.
#include "stats.hpp"

#include <quillon/io.h>
#include <quillon/survey.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

enum Call : std::size_t { READ, ALIGNMENT, CALLS };
const char* const call_names[CALLS] = {"qio_landxml_read_buffer", "qio_design_alignment"};

// A promise of the header that does not hold.
void broken(bool promise_broken)
{
    if (promise_broken) {
        std::abort();
    }
}

void check_message(const qio_error& error)
{
    broken(std::memchr(error.message, '\0', sizeof error.message) == nullptr);
}

void use_alignment(const qio_alignment& a)
{
    broken(a.horizontal == nullptr || a.horizontal_count < 2);
    broken(a.horizontal[a.horizontal_count - 1].Type != 0);
    broken(a.name == nullptr || a.description == nullptr);
    volatile std::size_t text = std::strlen(a.name) + std::strlen(a.description);
    (void)text;
    volatile double station =
        qio_alignment_station(&a, a.station_start) + qio_alignment_station(&a, a.chainage_end);
    for (std::size_t i = 0; i < a.equation_count; ++i) {
        station = station + qio_alignment_station(&a, a.equations[i].chainage);
    }
    std::vector<qs_joint> joints(a.horizontal_count - 1);
    qs_alignment_joints(a.horizontal, a.horizontal_count, joints.data());
    if (a.vertical != nullptr) {
        broken(a.vertical_count < 2 || a.vertical[a.vertical_count - 1].Type != 0);
        qs_profile_point point;
        qs_profile_height(a.vertical, a.vertical_count, a.vertical[0].Chainage, &point);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qfuzz::count_calls(call_names, CALLS);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    qio_design* design = nullptr;
    qio_error error;
    const qio_status status = qio_landxml_read_buffer(data, size, "fuzz.xml", &design, &error);
    qfuzz::called(READ, status);
    if (status != QIO_OK) {
        broken(design != nullptr);
        check_message(error);
        return 0;
    }
    const std::size_t count = qio_design_alignment_count(design);
    for (std::size_t i = 0; i < count; ++i) {
        broken(qio_design_alignment_name(design, i) == nullptr);
        qio_alignment a;
        const qio_status found = qio_design_alignment(design, i, &a, &error);
        qfuzz::called(ALIGNMENT, found);
        if (found == QIO_OK) {
            use_alignment(a);
        } else {
            check_message(error);
        }
    }
    for (std::size_t i = 0; i < qio_design_note_count(design); ++i) {
        broken(qio_design_note(design, i) == nullptr);
    }
    qio_design_free(design);
    return 0;
}
