#!/bin/sh
# wine.sh 32|64 FOLDER PROGRAM|wineserver ARGS...: runs a Windows program in the Wine prefix of that width. FOLDER holds
# the prefixes and the unpacked 32-bit Wine. The 64-bit Wine is the machine's own.
width=$1
folder=$2
shift 2
export WINEPREFIX="$folder/prefix$width" WINEDEBUG="${WINEDEBUG--all}"
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES-mscoree,mshtml=}"
if [ "$width" = 32 ]; then
    libraries=$folder/root/usr/lib
    export WINEARCH=win32
    export LD_LIBRARY_PATH="/usr/lib32:$folder/root/lib/i386-linux-gnu:$libraries/i386-linux-gnu"
else
    libraries=/usr/lib
    export WINEARCH=win64
fi
program=$1
shift
case $program in
wineserver) [ "$width" = 32 ] && exec "$libraries/wine/wineserver" "$@" || exec "$libraries/wine/wineserver64" "$@" ;;
*) [ "$width" = 32 ] && exec "$libraries/wine/wine" "$program" "$@" || exec "$libraries/wine/wine64" "$program" "$@" ;;
esac
