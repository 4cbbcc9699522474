set(QUILLON_CORE_SOURCES
    core/frame.cpp
    core/geometry.cpp
    core/projection.cpp
    core/reduction.cpp)
