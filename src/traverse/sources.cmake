set(QUILLON_TRAVERSE_SOURCES
    traverse/closure.cpp
    traverse/station_rounds.cpp
    traverse/traverse_rounds.cpp)
