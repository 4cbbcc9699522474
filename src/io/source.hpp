// The text of one input file, with what every reader needs around it: the
// lines for messages, the refusal that carries a status and a message out
// to the C interface, strict number parsing and the conversion of the file's
// encoding to UTF-8.
#ifndef QUILLON_IO_SOURCE_HPP
#define QUILLON_IO_SOURCE_HPP

#include "quillon/io.h"

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::io {

// A reader's refusal: the status and the finished message ("FILE:LINE: ...").
class Refusal : public std::exception {
  public:
    Refusal(qio_status status, std::size_t line, std::string message)
        : status_(status), line_(line), message_(std::move(message))
    {
    }
    const char* what() const noexcept override { return message_.c_str(); }
    qio_status status() const { return status_; }
    std::size_t line() const { return line_; }

  private:
    qio_status status_;
    std::size_t line_;
    std::string message_;
};

class Source {
  public:
    // text must already be UTF-8; name stands for the file in messages.
    Source(std::string name, std::string text);

    const std::string& name() const { return name_; }
    const std::string& text() const { return text_; }

    // Line (from 1) holding the byte at offset; offsets past the end give
    // the last line.
    std::size_t line_at(std::size_t offset) const;

    // "NAME:LINE: text", or "NAME: text" for line 0.
    std::string message(std::size_t line, std::string_view text) const;

    [[noreturn]] void refuse(qio_status status, std::size_t line, std::string_view text) const;

  private:
    std::string name_;
    std::string text_;
    std::vector<std::size_t> line_starts_;
};

// The whole file as bytes; a file that cannot be opened or read is refused
// with QIO_CANNOT_READ.
std::string read_bytes(const std::string& path);

// A decimal number with nothing else around it but spaces: "12.5", "-3e2",
// "+4". Not-a-number and infinities are refused (returns false).
bool parse_number(std::string_view text, double& value);

// Numbers separated by spaces, tabs or line breaks ("6700.5 2500.25 51.3");
// false when a token is not a number.
bool parse_numbers(std::string_view text, std::vector<double>& values);

// Whether the bytes are valid UTF-8; on false, bad_offset is the first
// offending byte.
bool valid_utf8(std::string_view bytes, std::size_t& bad_offset);

// ISO-8859-1 (every byte one character) as UTF-8.
std::string latin1_to_utf8(std::string_view bytes);

// Windows-1252 as UTF-8: ISO-8859-1 except for the printable characters
// placed at 0x80 to 0x9F.
std::string cp1252_to_utf8(std::string_view bytes);

// The text cut to at most size - 1 bytes at a character boundary and
// written with its terminating NUL into buffer (size > 0).
void copy_message(std::string_view text, char* buffer, std::size_t size);

} // namespace quillon::io

#endif
