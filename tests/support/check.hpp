// Checks that say what failed: every message names the function under test,
// the row of its case table and the field, and gives both values in decimal
// (17 significant digits) and as bits.
//
//   for (const auto& [call, c] : qtest::rows("LIB_CalAZ", cases)) {
//       EXPECT_STATUS(call, LIB_CalAZ(&origin, &c.to, &az), 0);
//       EXPECT_BITS(call, az, c.azimuth);
//   }
//
// fails with "LIB_CalAZ, row 4, az: got 162000.00276342212 (0x4103c68005a8d43d),
// want 162000 (0x4103c68000000000)". EXPECT_BITS compares a double by its bits,
// an integer by value, and a record or an array field by field, naming each
// field that differs.
#ifndef QUILLON_TESTS_CHECK_HPP
#define QUILLON_TESTS_CHECK_HPP

#include "bits.hpp"
#include "fields.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace qtest {

// The call a check belongs to: the function under test and the row of its
// case table, by index or by a few words naming the case.
struct Call {
    std::string function;
    std::string row;

    explicit Call(std::string function_name, std::string row_name = "")
        : function(std::move(function_name)), row(std::move(row_name))
    {
    }
    Call(std::string function_name, std::ptrdiff_t index)
        : Call(std::move(function_name), "row " + std::to_string(index))
    {
    }

    // The same call with more words on the row: "row 3, face II".
    Call at(const std::string& detail) const
    {
        return Call(function, row.empty() ? detail : row + ", " + detail);
    }

    // The same row of a table whose rows call different functions.
    Call of(std::string function_name) const { return Call(std::move(function_name), row); }

    std::string name() const
    {
        return function.empty() ? row : row.empty() ? function : function + ", " + row;
    }
};

inline std::ostream& operator<<(std::ostream& out, const Call& call) { return out << call.name(); }

// A row of a case table with the call its checks report under.
template <typename Case> struct TableRow {
    Call call;
    const Case& c;
};

// The rows of a case table, numbered from 0, each with its call (whose
// function a table of several functions names row by row, with Call::of).
template <typename Cases> auto rows(const std::string& function, const Cases& cases)
{
    using Case = std::remove_reference_t<decltype(*std::begin(cases))>;
    std::vector<TableRow<Case>> out;
    std::ptrdiff_t index = 0;
    for (const auto& c : cases) {
        out.push_back({Call(function, index++), c});
    }
    return out;
}

template <typename Cases> auto rows(const Cases& cases) { return rows("", cases); }

// ---- values as a message shows them -------------------------------------

inline std::string show(double value)
{
    if (bits_of(value) == bits_of(sentinel_double())) {
        return "untouched (0xa5a5a5a5a5a5a5a5)";
    }
    char text[64];
    std::snprintf(text, sizeof text, "%.17g (0x%016llx)", value,
                  static_cast<unsigned long long>(bits_of(value)));
    return text;
}

inline std::string show(float value)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    char text[48];
    std::snprintf(text, sizeof text, "%.9g (0x%08lx)", static_cast<double>(value),
                  static_cast<unsigned long>(bits));
    return text;
}

template <typename T> std::string show(T* pointer)
{
    char text[32];
    std::snprintf(text, sizeof text, "%p", static_cast<const void*>(pointer));
    return text;
}

template <typename T> std::enable_if_t<std::is_integral<T>::value, std::string> show(T value)
{
    return std::to_string(static_cast<long long>(value));
}

// Doubles and floats agree when their bits do (any two not-a-numbers
// agree); integers and pointers when their values do.
inline bool same_value(double a, double b) { return same_double(a, b); }

