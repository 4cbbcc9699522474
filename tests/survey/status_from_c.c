/* qs_status_message called from C, where any int converts to the
 * enumeration type: the values a C++ test cannot pass without undefined
 * behaviour of its own. */
#include "quillon/survey.h"

const char* status_message_from_c(int status);

const char* status_message_from_c(int status) { return qs_status_message((qs_status)status); }
