set(QUILLON_CORE_SOURCES
    core/frame.cpp
    core/geometry.cpp
    core/reduction.cpp)
