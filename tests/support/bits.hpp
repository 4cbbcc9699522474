// Exact comparison of doubles by their bits, and sentinel-filled records that
// prove an output was left untouched.
#ifndef QUILLON_TESTS_BITS_HPP
#define QUILLON_TESTS_BITS_HPP

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qtest {

inline std::uint64_t bits_of(double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// Two doubles are the same result when their bits agree; any two
// not-a-numbers count as the same, and +0 and -0 stay apart.
inline bool same_double(double a, double b)
{
    if (std::isnan(a) && std::isnan(b)) {
        return true;
    }
    return bits_of(a) == bits_of(b);
}

// Every byte of a sentinel-filled record holds this pattern; as a double it
// reads as a finite negative number no computation here produces.
constexpr unsigned char SENTINEL_BYTE = 0xA5;

template <typename T> void fill_sentinel(T& record)
{
    std::memset(static_cast<void*>(&record), SENTINEL_BYTE, sizeof record);
}

template <typename T> T sentinel_filled()
{
    T record;
    fill_sentinel(record);
    return record;
}

// True when every byte of the object still holds the sentinel.
template <typename T> bool untouched(const T& object)
{
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&object);
    for (std::size_t i = 0; i < sizeof object; ++i) {
        if (bytes[i] != SENTINEL_BYTE) {
            return false;
        }
    }
    return true;
}

inline double sentinel_double() { return sentinel_filled<double>(); }

} // namespace qtest

#endif
