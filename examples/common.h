/* Helpers shared by the example programs: angles in and out, the meaning
 * of a status code, and a station set up over a mark. */
#ifndef QUILLON_EXAMPLES_COMMON_H
#define QUILLON_EXAMPLES_COMMON_H

#include "quillon.h"

/* Writes an angle given in arc-seconds as degrees, minutes and seconds,
 * e.g. "123°45'06.7\"", into text (at least 32 bytes). */
const char* dms(double seconds, char* text);

/* The meaning of a status code, for messages. */
const char* status_text(int status);

/* Arc-seconds from degrees, minutes and seconds. */
double angle(int degrees, int minutes, double seconds);

/* A station over the mark (x, y, h) with face I signs. refraction_mode 1
 * corrects for curvature and refraction with k = 0.14, 0 not at all. */
StationRecord station_over(double x, double y, double h, double instrument_height,
                           double target_height, unsigned char refraction_mode);

#endif
