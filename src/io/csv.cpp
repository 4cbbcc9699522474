// Delimited text with a header row.
#include "csv.hpp"

#include <cctype>

namespace quillon::io {
namespace {

std::string_view trim(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) {
        text.remove_suffix(1);
    }
    return text;
}

// Splits one line; false when a quote is left open.
bool split(std::string_view line, char separator, std::vector<std::string>& fields)
{
    fields.clear();
    std::size_t i = 0;
    while (true) {
        std::string field;
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) {
            ++i;
        }
        if (i < line.size() && line[i] == '"') {
            ++i;
            bool closed = false;
            while (i < line.size()) {
                if (line[i] == '"') {
                    if (i + 1 < line.size() && line[i + 1] == '"') {
                        field += '"';
                        i += 2;
                        continue;
                    }
                    ++i;
                    closed = true;
                    break;
                }
                field += line[i++];
            }
            if (!closed) {
                return false;
            }
            const std::size_t next = line.find(separator, i);
            i = next == std::string_view::npos ? line.size() : next;
        } else {
            const std::size_t next = line.find(separator, i);
            const std::size_t end = next == std::string_view::npos ? line.size() : next;
            field = std::string(trim(line.substr(i, end - i)));
            i = end;
        }
        fields.push_back(field);
        if (i >= line.size()) {
            return true;
        }
        ++i; // the separator
    }
}

bool same_name(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i]))) {
            return false;
        }
    }
    return true;
}

} // namespace

CsvTable read_csv(const std::string& name, std::string_view bytes)
{
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") {
        bytes.remove_prefix(3);
    }
    std::size_t bad = 0;
    if (!valid_utf8(bytes, bad)) {
        const Source prefix(name, std::string(bytes.substr(0, bad)));
        prefix.refuse(QIO_MALFORMED, prefix.line_at(bad),
                      "not UTF-8 text (byte 0x" +
                          std::string(1, "0123456789ABCDEF"[(bytes[bad] >> 4) & 0xF]) +
                          std::string(1, "0123456789ABCDEF"[bytes[bad] & 0xF]) +
                          "): save the file as UTF-8");
    }
    // Names and cells are handed out as C strings, which a NUL byte would
    // cut short.
    const std::size_t nul = bytes.find('\0');
    if (nul != std::string_view::npos) {
        const Source prefix(name, std::string(bytes.substr(0, nul)));
        prefix.refuse(QIO_MALFORMED, prefix.line_at(nul), "a NUL byte: not a text file");
    }
    CsvTable table{Source(name, std::string(bytes)), ',', 0, {}, {}};
    const std::string& text = table.source.text();
    std::size_t start = 0;
    std::size_t line = 0;
    std::vector<std::string> fields;
    bool have_header = false;
    while (start <= text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) {
            end = text.size();
        }
        ++line;
        const std::string_view content = trim(std::string_view(text).substr(start, end - start));
        start = end + 1;
        if (content.empty() || content.front() == '#') {
            continue;
        }
        if (!have_header) {
            table.separator = content.find(';') != std::string_view::npos ? ';' : ',';
        }
        if (!split(content, table.separator, fields)) {
            table.source.refuse(QIO_MALFORMED, line, "a quoted field is not closed");
        }
        if (!have_header) {
            table.header = fields;
            table.header_line = line;
            have_header = true;
            continue;
        }
        if (fields.size() != table.header.size()) {
            table.source.refuse(QIO_MALFORMED, line,
                                "the row has " + std::to_string(fields.size()) +
                                    " fields, the header " + std::to_string(table.header.size()) +
                                    " (separator '" + std::string(1, table.separator) + "')");
        }
        table.rows.push_back(CsvRow{line, fields});
    }
    if (!have_header) {
        table.source.refuse(QIO_MALFORMED, 0, "the file is empty: a header row is needed");
    }
    return table;
}

long column(const CsvTable& table, std::string_view name)
{
    long found = -1;
    for (std::size_t i = 0; i < table.header.size(); ++i) {
        if (!same_name(table.header[i], name)) {
            continue;
        }
        if (found >= 0) {
            table.source.refuse(QIO_MALFORMED, table.header_line,
                                "the header names the column \"" + std::string(name) + "\" twice");
        }
        found = static_cast<long>(i);
    }
    return found;
}

bool field_number(const CsvTable& table, std::string_view field, double& value)
{
    if (table.separator == ';' && field.find(',') != std::string_view::npos &&
        field.find('.') == std::string_view::npos) {
        std::string point(field);
        point[point.find(',')] = '.';
        return parse_number(point, value);
    }
    return parse_number(field, value);
}

} // namespace quillon::io
