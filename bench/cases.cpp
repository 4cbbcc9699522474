#include "cases.hpp"

#include "quillon.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace bench {

namespace {

struct Symbol {
    const char* name;
    qv_fn address;
};

// Every exported LIB_ name with its address, from the harness's list
// generated from the export table.
#define QV_LINKED(name) {#name, reinterpret_cast<qv_fn>(&name)},
const Symbol symbols[] = {
#include "qv_linked_names.h"
};
#undef QV_LINKED

} // namespace

qv_fn library_symbol(const char* name)
{
    for (const Symbol& entry : symbols) {
        if (std::strcmp(entry.name, name) == 0) {
            return entry.address;
        }
    }
    return nullptr;
}

namespace {

// The largest magnitude of a number in the survey range: coordinates within
// 10000 km, angles within about 7.7 full circles (as the platform check
// counts it).
constexpr double SURVEY_RANGE = 1e7;

double read_double(const unsigned char* at, char type)
{
    if (type == 'f') {
        float value;
        std::memcpy(&value, at, sizeof value);
        return value;
    }
    double value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

// Every double and float the function reads from its input block is finite
// and within the survey range; array elements beyond what the case gives
// the function, null pointers and fields never read do not count.
bool in_survey_range(const qv_function* fn, const qv_field* fields, size_t count,
                     const unsigned char* in, const size_t* extents)
{
    for (size_t k = 0; k < count; ++k) {
        const qv_field& f = fields[k];
        if (f.type != 'd' && f.type != 'f') {
            continue;
        }
        bool read = true;
        for (size_t i = 0; i < fn->arg_count; ++i) {
            const qv_arg& a = fn->args[i];
            if (a.in_at != QV_NOWHERE && f.offset >= a.in_at &&
                f.offset < a.in_at + a.size * a.capacity) {
                read = (f.offset - a.in_at) / a.size < extents[i];
            }
        }
        if (read && !(std::fabs(read_double(in + f.offset, f.type)) <= SURVEY_RANGE)) {
            return false;
        }
    }
    return true;
}

// The case asks for no more elements of any argument than the harness
// provides.
bool within_capacity(const qv_function* fn, const size_t* extents)
{
    for (size_t i = 0; i < fn->arg_count; ++i) {
        if (extents[i] > fn->args[i].capacity) {
            return false;
        }
    }
    return true;
}

// The status of a case whose computation ran to its end. The station
// rounds report a failed field tolerance as 1 after computing everything;
// every other function succeeds with 0.
bool completed(const qv_function* fn, int status, void* const* args)
{
    if (status == 0) {
        return true;
    }
    if (std::strcmp(fn->name, "LIB_STAMultCycleCal") == 0 && status == 1) {
        const auto* result = static_cast<const StaMultiResult*>(args[2]);
        return result->ErrorFlag >= 1 && result->ErrorFlag <= 5;
    }
    return false;
}

std::unique_ptr<Case> bound_case(const qv_function* fn, int index)
{
    auto c = std::make_unique<Case>();
    c->index = index;
    c->in.assign(fn->in_size + 16, 0);
    c->out.assign(fn->out_size + 16, 0);
    c->scratch.assign(fn->scratch_size + 16, 0);
    qv_generate(fn, index, c->in.data());
    qv_bind(fn, c->in.data(), c->out.data(), c->scratch.data(), c->args);
    return c;
}

} // namespace

CaseSet realistic_cases(const qv_function* fn, qv_fn address, int wanted, int attempts)
{
    CaseSet set;
    set.fn = fn;
    set.address = address;
    char error[256];
    size_t field_count = 0;
    qv_field* fields =
        qv_parse_layout(fn->in_layout, fn->in_size, &field_count, error, sizeof error);
    if (fields == nullptr) {
        return set;
    }
    for (int index = 0; index < attempts && static_cast<int>(set.cases.size()) < wanted; ++index) {
        set.tried = index + 1;
        // A trial call on a copy decides; the case kept is bound afresh, so
        // that it starts from the generated inputs.
        auto trial = bound_case(fn, index);
        size_t extents[QV_MAX_ARGS] = {};
        qv_extents(fn, trial->args, extents);
        if (!within_capacity(fn, extents) ||
            !in_survey_range(fn, fields, field_count, trial->in.data(), extents)) {
            continue;
        }
        const int status = fn->invoke(address, trial->args);
        if (!completed(fn, status, trial->args)) {
            continue;
        }
        set.cases.push_back(bound_case(fn, index));
    }
    std::free(fields);
    return set;
}

} // namespace bench

extern "C" qv_fn qv_symbol(const char* name) { return bench::library_symbol(name); }
