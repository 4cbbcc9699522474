// What stops a command: an exit code and the message for stderr.
#ifndef QUILLON_TOOL_FAILURE_HPP
#define QUILLON_TOOL_FAILURE_HPP

#include "quillon/io.h"

#include <exception>
#include <string>

namespace quillon::tool {

// The exit codes of the command (printed by --help and in the README).
enum Exit : int {
    EXIT_DONE = 0,        // the output is complete
    EXIT_INTERNAL = 1,    // an internal failure (out of memory)
    EXIT_USAGE = 2,       // the command line is wrong
    EXIT_NO_INPUT = 3,    // an input file cannot be read
    EXIT_BAD_INPUT = 4,   // an input file is malformed, unsupported or contradicts itself
    EXIT_COMPUTATION = 5, // a computation was refused (singular geometry, no convergence)
    EXIT_NO_OUTPUT = 6    // the output file cannot be written
};

// The exit codes as --help prints them.
extern const char* const EXIT_CODES_HELP;

class Failure : public std::exception {
  public:
    Failure(int code, std::string message) : code_(code), message_(std::move(message)) {}
    const char* what() const noexcept override { return message_.c_str(); }
    int code() const { return code_; }

  private:
    int code_;
    std::string message_;
};

// The exit code for a reader's status.
int exit_code(qio_status status);

} // namespace quillon::tool

#endif
