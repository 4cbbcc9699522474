set(QUILLON_FIELD_SOURCES
    field/sighting.cpp
    field/intersections.cpp
    field/offsets_sight.cpp
    field/line_height.cpp
    field/round_object.cpp)
