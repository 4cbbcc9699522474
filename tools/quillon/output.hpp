// Writing results: to standard output, or to a file that appears whole or
// not at all.
#ifndef QUILLON_TOOL_OUTPUT_HPP
#define QUILLON_TOOL_OUTPUT_HPP

#include <cstddef>
#include <string>

namespace quillon::tool {

// Writes content to path through a temporary file beside it, renamed over
// path once complete; on failure the temporary file is removed and a
// Failure (EXIT_NO_OUTPUT) thrown. An empty path or "-" writes to standard
// output.
void deliver(const std::string& path, const std::string& content);

// A progress line on standard error, drawn only when it is a terminal and
// the work is long; cleared when done.
class Progress {
  public:
    Progress(const char* what, std::size_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    void step(std::size_t done);

  private:
    const char* what_;
    std::size_t total_;
    std::size_t shown_ = 0;
    bool active_;
};

} // namespace quillon::tool

#endif
