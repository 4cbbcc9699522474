// Texts of the status codes, for messages in tools and bindings.
#include "quillon/survey.h"

#include <cstring>

static_assert(sizeof(qs_status) == sizeof(int), "qs_status is passed as an int");

extern "C" const char* qs_status_message(qs_status status)
{
    // A C caller may pass any int. Read as the enumeration, a value beyond
    // its range (0 to 7) is undefined in C++, so the bytes are read as the
    // int they are.
    int code = 0;
    std::memcpy(&code, &status, sizeof code);
    switch (code) {
    case QS_OK: return "success";
    case QS_TOO_FEW: return "too few observations";
    case QS_SINGULAR: return "singular geometry";
    case QS_NO_CONVERGENCE: return "no convergence";
    case QS_OUTSIDE_ALIGNMENT: return "point outside the alignment";
    case QS_BAD_ARGUMENT: return "bad argument";
    default: return "unknown status";
    }
}
