// Reading a fuzz input front to back, and writing one the same way (for the
// seed inputs). Past its end an input reads as zeros, so every input, of any
// length, decodes to exactly one set of arguments.
#ifndef QUILLON_FUZZ_BYTES_HPP
#define QUILLON_FUZZ_BYTES_HPP

#include <sanitizer/asan_interface.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

namespace qfuzz {

// The most bytes of caller-provided buffers a fuzz call is given; an input
// whose counts oblige the caller to provide more is not run.
constexpr std::size_t MAX_BUFFER_BYTES = std::size_t{8} << 20;

class Reader {
  public:
    Reader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    // n bytes into `to`; zeros where the input has ended.
    void take(void* to, std::size_t n)
    {
        const std::size_t left = size_ - at_;
        const std::size_t copied = n < left ? n : left;
        if (copied > 0) {
            std::memcpy(to, data_ + at_, copied);
        }
        std::memset(static_cast<unsigned char*>(to) + copied, 0, n - copied);
        at_ += copied;
    }

    // n bytes into a block that already holds zeros: only what the input
    // still has is copied (a large block of a large count costs nothing
    // beyond the pages the function touches).
    void fill(void* zeroed, std::size_t n)
    {
        const std::size_t left = size_ - at_;
        const std::size_t copied = n < left ? n : left;
        if (copied > 0) {
            std::memcpy(zeroed, data_ + at_, copied);
        }
        at_ += copied;
    }

    template <typename T> T get()
    {
        T value;
        take(&value, sizeof value);
        return value;
    }

  private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

class Writer {
  public:
    void put(const void* from, std::size_t n)
    {
        const auto* bytes = static_cast<const std::uint8_t*>(from);
        out_.insert(out_.end(), bytes, bytes + n);
    }

    template <typename T> void put(const T& value) { put(&value, sizeof value); }

    const std::vector<std::uint8_t>& bytes() const { return out_; }

  private:
    std::vector<std::uint8_t> out_;
};

// A heap block of exactly `bytes` bytes, zeroed: AddressSanitizer reports
// any access beyond it. A block of no bytes is a small allocation poisoned
// whole, since the sanitizer's malloc(0) leaves one byte addressable.
class Block {
  public:
    Block() = default;
    explicit Block(std::size_t bytes)
        : data_(std::calloc(1, bytes > 0 ? bytes : EMPTY)), empty_(bytes == 0)
    {
        if (empty_) {
            ASAN_POISON_MEMORY_REGION(data_, EMPTY);
        }
    }
    ~Block()
    {
        if (empty_) {
            ASAN_UNPOISON_MEMORY_REGION(data_, EMPTY);
        }
        std::free(data_);
    }
    Block(Block&& other) noexcept : data_(other.data_), empty_(other.empty_)
    {
        other.data_ = nullptr;
        other.empty_ = false;
    }
    Block& operator=(Block&& other) noexcept
    {
        std::swap(data_, other.data_);
        std::swap(empty_, other.empty_);
        return *this;
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    void* get() const { return data_; }

  private:
    static constexpr std::size_t EMPTY = 16;
    void* data_ = nullptr;
    bool empty_ = false;
};

} // namespace qfuzz

#endif
