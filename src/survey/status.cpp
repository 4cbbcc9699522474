// Texts of the status codes, for messages in tools and bindings.
#include "quillon/survey.h"

extern "C" const char* qs_status_message(qs_status status)
{
    switch (status) {
    case QS_OK: return "success";
    case QS_TOO_FEW: return "too few observations";
    case QS_SINGULAR: return "singular geometry";
    case QS_NO_CONVERGENCE: return "no convergence";
    case QS_OUTSIDE_ALIGNMENT: return "point outside the alignment";
    case QS_BAD_ARGUMENT: return "bad argument";
    }
    return "unknown status";
}
