// Point files: the forms a crew's files come in, and every bad row refused
// with its line.
#include "quillon/io.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

using Points = std::unique_ptr<qio_points, void (*)(qio_points*)>;

Points read(const std::string& text, qio_status expected = QIO_OK, qio_error* error = nullptr)
{
    qio_points* points = nullptr;
    qio_error local{};
    qio_error* e = error != nullptr ? error : &local;
    const qio_status status =
        qio_points_read_buffer(text.data(), text.size(), "pts.csv", &points, e);
    EXPECT_EQ(status, expected) << e->message;
    return Points(points, qio_points_free);
}

struct Row {
    const char* name;
    double x, y, h;
    int has_height;
    const char* code;
    std::size_t line;
};

struct Form {
    const char* label;
    std::string text;
    std::vector<Row> rows;
};

const std::vector<Form> forms = {
    {"CommaWithAllColumns",
     "name,X,Y,H,code\nP1,100.5,200.25,12.125,edge\nP2,-3,4e2,0,cl\n",
     {{"P1", 100.5, 200.25, 12.125, 1, "edge", 2}, {"P2", -3, 400, 0, 1, "cl", 3}}},
    {"SemicolonWithDecimalComma",
     "Name;x;y;h\r\nP1;100,5;200,25;12,125\r\n",
     {{"P1", 100.5, 200.25, 12.125, 1, "", 2}}},
    {"ColumnsInAnyOrderAndExtraOnesIgnored",
     "code,H,Y,X,name,remark\nkerb,1.5,20,10,K1,checked\n",
     {{"K1", 10, 20, 1.5, 1, "kerb", 2}}},
    {"NoHeightColumn", "name,X,Y\nA,1,2\n", {{"A", 1, 2, 0, 0, "", 2}}},
    {"EmptyHeight",
     "name,X,Y,H\nA,1,2,\nB,3,4, 5 \n",
     {{"A", 1, 2, 0, 0, "", 2}, {"B", 3, 4, 5, 1, "", 3}}},
    {"QuotedNameWithSeparator",
     "name,X,Y\n\"Pile 3, left \"\"a\"\"\",1,2\n",
     {{"Pile 3, left \"a\"", 1, 2, 0, 0, "", 2}}},
    {"ByteOrderMarkCommentsAndBlankLines",
     "\xEF\xBB\xBF# measured 2024-05-02\n\nname,X,Y\n\n# first row\nA,1,2\n",
     {{"A", 1, 2, 0, 0, "", 6}}},
    {"Utf8Names", "name,X,Y\nR\xC3\xA4nne,1,2\n", {{"R\xC3\xA4nne", 1, 2, 0, 0, "", 2}}},
    {"HeaderOnly", "name,X,Y,H\n", {}},
};

// A case prints as its label: GoogleTest would print the record's bytes,
// padding and unused string storage included, which hold no set value.
void PrintTo(const Form& c, std::ostream* out) { *out << c.label; }

class Forms : public ::testing::TestWithParam<Form> {};

TEST_P(Forms, AreRead)
{
    const Points points = read(GetParam().text);
    ASSERT_TRUE(points);
    std::size_t count = 99;
    const qio_point* rows = qio_points_rows(points.get(), &count);
    ASSERT_EQ(count, GetParam().rows.size());
    EXPECT_EQ(rows == nullptr, count == 0);
    for (std::size_t i = 0; i < count; ++i) {
        const Row& expected = GetParam().rows[i];
        EXPECT_STREQ(rows[i].name, expected.name);
        EXPECT_EQ(rows[i].x, expected.x);
        EXPECT_EQ(rows[i].y, expected.y);
        EXPECT_EQ(rows[i].h, expected.h);
        EXPECT_EQ(rows[i].has_height, expected.has_height);
        EXPECT_STREQ(rows[i].code, expected.code);
        EXPECT_EQ(rows[i].line, expected.line);
    }
}

INSTANTIATE_TEST_SUITE_P(PointFiles, Forms, ::testing::ValuesIn(forms),
                         [](const ::testing::TestParamInfo<Form>& info) {
                             return std::string(info.param.label);
                         });

struct Bad {
    const char* label;
    std::string text;
    std::size_t line;
    const char* message;
};

