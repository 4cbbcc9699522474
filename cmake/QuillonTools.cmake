# The libraries the office tool is built on. A build asked for the tool
# (QUILLON_BUILD_TOOLS, on by default) stops here with the remedy when one is
# missing, rather than leaving the tool out.
find_package(pugixml CONFIG QUIET)
find_package(CLI11 CONFIG QUIET)
find_package(fmt CONFIG QUIET)

set(_quillon_missing)
if(NOT pugixml_FOUND)
    list(APPEND _quillon_missing "pugixml (Debian libpugixml-dev)")
endif()
if(NOT CLI11_FOUND)
    list(APPEND _quillon_missing "CLI11 (Debian libcli11-dev)")
endif()
if(NOT fmt_FOUND)
    list(APPEND _quillon_missing "fmt (Debian libfmt-dev)")
endif()
if(_quillon_missing)
    list(JOIN _quillon_missing ", " _quillon_missing_text)
    message(FATAL_ERROR
        "The quillon command needs ${_quillon_missing_text}, which this machine lacks.\n"
        "Install them with:\n"
        "    bash scripts/setup.sh\n"
        "and configure again (or configure with -DQUILLON_BUILD_TOOLS=OFF to build the "
        "libraries without the tool).")
endif()
