/* A closed traverse as a field crew runs it: at every station two rounds of
 * face I / face II pointings to the back and forward stations, reduced with
 * LIB_STAMultCycleCal; then the whole loop closed and adjusted with
 * LIB_TRSMultCycleCal. The pointings are made up from known coordinates with
 * a few seconds of pointing error, as a real instrument would deliver them. */
#include "common.h"
#include "quillon.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

#define STATIONS 5 /* A, P1, P2, P3 and A again */
#define ROUNDS 2

/* The loop A -> P1 -> P2 -> P3 -> A, oriented on B at both ends. */
static const SurveyPoint A = {5000.000, 2000.000, 312.450};
static const SurveyPoint B = {5300.000, 2000.000, 310.020};
static const SurveyPoint P1 = {4850.123, 2180.456, 315.200};
static const SurveyPoint P2 = {4700.500, 2050.250, 318.900};
static const SurveyPoint P3 = {4820.750, 1880.600, 314.100};

static const char* const NAMES[STATIONS] = {"A", "P1", "P2", "P3", "A"};

/* Pointing errors in arc-seconds, by station, round and target (forward,
 * backward): what the observer's eye and the instrument add. */
static const double HZ_ERROR[STATIONS][ROUNDS][2] = {{{1.2, -0.8}, {-1.5, 0.4}},
                                                     {{2.1, 0.3}, {0.6, -1.9}},
                                                     {{-0.7, 1.1}, {1.4, 0.2}},
                                                     {{0.9, -2.2}, {-0.3, 1.6}},
                                                     {{-1.1, 0.5}, {0.8, -0.6}}};

/* A length as printed to the tenth of a millimetre, without a "-0.0000". */
static double shown(double metres) { return fabs(metres) < 0.00005 ? 0.0 : metres; }

static double wrap(double seconds)
{
    seconds = fmod(seconds, 1296000.0);
    return seconds < 0.0 ? seconds + 1296000.0 : seconds;
}

/* Face I and face II pointings of one target: the circle reading is the
 * azimuth less the circle's orientation; face II is turned by a half circle
 * and carries 4" of collimation error, the zenith 3" of index error. */
static void point(const SurveyPoint* from, const SurveyPoint* to, double orientation, double error,
                  TargetReading* face1, TargetReading* face2)
{
    DistAngleRecord sight;
    memset(&sight, 0, sizeof sight);
    LIB_CalDistAngle(from, to, 1, &sight);
    memset(face1, 0, sizeof *face1);
    memset(face2, 0, sizeof *face2);
    face1->Hz = wrap(sight.Azimuth - orientation + error + 2.0);
    face2->Hz = wrap(face1->Hz + 648000.0 - 4.0);
    face1->V = sight.ZenithAngle + 1.5;
    face2->V = 1296000.0 - sight.ZenithAngle + 1.5;
    face1->SlopeDist = sight.SlopeDistance + 0.001;
    face2->SlopeDist = sight.SlopeDistance - 0.001;
}

int main(void)
{
    const SurveyPoint* marks[STATIONS] = {&A, &P1, &P2, &P3, &A};
    const SurveyPoint* backward[STATIONS] = {&B, &A, &P1, &P2, &P3};
    const SurveyPoint* forward[STATIONS] = {&P1, &P2, &P3, &A, &B};
    TraverseStation stations[STATIONS];
    char a[32], b[32], c[32];
    int s, r;

    printf("Station reductions (%d rounds, face I and II, tolerances 9\" / 9\" / 9\" / 13\" / "
           "9\")\n",
           ROUNDS);
    printf(
        "  Stn  Fore dir.        Back dir.        Angle              Hz dist  Vert. diff  Check\n");
    for (s = 0; s < STATIONS; ++s) {
        StationRecord instrument;
        RoundObservation rounds[ROUNDS];
        StaMultiResult sta;
        const double orientation = 100000.0 + 250000.0 * s;
        memset(&instrument, 0, sizeof instrument);
        instrument.X = marks[s]->X;
        instrument.Y = marks[s]->Y;
        instrument.H = marks[s]->H;
        instrument.InstrumentHeight = 1.550;
        instrument.TargetHeight = 1.550;
        instrument.signA = 1;
        instrument.signB = 1;
        instrument.refractionMode = 0;
        for (r = 0; r < ROUNDS; ++r) {
            point(marks[s], forward[s], orientation, HZ_ERROR[s][r][0], &rounds[r].Face1Target1,
                  &rounds[r].Face2Target1);
            point(marks[s], backward[s], orientation, HZ_ERROR[s][r][1], &rounds[r].Face1Target2,
                  &rounds[r].Face2Target2);
        }

        memset(&sta, 0, sizeof sta);
        sta.TolIndexDiff = 9.0;
        sta.TolZenithRange = 9.0;
        sta.TolFaceAngleDiff = 9.0;
        sta.Tol2CDiff = 13.0;
        sta.TolDirectionRange = 9.0;
        sta.SkipChecks = 0;
        sta.ObsMode = 2; /* two targets, both faces */
        sta.Station = &instrument;
        sta.Scale = 1.0;
        const int status = LIB_STAMultCycleCal(rounds, ROUNDS, &sta);
        printf("  %-4s %-16s %-16s %-16s %9.4f %+11.4f  %s", NAMES[s], dms(sta.MeanHz1, a),
               dms(sta.MeanHz2, b), dms(sta.Angle12, c), sta.HorizDist1, sta.VertDiff1,
               status == 0 ? "ok" : "FAILED");
        if (status != 0) {
            printf(" (flag %d)", (int)sta.ErrorFlag);
        }
        printf("\n");

        /* The leading doubles of the station result are the traverse station. */
        memcpy(&stations[s], &sta, sizeof stations[s]);
    }

    TraverseControl control;
    TraverseResult result;
    memset(&control, 0, sizeof control);
    memset(&result, 0, sizeof result);
    control.DistributionRule = 0; /* by leg length */
    control.HeightRule = 0;
    control.TraverseType = 0; /* loop back to A, orientation on B re-observed */
    control.A = A;
    control.B = B;
    control.E = A;
    control.G = B;
    const int status = LIB_TRSMultCycleCal(stations, STATIONS, &control, &result);
    printf("\nTraverse closure [%s]\n", status_text(status));
    if (status != 0) {
        return 1;
    }
    printf("  Stations %.0f, total length %.3f m\n", result.StationCount, result.SumDist);
    printf("  Angular misclosure  %+.1f\"\n", result.AngularMisclosure);
    printf("  fx %+.4f m   fy %+.4f m   fs %.4f m   fh %+.4f m\n", shown(result.Fx),
           shown(result.Fy), result.LinearMisclosure, shown(result.HeightMisclosure));
    if (result.LinearMisclosure > 0.0) {
        printf("  Relative misclosure 1:%.0f\n", 1.0 / result.Relative);
    }

    printf("\nAdjusted coordinates\n");
    printf("  Stn  X (north)      Y (east)       H            Azimuth out\n");
    for (s = 0; s < STATIONS; ++s) {
        /* The first station is where the traverse starts; every other one
         * is the end of the leg before it. */
        const SurveyPoint* p = s == 0 ? &stations[0].StationPoint : &stations[s - 1].LegEnd;
        printf("  %-4s %12.4f   %12.4f   %9.4f", NAMES[s], p->X, p->Y, p->H);
        /* The last station closes the traverse and has no leg of its own to
         * leave by. The azimuths are carried on unfolded: shown in a circle. */
        if (s + 1 < STATIONS) {
            printf("    %s", dms(wrap(stations[s].Azimuth), a));
        }
        printf("\n");
    }
    return 0;
}
