/* Printing helpers shared by the example programs. */
#ifndef QUILLON_EXAMPLES_DMS_H
#define QUILLON_EXAMPLES_DMS_H

/* Writes an angle given in arc-seconds as degrees, minutes and seconds,
 * e.g. "123°45'06.7\"", into text (at least 32 bytes). */
const char* dms(double seconds, char* text);

/* The meaning of a status code, for messages. */
const char* status_text(int status);

#endif