const std::vector<Bad> bad = {
    {"TooFewFields", "name,X,Y,H\nA,1,2,3\nB,1,2\n", 3,
     "the row has 3 fields, the header 4 (separator ',')"},
    {"XNotANumber", "name,X,Y\nA,1,2\nB,1.2.3,4\n", 3, "point B: X \"1.2.3\" is not a number"},
    {"YEmpty", "name;X;Y\nA;1;\n", 2, "point A: Y \"\" is not a number"},
    {"NotANumberText", "name,X,Y\nA,nan,2\n", 2, "point A: X \"nan\" is not a number"},
    {"Infinity", "name,X,Y\nA,1,inf\n", 2, "point A: Y \"inf\" is not a number"},
    {"HeightNotANumber", "name,X,Y,H\nA,1,2,high\n", 2, "point A: H \"high\" is not a number"},
    {"NoName", "name,X,Y\n,1,2\n", 2, "the point has no name"},
    {"HeaderWithoutY", "\n\nname,X,Z\nA,1,2\n", 3,
     "the header must name the columns name, X and Y (H and code may follow); it reads "
     "\"name, X, Z\""},
    {"ColumnTwice", "name,X,Y,x\nA,1,2,3\n", 1, "the header names the column \"X\" twice"},
    {"NotUtf8", "name,X,Y\nA,1,2\nB\xE9,1,2\n", 3,
     "not UTF-8 text (byte 0xE9): save the file as UTF-8"},
    {"QuoteLeftOpen", "name,X,Y\n\"A,1,2\n", 2, "a quoted field is not closed"},
    // Found by fuzzing: the name would have been handed out as "A".
    {"NulByte", std::string("name,X,Y\nA\0B,1,2\n", 17), 2, "a NUL byte: not a text file"},
    {"Empty", "# nothing\n", 0, "the file is empty: a header row is needed"},
};

// A case prints as its label: GoogleTest would print the record's bytes,
// padding and unused string storage included, which hold no set value.
void PrintTo(const Bad& c, std::ostream* out) { *out << c.label; }

class BadRows : public ::testing::TestWithParam<Bad> {};

TEST_P(BadRows, AreRefusedWithTheirLine)
{
    const Bad& b = GetParam();
    qio_error error{};
    qio_points* sentinel = reinterpret_cast<qio_points*>(0x5678);
    qio_points* points = sentinel;
    EXPECT_EQ(qio_points_read_buffer(b.text.data(), b.text.size(), "pts.csv", &points, &error),
              QIO_MALFORMED);
    EXPECT_EQ(points, sentinel);
    EXPECT_EQ(error.line, b.line);
    const std::string where =
        b.line > 0 ? "pts.csv:" + std::to_string(b.line) + ": " : std::string("pts.csv: ");
    EXPECT_EQ(std::string(error.message), where + b.message);
}

INSTANTIATE_TEST_SUITE_P(PointFiles, BadRows, ::testing::ValuesIn(bad),
                         [](const ::testing::TestParamInfo<Bad>& info) {
                             return std::string(info.param.label);
                         });

TEST(PointFiles, FromAFileAsFromMemory)
{
    const std::string path = std::string(QUILLON_EXAMPLE_DATA) + "/measured.csv";
    qio_points* points = nullptr;
    qio_error error{};
    ASSERT_EQ(qio_points_read_file(path.c_str(), &points, &error), QIO_OK) << error.message;
    const Points owned(points, qio_points_free);
    std::size_t count = 0;
    const qio_point* rows = qio_points_rows(points, &count);
    ASSERT_EQ(count, 7u);
    EXPECT_STREQ(rows[1].name, "P2");
    EXPECT_EQ(rows[1].x, 5101.0221);
    EXPECT_EQ(rows[1].line, 3u);

    qio_points* sentinel = reinterpret_cast<qio_points*>(0x5678);
    points = sentinel;
    EXPECT_EQ(qio_points_read_file("/nonexistent/measured.csv", &points, &error), QIO_CANNOT_READ);
    EXPECT_EQ(points, sentinel);
    EXPECT_EQ(std::string(error.message).rfind("/nonexistent/measured.csv: cannot open", 0), 0u);
    EXPECT_EQ(qio_points_read_file(nullptr, &points, nullptr), QIO_BAD_ARGUMENT);
    EXPECT_EQ(qio_points_read_buffer(nullptr, 1, nullptr, &points, nullptr), QIO_BAD_ARGUMENT);
    EXPECT_EQ(points, sentinel);
    EXPECT_EQ(qio_points_rows(nullptr, &count), nullptr);
    EXPECT_EQ(count, 0u);
}

} // namespace

