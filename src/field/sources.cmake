set(QUILLON_FIELD_SOURCES
    field/sighting.cpp)
