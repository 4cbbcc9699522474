// Source text, refusals, numbers and encodings shared by the readers.
#include "source.hpp"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace quillon::io {

Source::Source(std::string name, std::string text) : name_(std::move(name)), text_(std::move(text))
{
    line_starts_.push_back(0);
    for (std::size_t i = 0; i < text_.size(); ++i) {
        if (text_[i] == '\n') {
            line_starts_.push_back(i + 1);
        }
    }
}

std::size_t Source::line_at(std::size_t offset) const
{
    auto after = std::upper_bound(line_starts_.begin(), line_starts_.end(), offset);
    return static_cast<std::size_t>(after - line_starts_.begin());
}

std::string Source::message(std::size_t line, std::string_view text) const
{
    std::string out = name_;
    if (line > 0) {
        out += ':';
        out += std::to_string(line);
    }
    out += ": ";
    out += text;
    return out;
}

void Source::refuse(qio_status status, std::size_t line, std::string_view text) const
{
    throw Refusal(status, line, message(line, text));
}

std::string read_bytes(const std::string& path)
{
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        throw Refusal(QIO_CANNOT_READ, 0, path + ": cannot open: " + std::strerror(errno));
    }
    std::string bytes;
    char block[65536];
    std::size_t got = 0;
    while ((got = std::fread(block, 1, sizeof block, file)) > 0) {
        bytes.append(block, got);
    }
    const bool failed = std::ferror(file) != 0;
    const int error = errno;
    std::fclose(file);
    if (failed) {
        throw Refusal(QIO_CANNOT_READ, 0, path + ": cannot read: " + std::strerror(error));
    }
    return bytes;
}

bool parse_number(std::string_view text, double& value)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
        text.remove_suffix(1);
    }
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    if (text.empty()) {
        return false;
    }
    double parsed = 0.0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(parsed)) {
        return false;
    }
    value = parsed;
    return true;
}

bool parse_numbers(std::string_view text, std::vector<double>& values)
{
    values.clear();
    const char* const spaces = " \t\r\n";
    std::size_t start = text.find_first_not_of(spaces);
    while (start != std::string_view::npos) {
        const std::size_t end = text.find_first_of(spaces, start);
        double value = 0.0;
        if (!parse_number(text.substr(start, end - start), value)) {
            return false;
        }
        values.push_back(value);
        start = end == std::string_view::npos ? end : text.find_first_not_of(spaces, end);
    }
    return true;
}

bool valid_utf8(std::string_view bytes, std::size_t& bad_offset)
{
    std::size_t i = 0;
    while (i < bytes.size()) {
        const unsigned char lead = static_cast<unsigned char>(bytes[i]);
        std::size_t follow = 0;
        unsigned long code = 0;
        unsigned long least = 0;
        if (lead < 0x80) {
            ++i;
            continue;
        } else if (lead >= 0xC2 && lead <= 0xDF) {
            follow = 1;
            code = lead & 0x1Fu;
            least = 0x80;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            follow = 2;
            code = lead & 0x0Fu;
            least = 0x800;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            follow = 3;
            code = lead & 0x07u;
            least = 0x10000;
        } else {
            bad_offset = i;
            return false;
        }
        if (i + follow >= bytes.size()) {
            bad_offset = i;
            return false;
        }
        for (std::size_t k = 1; k <= follow; ++k) {
            const unsigned char next = static_cast<unsigned char>(bytes[i + k]);
            if ((next & 0xC0u) != 0x80u) {
                bad_offset = i;
                return false;
            }
            code = (code << 6) | (next & 0x3Fu);
        }
        // Overlong forms, surrogates and code points beyond U+10FFFF.
        if (code < least || (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF) {
            bad_offset = i;
            return false;
        }
        i += follow + 1;
    }
    return true;
}

namespace {

void append_utf8(std::string& out, unsigned long code)
{
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

// Windows-1252 at 0x80..0x9F; the five places it leaves empty keep the
// control character of ISO-8859-1.
const unsigned short cp1252_high[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

std::string latin1_to_utf8(std::string_view bytes)
{
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (char c : bytes) {
        append_utf8(out, static_cast<unsigned char>(c));
    }
    return out;
}

std::string cp1252_to_utf8(std::string_view bytes)
{
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (char c : bytes) {
        const unsigned char byte = static_cast<unsigned char>(c);
        append_utf8(out, byte >= 0x80 && byte < 0xA0 ? cp1252_high[byte - 0x80] : byte);
    }
    return out;
}

void copy_message(std::string_view text, char* buffer, std::size_t size)
{
    std::size_t length = std::min(text.size(), size - 1);
    // Step back over continuation bytes so no character is cut in two.
    if (length < text.size()) {
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0u) == 0x80u) {
            --length;
        }
    }
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
}

} // namespace quillon::io