inline bool same_value(float a, float b)
{
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

template <typename T> bool same_value(const T& a, const T& b) { return a == b; }

// ---- walking a value field by field -------------------------------------

// Calls leaf(name, value...) for every single value of the objects, which
// share one type: array elements as name[i], record fields as name.field.
template <typename T, typename Leaf>
void each_leaf(const std::string& name, Leaf&& leaf, const T& first, const T& second)
{
    if constexpr (std::is_array<T>::value) {
        for (std::size_t i = 0; i < std::extent<T>::value; ++i) {
            each_leaf(name + "[" + std::to_string(i) + "]", leaf, first[i], second[i]);
        }
    } else if constexpr (described(static_cast<const T*>(nullptr))) {
        each_field(static_cast<const T*>(nullptr), [&](const char* field, auto member) {
            each_leaf(name + "." + field, leaf, first.*member, second.*member);
        });
    } else {
        leaf(name, first, second);
    }
}

// The lines of a failure message, each naming the call and the field.
class Findings {
  public:
    explicit Findings(const Call& call) : call_(call) {}

    void add(const std::string& field, const std::string& what)
    {
        text_ += (text_.empty() ? "" : "\n") + call_.name() + ", " + field + ": " + what;
    }

    ::testing::AssertionResult result() const
    {
        if (text_.empty()) {
            return ::testing::AssertionSuccess();
        }
        return ::testing::AssertionFailure() << text_;
    }

  private:
    const Call& call_;
    std::string text_;
};

// ---- predicates behind the macros ---------------------------------------

template <typename A, typename E>
::testing::AssertionResult SameBits(const char*, const char* actual_expr, const char*,
                                    const Call& call, const A& actual, const E& expected)
{
    Findings findings(call);
    const auto compare = [&](const std::string& field, const auto& got, const auto& want) {
        if (!same_value(got, want)) {
            findings.add(field, "got " + show(got) + ", want " + show(want));
        }
    };
    if constexpr (std::is_arithmetic<A>::value) {
        const A want = static_cast<A>(expected);
        each_leaf(actual_expr, compare, actual, want);
    } else {
        static_assert(std::is_same<A, E>::value, "a record is compared with its own type");
        each_leaf(actual_expr, compare, actual, expected);
    }
    return findings.result();
}

// Written: no field still holds the sentinel. Not written: every byte still
// does. A failure names each field that is not as wanted.
template <typename T>
::testing::AssertionResult WrittenIf(const char*, const char* object_expr, const char*,
                                     const Call& call, const T& object, bool written)
{
    Findings findings(call);
    each_leaf(
        object_expr,
        [&](const std::string& field, const auto& value, const auto&) {
            if (untouched(value) == written) {
                findings.add(field, written ? "untouched, want written"
                                            : "written " + show(value) + ", want untouched");
            }
        },
        object, object);
    if (!written && !untouched(object) && findings.result()) {
        findings.add(object_expr, "padding bytes written, want untouched");
    }
    return findings.result();
}

template <typename T>
::testing::AssertionResult Untouched(const char* call_expr, const char* object_expr,
                                     const Call& call, const T& object)
{
    return WrittenIf(call_expr, object_expr, "", call, object, false);
}

template <typename T>
::testing::AssertionResult Written(const char* call_expr, const char* object_expr, const Call& call,
                                   const T& object)
{
    return WrittenIf(call_expr, object_expr, "", call, object, true);
}

// |actual - expected| <= tolerance; a not-a-number never is.
inline ::testing::AssertionResult Within(const char*, const char* actual_expr, const char*,
                                         const char*, const Call& call, double actual,
                                         double expected, double tolerance)
{
    const double off = std::fabs(actual - expected);
    if (off <= tolerance) {
        return ::testing::AssertionSuccess();
    }
    char text[64];
    std::snprintf(text, sizeof text, " within %.3g (off by %.3g)", tolerance, off);
    return ::testing::AssertionFailure() << call.name() << ", " << actual_expr << ": got "
                                         << show(actual) << ", want " << show(expected) << text;
}

// value < bound.
inline ::testing::AssertionResult Below(const char*, const char* value_expr, const char*,
                                        const Call& call, double value, double bound)
{
    if (value < bound) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << call.name() << ", " << value_expr << ": got "
                                         << show(value) << ", want below " << show(bound);
}

// low < value < high.
inline ::testing::AssertionResult Between(const char*, const char* value_expr, const char*,
                                          const char*, const Call& call, double value, double low,
                                          double high)
{
    if (low < value && value < high) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << call.name() << ", " << value_expr << ": got " << show(value) << ", want between "
           << show(low) << " and " << show(high);
}

// The status a function returned.
inline ::testing::AssertionResult Returned(const char*, const char*, const char*, const Call& call,
                                           long long returned, long long expected)
{
    if (returned == expected) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << call.name() << ": returned " << returned << ", want " << expected;
}

} // namespace qtest

// The same bits (doubles), value (integers) or field by field (records, arrays).
#define EXPECT_BITS(call, actual, expected)                                                        \
    EXPECT_PRED_FORMAT3(::qtest::SameBits, call, actual, expected)
#define ASSERT_BITS(call, actual, expected)                                                        \
    ASSERT_PRED_FORMAT3(::qtest::SameBits, call, actual, expected)
// Within a stated tolerance, for results that are not exact.
#define EXPECT_WITHIN(call, actual, expected, tolerance)                                           \
    EXPECT_PRED_FORMAT4(::qtest::Within, call, actual, expected, tolerance)
#define EXPECT_BELOW(call, value, bound) EXPECT_PRED_FORMAT3(::qtest::Below, call, value, bound)
#define EXPECT_BETWEEN(call, value, low, high)                                                     \
    EXPECT_PRED_FORMAT4(::qtest::Between, call, value, low, high)
// The status code returned.
#define EXPECT_STATUS(call, returned, expected)                                                    \
    EXPECT_PRED_FORMAT3(::qtest::Returned, call, returned, expected)
#define ASSERT_STATUS(call, returned, expected)                                                    \
    ASSERT_PRED_FORMAT3(::qtest::Returned, call, returned, expected)
// Outputs left as the caller had them (sentinel-filled), or written in every field.
#define EXPECT_UNTOUCHED(call, object) EXPECT_PRED_FORMAT2(::qtest::Untouched, call, object)
#define EXPECT_WRITTEN(call, object) EXPECT_PRED_FORMAT2(::qtest::Written, call, object)
#define EXPECT_WRITTEN_IF(call, object, written)                                                   \
    EXPECT_PRED_FORMAT3(::qtest::WrittenIf, call, object, written)

#endif
