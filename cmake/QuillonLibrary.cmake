# A library of the project as programs load it: its sources compiled once into
# <name>_objects, linked as the shared library <name> that exports exactly the
# listed names (a version script on ELF platforms, a module-definition file on
# Windows, hidden visibility on macOS) and as the static library
# <name>_static. The device library and the survey layer are both built so.
#
# quillon_add_library(<name>
#     SOURCES <file>...            what is compiled
#     EXPORTS <symbol>...          the export table of the shared library
#     [DATA_EXPORTS <symbol>...]   exported variables, marked DATA in the .def
#                                  so that the import library gives their address
#     MACRO_PREFIX <prefix>        <prefix>_BUILDING is defined while compiling,
#                                  <prefix>_STATIC for users of the static library
#     PACKAGE_NAME <name>          Quillon::<name> and Quillon::<name>_static
#     [WINDOWS_NAME <name>]        file name of the DLL, without prefix; also the
#                                  module name in the .def (default <name>)
#     [LINK <target>...]           linked publicly into the shared library
#     [STATIC_LINK <target>...])   linked publicly into the static library
include_guard(GLOBAL)

function(quillon_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG ""
        "MACRO_PREFIX;PACKAGE_NAME;WINDOWS_NAME"
        "SOURCES;EXPORTS;DATA_EXPORTS;LINK;STATIC_LINK")
    set(module ${name})
    if(ARG_WINDOWS_NAME)
        set(module ${ARG_WINDOWS_NAME})
    endif()

    # ---- export table --------------------------------------------------------
    set(map "{\n  global:\n")
    set(def "LIBRARY ${module}\nEXPORTS\n")
    foreach(symbol IN LISTS ARG_EXPORTS)
        string(APPEND map "    ${symbol};\n")
        if(symbol IN_LIST ARG_DATA_EXPORTS)
            string(APPEND def "    ${symbol} DATA\n")
        else()
            string(APPEND def "    ${symbol}\n")
        endif()
    endforeach()
    string(APPEND map "  local:\n    *;\n};\n")
    set(map_file ${CMAKE_CURRENT_BINARY_DIR}/${name}.map)
    set(def_file ${CMAKE_CURRENT_BINARY_DIR}/${name}.def)
    file(CONFIGURE OUTPUT ${map_file} CONTENT "${map}")
    file(CONFIGURE OUTPUT ${def_file} CONTENT "${def}")

    # ---- objects ---------------------------------------------------------------
    set(objects ${name}_objects)
    add_library(${objects} OBJECT ${ARG_SOURCES})
    target_include_directories(${objects} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
    target_compile_definitions(${objects} PRIVATE ${ARG_MACRO_PREFIX}_BUILDING)
    if(WIN32)
        # On Windows the module definition is the one source of the export
        # table. The header's dllexport marks would add what the compiler
        # emits for an exported class besides the listed names, such as the
        # base-object constructor _ZN7CTalvorC2Ev; compiled as for the static
        # library, the objects carry no export marks and the .def file alone
        # decides.
        target_compile_definitions(${objects} PRIVATE ${ARG_MACRO_PREFIX}_STATIC)
    endif()
    target_link_libraries(${objects} PRIVATE quillon_flags)
    set_target_properties(${objects} PROPERTIES
        POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)

    # ---- shared and static libraries of the objects ----------------------------
    set(static ${name}_static)
    _quillon_library_of_objects(${name} SHARED ${objects} ${ARG_PACKAGE_NAME})
    _quillon_library_of_objects(${static} STATIC ${objects} ${ARG_PACKAGE_NAME}_static)

    target_link_libraries(${name} PRIVATE quillon_flags)
    if(ARG_LINK)
        target_link_libraries(${name} PUBLIC ${ARG_LINK})
    endif()
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    if(WIN32)
        if(ARG_WINDOWS_NAME)
            set_target_properties(${name} PROPERTIES OUTPUT_NAME ${ARG_WINDOWS_NAME} PREFIX "")
        endif()
        target_sources(${name} PRIVATE ${def_file})
        if(MINGW)
            # No runtime DLLs beside the module: the C++ runtime is linked in.
            target_link_options(${name} PRIVATE -static-libgcc -static-libstdc++)
        endif()
    elseif(NOT APPLE)
        # Mach-O has no version scripts; hidden visibility does the work there.
        target_link_options(${name} PRIVATE
            "LINKER:--version-script=${map_file}"
            "LINKER:--no-undefined")
        set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${map_file})
    endif()

    target_compile_definitions(${static} INTERFACE ${ARG_MACRO_PREFIX}_STATIC)
    if(ARG_STATIC_LINK)
        target_link_libraries(${static} PUBLIC ${ARG_STATIC_LINK})
    endif()
    if(WIN32)
        set_target_properties(${static} PROPERTIES OUTPUT_NAME ${module}_static)
    else()
        set_target_properties(${static} PROPERTIES OUTPUT_NAME ${name})
    endif()
    if(UNIX)
        target_link_libraries(${name} PRIVATE m)
        target_link_libraries(${static} INTERFACE m)
    endif()
endfunction()

# A library of the given kind made of the objects, with its alias in the
# Quillon:: namespace and the include directory for its users.
function(_quillon_library_of_objects target kind objects package)
    add_library(${target} ${kind} $<TARGET_OBJECTS:${objects}>)
    add_library(Quillon::${package} ALIAS ${target})
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${package})
endfunction()

# quillon_header_exports(<out-var> HEADER <file> MACRO <export macro> PREFIX <prefix>):
# the names of the functions the header declares with its export macro, in
# the order they stand there. The header is then the one list of a library's
# exports; CMake reads it again whenever it changes.
function(quillon_header_exports out)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "HEADER;MACRO;PREFIX" "")
    file(READ ${ARG_HEADER} text)
    string(REGEX MATCHALL "${ARG_MACRO}[^;(]*[ *](${ARG_PREFIX}[a-z0-9_]+)\\(" declarations
        "${text}")
    set(names)
    foreach(declaration IN LISTS declarations)
        string(REGEX MATCH "${ARG_PREFIX}[a-z0-9_]+\\($" name "${declaration}")
        string(REGEX REPLACE "\\($" "" name "${name}")
        list(APPEND names ${name})
    endforeach()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ARG_HEADER})
    set(${out} ${names} PARENT_SCOPE)
endfunction()
