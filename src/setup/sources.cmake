set(QUILLON_SETUP_SOURCES
    setup/resection.cpp
    setup/reference_line.cpp
    setup/planes.cpp
    setup/arc.cpp)
