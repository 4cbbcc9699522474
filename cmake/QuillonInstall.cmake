# Installation: headers, both libraries, a CMake package (find_package(Quillon)
# gives Quillon::quillon, Quillon::quillon_static, Quillon::survey and
# Quillon::survey_static, and with the tools Quillon::io and Quillon::io_static),
# pkg-config files and the quillon command.
#
# Included only when QUILLON_INSTALL is on, which it is by default only when
# Quillon is the top-level project: a project that adds Quillon with
# add_subdirectory gets no install rules from it unless it asks. Every
# install rule of the libraries and the command lives here so that the one
# option governs them all.
include(CMakePackageConfigHelpers)

set(QUILLON_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Quillon)

set(_quillon_installed quillon quillon_static quillon_survey quillon_survey_static)
set(_quillon_pc quillon quillon_survey)
set(QUILLON_CONFIG_DEPENDENCIES "")
if(QUILLON_BUILD_TOOLS)
    list(APPEND _quillon_installed quillon_io quillon_io_static)
    list(APPEND _quillon_pc quillon_io)
    # The static io library leaves pugixml for the caller's link.
    set(QUILLON_CONFIG_DEPENDENCIES "include(CMakeFindDependencyMacro)\nfind_dependency(pugixml CONFIG)")
    install(FILES ${PROJECT_SOURCE_DIR}/include/quillon/io.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quillon)
    install(TARGETS quillon_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(TARGETS ${_quillon_installed}
    EXPORT QuillonTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_SOURCE_DIR}/include/quillon.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_SOURCE_DIR}/include/quillon/survey.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quillon)

install(EXPORT QuillonTargets
    NAMESPACE Quillon::
    DESTINATION ${QUILLON_CMAKE_DIR})

configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/QuillonConfig.cmake.in
    ${PROJECT_BINARY_DIR}/QuillonConfig.cmake
    INSTALL_DESTINATION ${QUILLON_CMAKE_DIR})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/QuillonConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/QuillonConfig.cmake
    ${PROJECT_BINARY_DIR}/QuillonConfigVersion.cmake
    DESTINATION ${QUILLON_CMAKE_DIR})

# pkg-config: the shared library by default, the static one with --static.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(QUILLON_PC_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
else()
    set(QUILLON_PC_LIBDIR "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
    set(QUILLON_PC_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}")
else()
    set(QUILLON_PC_INCLUDEDIR "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
foreach(_pc IN LISTS _quillon_pc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${_pc}.pc.in ${PROJECT_BINARY_DIR}/${_pc}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${_pc}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
