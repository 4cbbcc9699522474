#include "common.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

const char* dms(double seconds, char* text)
{
    const char* sign = seconds < 0.0 ? "-" : "";
    double s = fabs(seconds);
    /* Round to a tenth of a second first so that 59.96" does not print as 60.0". */
    s = floor(s * 10.0 + 0.5) / 10.0;
    const long degrees = (long)(s / 3600.0);
    s -= degrees * 3600.0;
    const long minutes = (long)(s / 60.0);
    s -= minutes * 60.0;
    snprintf(text, 32, "%s%ld\xc2\xb0%02ld'%04.1f\"", sign, degrees, minutes, s);
    return text;
}

const char* status_text(int status)
{
    switch (status) {
    case 0: return "ok";
    case 1: return "input outside its domain";
    case 2: return "result out of range";
    case 3: return "points coincide";
    case 4: return "road table count out of limits";
    case 5: return "point behind the instrument";
    case 6: return "lines are parallel";
    default: return "unknown status";
    }
}

double angle(int degrees, int minutes, double seconds)
{
    return degrees * 3600.0 + minutes * 60.0 + seconds;
}

StationRecord station_over(double x, double y, double h, double instrument_height,
                           double target_height, unsigned char refraction_mode)
{
    StationRecord station;
    memset(&station, 0, sizeof station);
    station.X = x;
    station.Y = y;
    station.H = h;
    station.InstrumentHeight = instrument_height;
    station.TargetHeight = target_height;
    station.signA = 1;
    station.signB = 1;
    station.refractionMode = refraction_mode;
    return station;
}
