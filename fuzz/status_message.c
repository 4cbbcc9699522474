/* qs_status_message called as a C program calls it: any int converts to the
 * enumeration type, and the header promises a text for every value. */
#include <quillon/survey.h>

const char* qfuzz_status_message(int status);

const char* qfuzz_status_message(int status) { return qs_status_message((qs_status)status); }
