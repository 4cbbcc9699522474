set(QUILLON_FIELD_SOURCES
    field/sighting.cpp
    field/stakeout.cpp
    field/remote_height.cpp
    field/offsets.cpp
    field/area.cpp)
