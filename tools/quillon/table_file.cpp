// Observation files.
#include "table_file.hpp"

#include "failure.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

namespace quillon::tool {

TableFile::TableFile(const std::string& path) : path_(path)
{
    qio_table* table = nullptr;
    qio_error error{};
    const qio_status status = qio_table_read_file(path.c_str(), &table, &error);
    if (status != QIO_OK) {
        throw Failure(exit_code(status), error.message);
    }
    table_.reset(table);
}

long TableFile::column(const char* name, bool required) const
{
    std::size_t index = 0;
    const qio_status status = qio_table_find_column(table_.get(), name, &index);
    if (status == QIO_OK) {
        return static_cast<long>(index);
    }
    if (status == QIO_NOT_FOUND && !required) {
        return -1;
    }
    std::string headings;
    for (std::size_t i = 0; i < qio_table_column_count(table_.get()); ++i) {
        headings += fmt::format("{}{}", i == 0 ? "" : ", ", qio_table_heading(table_.get(), i));
    }
    throw Failure(
        EXIT_BAD_INPUT,
        status == QIO_NOT_FOUND
            ? fmt::format("{}: no column \"{}\" (the header reads \"{}\")", path_, name, headings)
            : fmt::format("{}: the column \"{}\" is named twice", path_, name));
}

bool TableFile::has(std::size_t row, long column) const
{
    return column >= 0 &&
           *qio_table_cell(table_.get(), row, static_cast<std::size_t>(column)) != '\0';
}

std::string TableFile::text(std::size_t row, long column) const
{
    return column < 0 ? std::string()
                      : qio_table_cell(table_.get(), row, static_cast<std::size_t>(column));
}

double TableFile::number(std::size_t row, long column) const
{
    double value = 0.0;
    qio_error error{};
    const qio_status status =
        qio_table_number(table_.get(), row, static_cast<std::size_t>(column), &value, &error);
    if (status != QIO_OK) {
        throw Failure(exit_code(status), error.message);
    }
    return value;
}

double TableFile::angle(std::size_t row, long column, AngleUnit unit) const
{
    double seconds = 0.0;
    if (!parse_angle(text(row, column), unit, seconds)) {
        const char* units[] = {"ddd.mmss", "degrees", "gon"};
        refuse(row, fmt::format("{} \"{}\" is not an angle in {}",
                                qio_table_heading(table_.get(), static_cast<std::size_t>(column)),
                                text(row, column), units[static_cast<int>(unit)]));
    }
    return seconds;
}

void TableFile::refuse(std::size_t row, const std::string& text) const
{
    throw Failure(EXIT_BAD_INPUT,
                  fmt::format("{}:{}: {}", path_, qio_table_row_line(table_.get(), row), text));
}

namespace {

// Digits with at most one point, read whatever the locale.
double decimal(const std::string& digits)
{
    double value = 0.0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

} // namespace

bool parse_angle(const std::string& text, AngleUnit unit, double& seconds)
{
    // Digits, one point at most and a leading sign; nothing else.
    std::size_t start = text.empty() || (text[0] != '-' && text[0] != '+') ? 0 : 1;
    const std::size_t point = text.find('.');
    if (start == text.size()) {
        return false;
    }
    for (std::size_t i = start; i < text.size(); ++i) {
        if (!(std::isdigit(static_cast<unsigned char>(text[i])) || i == point)) {
            return false;
        }
    }
    if (point != std::string::npos && text.find('.', point + 1) != std::string::npos) {
        return false;
    }
    if (!std::any_of(text.begin(), text.end(),
                     [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; })) {
        return false;
    }
    const double sign = text[0] == '-' ? -1.0 : 1.0;
    if (unit != AngleUnit::dms) {
        const double value = decimal(text.substr(start));
        seconds = sign * value * (unit == AngleUnit::degrees ? 3600.0 : 3240.0);
        return std::isfinite(seconds);
    }
    // ddd.mmss...: two digits of minutes, two of seconds, then tenths and
    // finer; missing digits count as zeros ("123.5" is 123 deg 50').
    const std::string degrees =
        text.substr(start, point == std::string::npos ? std::string::npos : point - start);
    std::string fraction = point == std::string::npos ? std::string() : text.substr(point + 1);
    fraction.resize(std::max<std::size_t>(fraction.size(), 4), '0');
    const double minutes = decimal(fraction.substr(0, 2));
    const double whole_seconds = decimal(fraction.substr(2, 2) + "." + fraction.substr(4) + "0");
    if (minutes >= 60.0 || whole_seconds >= 60.0) {
        return false;
    }
    seconds = sign * (decimal(degrees.empty() ? std::string("0") : degrees) * 3600.0 +
                      minutes * 60.0 + whole_seconds);
    return std::isfinite(seconds);
}

} // namespace quillon::tool
