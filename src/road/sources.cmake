set(QUILLON_ROAD_SOURCES
    road/elements.cpp
    road/cross_points.cpp
    road/alignment.cpp
    road/profile.cpp
    road/cross_section.cpp)
