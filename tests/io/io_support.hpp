// Loading designs for the reader's tests: from the test data, from text in
// the test, and the refusal a design or an alignment comes back with.
#ifndef QUILLON_TESTS_IO_SUPPORT_HPP
#define QUILLON_TESTS_IO_SUPPORT_HPP

#include "quillon/io.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace qtest {

using Design = std::unique_ptr<qio_design, void (*)(qio_design*)>;

inline std::string data_path(const std::string& file)
{
    return std::string(QUILLON_IO_DATA) + "/" + file;
}

inline std::string example_path(const std::string& file)
{
    return std::string(QUILLON_EXAMPLE_DATA) + "/" + file;
}

inline Design load_file(const std::string& path)
{
    qio_design* design = nullptr;
    qio_error error{};
    const qio_status status = qio_landxml_read_file(path.c_str(), &design, &error);
    EXPECT_EQ(status, QIO_OK) << error.message;
    return Design(design, qio_design_free);
}

// The one alignment of a design that must read.
inline qio_alignment only_alignment(const Design& design)
{
    qio_alignment alignment{};
    qio_error error{};
    EXPECT_EQ(qio_design_alignment_count(design.get()), 1u);
    EXPECT_EQ(qio_design_alignment(design.get(), 0, &alignment, &error), QIO_OK) << error.message;
    return alignment;
}

// What reading text (as the file "test.xml") gives: the file's status, else
// its first alignment's, with the message and line.
struct Outcome {
    qio_status status;
    std::size_t line;
    std::string message;
};

inline Outcome read_text(const std::string& text)
{
    qio_design* design = nullptr;
    qio_error error{};
    qio_status status =
        qio_landxml_read_buffer(text.data(), text.size(), "test.xml", &design, &error);
    if (status != QIO_OK) {
        return Outcome{status, error.line, error.message};
    }
    qio_alignment alignment{};
    status = qio_design_alignment(design, 0, &alignment, &error);
    qio_design_free(design);
    return Outcome{status, status == QIO_OK ? 0 : error.line,
                   status == QIO_OK ? "" : error.message};
}

} // namespace qtest

#endif
