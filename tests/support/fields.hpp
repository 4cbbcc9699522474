// The fields of every record the tests compare, listed once, so that a check
// on a whole record can name the field that differs.
#ifndef QUILLON_TESTS_FIELDS_HPP
#define QUILLON_TESTS_FIELDS_HPP

#include "quillon.h"

namespace qtest {

// Any type is a single value unless it is listed below.
template <typename T> constexpr bool described(const T*) { return false; }

// QTEST_RECORD(Type, QTEST_FIELD(a) QTEST_FIELD(b) ...) lists a record's
// fields in their order: each_field calls visit(name, member pointer).
#define QTEST_FIELD(name) visit(#name, &Record::name);
#define QTEST_RECORD(Type, fields)                                                                 \
    constexpr bool described(const Type*) { return true; }                                         \
    template <typename Visit> void each_field(const Type*, Visit&& visit)                          \
    {                                                                                              \
        using Record = Type;                                                                       \
        fields                                                                                     \
    }

// clang-format off
QTEST_RECORD(SurveyPoint, QTEST_FIELD(X) QTEST_FIELD(Y) QTEST_FIELD(H))
QTEST_RECORD(PlanePoint, QTEST_FIELD(X) QTEST_FIELD(Y))
QTEST_RECORD(TangentPoint, QTEST_FIELD(X) QTEST_FIELD(Y) QTEST_FIELD(Azimuth))
QTEST_RECORD(DistanceRecord, QTEST_FIELD(SlopeDistance) QTEST_FIELD(HorizontalDistance)
             QTEST_FIELD(VerticalDifference) QTEST_FIELD(HeightDifference))
QTEST_RECORD(DistAngleRecord, QTEST_FIELD(X) QTEST_FIELD(Y) QTEST_FIELD(H)
             QTEST_FIELD(SlopeDistance) QTEST_FIELD(HorizontalDistance)
             QTEST_FIELD(HeightDifference) QTEST_FIELD(Azimuth) QTEST_FIELD(ZenithAngle))
QTEST_RECORD(BearingRecord, QTEST_FIELD(Spare1) QTEST_FIELD(HorizontalDistance)
             QTEST_FIELD(HeightDifference) QTEST_FIELD(Spare4) QTEST_FIELD(Azimuth))
QTEST_RECORD(ProjectionRecord, QTEST_FIELD(FootX) QTEST_FIELD(FootY) QTEST_FIELD(FootH)
             QTEST_FIELD(Across) QTEST_FIELD(Along) QTEST_FIELD(LineDH))
QTEST_RECORD(SODistAngleResult, QTEST_FIELD(DistanceDifference) QTEST_FIELD(AngleDifference))
QTEST_RECORD(SOCoorResult, QTEST_FIELD(X) QTEST_FIELD(Y) QTEST_FIELD(H)
             QTEST_FIELD(HorizontalDistanceDifference) QTEST_FIELD(HeightDifference)
             QTEST_FIELD(ForwardDifference) QTEST_FIELD(LateralDifference)
             QTEST_FIELD(AngleDifference))
QTEST_RECORD(SODivideResult, QTEST_FIELD(ForwardDifference) QTEST_FIELD(LateralDifference)
             QTEST_FIELD(AngleDifference))
QTEST_RECORD(AreaResult, QTEST_FIELD(Area) QTEST_FIELD(Hectares) QTEST_FIELD(Perimeter))
QTEST_RECORD(MissLineResult, QTEST_FIELD(SlopeDistance) QTEST_FIELD(HorizontalDistance)
             QTEST_FIELD(HeightDifference) QTEST_FIELD(Grade) QTEST_FIELD(Azimuth))
QTEST_RECORD(LineHeightResult, QTEST_FIELD(Height) QTEST_FIELD(HorizontalDistance)
             QTEST_FIELD(Along) QTEST_FIELD(HeightBetween))
QTEST_RECORD(CirclePointPair, QTEST_FIELD(FirstX) QTEST_FIELD(FirstY) QTEST_FIELD(FirstSpare)
             QTEST_FIELD(SecondX) QTEST_FIELD(SecondY) QTEST_FIELD(SecondSpare))
QTEST_RECORD(ResectionResult, QTEST_FIELD(X) QTEST_FIELD(Y) QTEST_FIELD(H) QTEST_FIELD(mX)
             QTEST_FIELD(mY) QTEST_FIELD(mH) QTEST_FIELD(Orientation))
QTEST_RECORD(BaselineRecord, QTEST_FIELD(Spare1) QTEST_FIELD(HorizontalDistance)
             QTEST_FIELD(Spare3) QTEST_FIELD(Grade) QTEST_FIELD(Azimuth))
QTEST_RECORD(PlaneHitRecord, QTEST_FIELD(X) QTEST_FIELD(Y) QTEST_FIELD(H)
             QTEST_FIELD(SightDistance) QTEST_FIELD(PlaneAlong) QTEST_FIELD(PlaneOffset))
QTEST_RECORD(ArcResult, QTEST_FIELD(CentreX) QTEST_FIELD(CentreY) QTEST_FIELD(Radius)
             QTEST_FIELD(X) QTEST_FIELD(Y) QTEST_FIELD(H) QTEST_FIELD(HorizontalDistance)
             QTEST_FIELD(SightDistance) QTEST_FIELD(ArcLength))
QTEST_RECORD(HElement, QTEST_FIELD(Type) QTEST_FIELD(X) QTEST_FIELD(Y) QTEST_FIELD(Azimuth)
             QTEST_FIELD(Length) QTEST_FIELD(Radius) QTEST_FIELD(Turn) QTEST_FIELD(Spiral)
             QTEST_FIELD(Chainage))
QTEST_RECORD(CrossPoint, QTEST_FIELD(X) QTEST_FIELD(Y) QTEST_FIELD(TurnAngle)
             QTEST_FIELD(EntryLength) QTEST_FIELD(ExitLength) QTEST_FIELD(Radius)
             QTEST_FIELD(Chainage))
QTEST_RECORD(CrossLengths, QTEST_FIELD(EntryTangent) QTEST_FIELD(ExitTangent)
             QTEST_FIELD(ArcLength) QTEST_FIELD(CurveLength))
QTEST_RECORD(VElement, QTEST_FIELD(Type) QTEST_FIELD(Chainage) QTEST_FIELD(Elevation)
             QTEST_FIELD(VertexChainage) QTEST_FIELD(VertexElevation) QTEST_FIELD(Radius)
             QTEST_FIELD(Length) QTEST_FIELD(Given) QTEST_FIELD(GradeIn) QTEST_FIELD(GradeOut))
QTEST_RECORD(SectionRecord, QTEST_FIELD(Chainage) QTEST_FIELD(Left) QTEST_FIELD(Right))
QTEST_RECORD(TraverseLeg, QTEST_FIELD(HorizDist) QTEST_FIELD(HeightDiff) QTEST_FIELD(DeltaX)
             QTEST_FIELD(DeltaY) QTEST_FIELD(DeltaH) QTEST_FIELD(ForeDirection)
             QTEST_FIELD(BackDirection) QTEST_FIELD(Spare1) QTEST_FIELD(Spare2))
QTEST_RECORD(TraverseClosure, QTEST_FIELD(Fx) QTEST_FIELD(Fy) QTEST_FIELD(Fh) QTEST_FIELD(SumDist)
             QTEST_FIELD(SumHeightDiff) QTEST_FIELD(Misclosure) QTEST_FIELD(Relative)
             QTEST_FIELD(KnownEndAzimuth) QTEST_FIELD(ComputedEndAzimuth)
             QTEST_FIELD(AngularMisclosure))
QTEST_RECORD(AdjustClosure, QTEST_FIELD(Misclosure) QTEST_FIELD(Relative))
QTEST_RECORD(StaMultiResult, QTEST_FIELD(MeanHz1) QTEST_FIELD(MeanV1) QTEST_FIELD(MeanSlope1)
             QTEST_FIELD(HorizDist1) QTEST_FIELD(VertDiff1) QTEST_FIELD(Point1)
             QTEST_FIELD(HeightDiff1) QTEST_FIELD(MeanHz2) QTEST_FIELD(MeanV2)
             QTEST_FIELD(MeanSlope2) QTEST_FIELD(HorizDist2) QTEST_FIELD(VertDiff2)
             QTEST_FIELD(Point2) QTEST_FIELD(HeightDiff2) QTEST_FIELD(Angle12)
             QTEST_FIELD(MeanHz2Copy) QTEST_FIELD(MeanHz1Copy) QTEST_FIELD(Reserved)
             QTEST_FIELD(StationPoint) QTEST_FIELD(ErrorFlag) QTEST_FIELD(Reserved2)
             QTEST_FIELD(TolIndexDiff) QTEST_FIELD(TolZenithRange) QTEST_FIELD(TolFaceAngleDiff)
             QTEST_FIELD(Tol2CDiff) QTEST_FIELD(TolDirectionRange) QTEST_FIELD(SkipChecks)
             QTEST_FIELD(Reserved3) QTEST_FIELD(ObsMode) QTEST_FIELD(Station) QTEST_FIELD(Scale))
QTEST_RECORD(TraverseStation, QTEST_FIELD(MeanHz1) QTEST_FIELD(MeanV1) QTEST_FIELD(MeanSlope1)
             QTEST_FIELD(HorizDist1) QTEST_FIELD(VertDiff1) QTEST_FIELD(Point1)
             QTEST_FIELD(HeightDiff1) QTEST_FIELD(MeanHz2) QTEST_FIELD(MeanV2)
             QTEST_FIELD(MeanSlope2) QTEST_FIELD(HorizDist2) QTEST_FIELD(VertDiff2)
             QTEST_FIELD(Point2) QTEST_FIELD(HeightDiff2) QTEST_FIELD(Angle12)
             QTEST_FIELD(MeanHz2Copy) QTEST_FIELD(Azimuth) QTEST_FIELD(DeltaX) QTEST_FIELD(DeltaY)
             QTEST_FIELD(DeltaH) QTEST_FIELD(CorrX) QTEST_FIELD(CorrY) QTEST_FIELD(CorrH)
             QTEST_FIELD(AdjDeltaX) QTEST_FIELD(AdjDeltaY) QTEST_FIELD(AdjDeltaH)
             QTEST_FIELD(LegEnd) QTEST_FIELD(StationPoint))
QTEST_RECORD(TraverseResult, QTEST_FIELD(SumDist) QTEST_FIELD(StationCount)
             QTEST_FIELD(LinearMisclosure) QTEST_FIELD(HeightMisclosure)
             QTEST_FIELD(AngularMisclosure) QTEST_FIELD(Fx) QTEST_FIELD(Fy)
             QTEST_FIELD(HeightMisclosure2) QTEST_FIELD(HeightRatio) QTEST_FIELD(Relative)
             QTEST_FIELD(ValidMask))
// clang-format on

#undef QTEST_RECORD
#undef QTEST_FIELD

} // namespace qtest

#endif
