#!/bin/sh
# The wine session of a test run of the Windows build (CTest fixture).
#
#   wine_session.sh start WINE WINESERVER   before the first test
#   wine_session.sh stop WINE WINESERVER    after the last one, also after a failure
#
# start ends a server left over in the prefix (WINEPREFIX), starts one that
# stays, and initialises the prefix once under it with wineboot, whose
# background processes (services, devices) keep running for the tests. All
# of them hold /dev/null, none of a test's output pipes: the tests connect to
# them and start none of their own, so no two start wine at once on a prefix
# still being made and no test waits on a process that outlives it. stop
# ends the server and every process of the prefix.
set -u
wine=$2
wineserver=$3
case $1 in
start)
    echo "wine prefix: $WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    "$wineserver" -k 2>/dev/null && "$wineserver" -w
    "$wineserver" -p </dev/null >/dev/null 2>&1 || { echo "cannot start wineserver"; exit 1; }
    "$wine" wineboot -i </dev/null >/dev/null 2>&1 || { echo "wineboot -i failed"; exit 1; }
    echo "wine prefix ready, server running"
    ;;
stop)
    "$wineserver" -k 2>/dev/null
    "$wineserver" -w
    echo "wine server stopped"
    ;;
*)
    echo "usage: $0 start|stop WINE WINESERVER" >&2
    exit 2
    ;;
esac
