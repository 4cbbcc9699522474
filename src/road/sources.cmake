set(QUILLON_ROAD_SOURCES
    road/elements.cpp
    road/cross_points.cpp
    road/alignment.cpp
)
set(QUILLON_ROAD_SOURCES)
list(APPEND QUILLON_ROAD_SOURCES
    road/profile.cpp
    road/cross_section.cpp)