namespace {

// Tables: the same reading rules, cells by heading, numbers with the line.
TEST(Tables, CellsByHeadingAndNumbersWithTheirLine)
{
    const std::string text = "# sightings\nName;Direction;Distance\nP1;12,5;100\nP2;;x\n";
    qio_table* table = nullptr;
    qio_error error{};
    ASSERT_EQ(qio_table_read_buffer(text.data(), text.size(), "obs.csv", &table, &error), QIO_OK)
        << error.message;
    const std::unique_ptr<qio_table, void (*)(qio_table*)> owned(table, qio_table_free);
    EXPECT_EQ(qio_table_column_count(table), 3u);
    EXPECT_EQ(qio_table_row_count(table), 2u);
    EXPECT_STREQ(qio_table_heading(table, 1), "Direction");
    EXPECT_EQ(qio_table_heading(table, 3), nullptr);
    std::size_t column = 99;
    EXPECT_EQ(qio_table_find_column(table, "distance", &column), QIO_OK);
    EXPECT_EQ(column, 2u);
    EXPECT_EQ(qio_table_find_column(table, "zenith", &column), QIO_NOT_FOUND);
    EXPECT_EQ(column, 2u);
    EXPECT_STREQ(qio_table_cell(table, 1, 0), "P2");
    EXPECT_STREQ(qio_table_cell(table, 1, 1), "");
    EXPECT_EQ(qio_table_cell(table, 2, 0), nullptr);
    EXPECT_EQ(qio_table_row_line(table, 1), 4u);
    EXPECT_EQ(qio_table_row_line(table, 2), 0u);

    double value = -1.0;
    EXPECT_EQ(qio_table_number(table, 0, 1, &value, &error), QIO_OK);
    EXPECT_EQ(value, 12.5);
    value = -1.0;
    EXPECT_EQ(qio_table_number(table, 1, 2, &value, &error), QIO_MALFORMED);
    EXPECT_STREQ(error.message, "obs.csv:4: Distance \"x\" is not a number");
    EXPECT_EQ(error.line, 4u);
    EXPECT_EQ(qio_table_number(table, 1, 1, &value, &error), QIO_MALFORMED);
    EXPECT_EQ(qio_table_number(table, 0, 3, &value, &error), QIO_NOT_FOUND);
    EXPECT_EQ(value, -1.0);
    EXPECT_EQ(qio_table_number(nullptr, 0, 0, &value, nullptr), QIO_BAD_ARGUMENT);
}

TEST(Tables, BadFilesAreRefused)
{
    qio_table* sentinel = reinterpret_cast<qio_table*>(0x9abc);
    qio_table* table = sentinel;
    qio_error error{};
    const std::string text = "a,b,A\n1,2,3\n";
    ASSERT_EQ(qio_table_read_buffer(text.data(), text.size(), "t.csv", &table, &error), QIO_OK);
    std::size_t column = 0;
    EXPECT_EQ(qio_table_find_column(table, "a", &column), QIO_MALFORMED);
    EXPECT_EQ(qio_table_find_column(table, nullptr, &column), QIO_BAD_ARGUMENT);
    qio_table_free(table);
    table = sentinel;
    EXPECT_EQ(qio_table_read_buffer("a,b\n1\n", 6, "t.csv", &table, &error), QIO_MALFORMED);
    EXPECT_STREQ(error.message, "t.csv:2: the row has 1 fields, the header 2 (separator ',')");
    // Found by fuzzing: the heading would have been handed out as "c", which
    // names no column.
    EXPECT_EQ(qio_table_read_buffer("a,c\0d\n1,2\n", 10, "t.csv", &table, &error), QIO_MALFORMED);
    EXPECT_STREQ(error.message, "t.csv:1: a NUL byte: not a text file");
    EXPECT_EQ(qio_table_read_file("/nonexistent/t.csv", &table, &error), QIO_CANNOT_READ);
    EXPECT_EQ(qio_table_read_file(nullptr, &table, nullptr), QIO_BAD_ARGUMENT);
    EXPECT_EQ(table, sentinel);
}

} // namespace
