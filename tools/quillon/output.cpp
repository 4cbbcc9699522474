// Whole-or-nothing output files and the progress line.
#include "output.hpp"

#include "failure.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillon::tool {

namespace {

[[noreturn]] void cannot_write(const std::string& path, int error)
{
    throw Failure(EXIT_NO_OUTPUT, path + ": cannot write: " + std::strerror(error));
}

bool write_all(int descriptor, const std::string& content)
{
    std::size_t written = 0;
    while (written < content.size()) {
        const ssize_t n = ::write(descriptor, content.data() + written, content.size() - written);
        if (n < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        written += static_cast<std::size_t>(n);
    }
    return true;
}

} // namespace

void deliver(const std::string& path, const std::string& content)
{
    if (path.empty() || path == "-") {
        if (!write_all(STDOUT_FILENO, content)) {
            cannot_write("standard output", errno);
        }
        return;
    }
    // The temporary file lies in the target's directory, so that the rename
    // stays on one file system and replaces the target in one step.
    std::string temporary = path + ".XXXXXX";
    const int descriptor = ::mkstemp(temporary.data());
    if (descriptor < 0) {
        cannot_write(path, errno);
    }
    bool ok = write_all(descriptor, content);
    int error = errno;
    if (ok && ::fsync(descriptor) != 0) {
        ok = false;
        error = errno;
    }
    if (::close(descriptor) != 0 && ok) {
        ok = false;
        error = errno;
    }
    // mkstemp creates the file readable by its owner only; give it the
    // permissions a new file would have.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    if (ok && ::chmod(temporary.c_str(), 0666 & ~mask) != 0) {
        ok = false;
        error = errno;
    }
    if (ok && std::rename(temporary.c_str(), path.c_str()) != 0) {
        ok = false;
        error = errno;
    }
    if (!ok) {
        std::remove(temporary.c_str());
        cannot_write(path, error);
    }
}

Progress::Progress(const char* what, std::size_t total)
    : what_(what), total_(total), active_(total >= 2000 && ::isatty(STDERR_FILENO) == 1)
{
}

Progress::~Progress()
{
    if (active_ && shown_ > 0) {
        std::fputs("\r\033[K", stderr);
        std::fflush(stderr);
    }
}

void Progress::step(std::size_t done)
{
    if (!active_) {
        return;
    }
    const std::size_t percent = done * 100 / total_;
    if (percent == shown_) {
        return;
    }
    shown_ = percent;
    std::fprintf(stderr, "\r%s: %zu of %zu (%zu%%)", what_, done, total_, percent);
    std::fflush(stderr);
}

} // namespace quillon::tool
