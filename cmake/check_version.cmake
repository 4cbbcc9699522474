# The version CMake's project() declares must be the one quillon.h, the
# Doxyfile and the changelog state.
#   cmake -DVERSION=<project version> -DSOURCE_DIR=<source root> -P check_version.cmake

set(failures)

# quillon.h: the three numbers and the string.
set(header ${SOURCE_DIR}/include/quillon.h)
file(STRINGS ${header} defines REGEX "^#define QUILLON_VERSION_[A-Z]+ ")
foreach(part MAJOR MINOR PATCH STRING)
    set(QUILLON_VERSION_${part})
    foreach(line IN LISTS defines)
        if(line MATCHES "^#define QUILLON_VERSION_${part} +\"?([0-9.]+)\"?$")
            set(QUILLON_VERSION_${part} ${CMAKE_MATCH_1})
        endif()
    endforeach()
    if(QUILLON_VERSION_${part} STREQUAL "")
        list(APPEND failures "quillon.h defines no QUILLON_VERSION_${part}")
    endif()
endforeach()
set(numbers "${QUILLON_VERSION_MAJOR}.${QUILLON_VERSION_MINOR}.${QUILLON_VERSION_PATCH}")
if(NOT numbers STREQUAL VERSION)
    list(APPEND failures "quillon.h: QUILLON_VERSION_MAJOR/MINOR/PATCH give ${numbers}")
endif()
if(NOT QUILLON_VERSION_STRING STREQUAL VERSION)
    list(APPEND failures "quillon.h: QUILLON_VERSION_STRING is \"${QUILLON_VERSION_STRING}\"")
endif()

# Doxyfile: the version on the pages.
file(STRINGS ${SOURCE_DIR}/Doxyfile number REGEX "^PROJECT_NUMBER *=")
string(REGEX REPLACE "^PROJECT_NUMBER *= *" "" number "${number}")
if(NOT number STREQUAL VERSION)
    list(APPEND failures "Doxyfile: PROJECT_NUMBER is ${number}")
endif()

# CHANGELOG.md: a section for this version.
file(STRINGS ${SOURCE_DIR}/CHANGELOG.md headings REGEX "^## ")
string(REPLACE "." "\\." escaped "${VERSION}")
if(NOT headings MATCHES "## \\[${escaped}\\]")
    list(APPEND failures "CHANGELOG.md has no section \"## [${VERSION}]\"")
endif()

if(failures)
    list(JOIN failures "\n  " text)
    message(FATAL_ERROR "The project version is ${VERSION}, but:\n  ${text}")
endif()
message(STATUS "version ${VERSION} in CMakeLists.txt, quillon.h, Doxyfile and CHANGELOG.md")
