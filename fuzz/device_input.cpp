// Decoding and encoding a call of the device library (device_input.hpp).
#include "device_input.hpp"

#include <cstring>

namespace qfuzz {

namespace {

bool by_value(const qv_arg& a)
{
    return a.role == QV_VALUE || a.role == QV_COUNT || a.role == QV_MODE;
}

bool nullable(const qv_arg& a) { return a.flag_at != QV_NOWHERE; }

// The one record of the interface that holds a pointer: a StaMultiResult
// points at its station.
bool holds_station(const qv_arg& a) { return std::strcmp(a.type, "StaMultiResult") == 0; }

// Resolved addresses of the table's functions.
qv_fn address_of(std::size_t index)
{
    static qv_fn resolved[256];
    if (resolved[index] == nullptr) {
        resolved[index] = qv_symbol(qv_functions[index].name);
    }
    return resolved[index];
}

} // namespace

bool DeviceCall::decode(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) {
        return false;
    }
    Reader in(data, size);
    index_ = in.get<std::uint8_t>() % qv_function_count;
    fn_ = &qv_functions[index_];
    blocks_.clear();

    for (std::size_t i = 0; i < fn_->arg_count; ++i) {
        const qv_arg& a = fn_->args[i];
        args_[i] = nullptr;
        if (by_value(a)) {
            values_[i] = 0;
            in.take(&values_[i], a.size);
            args_[i] = &values_[i];
        }
    }
    bool present[QV_MAX_ARGS];
    for (std::size_t i = 0; i < fn_->arg_count; ++i) {
        present[i] = !nullable(fn_->args[i]) || (in.get<std::uint8_t>() & 1u) != 0;
    }

    size_t elements[QV_MAX_ARGS];
    fn_->extents(args_, elements);
    std::size_t total = 0;
    for (std::size_t i = 0; i < fn_->arg_count; ++i) {
        const qv_arg& a = fn_->args[i];
        if (by_value(a) || !present[i]) {
            continue;
        }
        if (elements[i] > MAX_BUFFER_BYTES / a.size) {
            return false;
        }
        total += elements[i] * a.size;
    }
    if (total > MAX_BUFFER_BYTES) {
        return false;
    }

    for (std::size_t i = 0; i < fn_->arg_count; ++i) {
        const qv_arg& a = fn_->args[i];
        if (by_value(a) || !present[i]) {
            continue;
        }
        const std::size_t bytes = elements[i] * a.size;
        blocks_.emplace_back(bytes);
        args_[i] = blocks_.back().get();
        in.fill(args_[i], bytes);
    }
    for (std::size_t i = 0; i < fn_->arg_count; ++i) {
        const qv_arg& a = fn_->args[i];
        if (args_[i] == nullptr || by_value(a) || !holds_station(a)) {
            continue;
        }
        auto* records = static_cast<StaMultiResult*>(args_[i]);
        for (std::size_t k = 0; k < elements[i]; ++k) {
            blocks_.emplace_back(sizeof(StationRecord));
            in.fill(blocks_.back().get(), sizeof(StationRecord));
            records[k].Station = static_cast<const StationRecord*>(blocks_.back().get());
        }
    }
    return true;
}

int DeviceCall::invoke() const { return fn_->invoke(address_of(index_), args_); }

std::vector<std::uint8_t> encode_device_call(std::size_t index, void* const* args)
{
    const qv_function& fn = qv_functions[index];
    Writer out;
    out.put(static_cast<std::uint8_t>(index));
    for (std::size_t i = 0; i < fn.arg_count; ++i) {
        if (by_value(fn.args[i])) {
            out.put(args[i], fn.args[i].size);
        }
    }
    for (std::size_t i = 0; i < fn.arg_count; ++i) {
        if (nullable(fn.args[i])) {
            out.put(static_cast<std::uint8_t>(args[i] != nullptr ? 1 : 0));
        }
    }
    size_t elements[QV_MAX_ARGS];
    qv_extents(&fn, args, elements);
    for (std::size_t i = 0; i < fn.arg_count; ++i) {
        if (!by_value(fn.args[i]) && args[i] != nullptr) {
            out.put(args[i], elements[i] * fn.args[i].size);
        }
    }
    for (std::size_t i = 0; i < fn.arg_count; ++i) {
        if (by_value(fn.args[i]) || args[i] == nullptr || !holds_station(fn.args[i])) {
            continue;
        }
        const auto* records = static_cast<const StaMultiResult*>(args[i]);
        for (std::size_t k = 0; k < elements[i]; ++k) {
            out.put(*records[k].Station);
        }
    }
    return out.bytes();
}

} // namespace qfuzz
