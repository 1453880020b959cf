# Sourced by the scripts at the root: installs what is missing.

# need CHECK:PACKAGE... installs the Debian packages whose CHECK, a program's name or a file's path, is not
# there. Nothing is asked of the network when nothing is missing.
need() {
    missing=
    for pair in "$@"; do
        check=${pair%%:*}
        case $check in
        /*) [ -e "$check" ] || missing="$missing ${pair#*:}" ;;
        *) command -v "$check" >/dev/null 2>&1 || missing="$missing ${pair#*:}" ;;
        esac
    done
    [ -n "$missing" ] || return 0
    if ! command -v apt-get >/dev/null 2>&1; then
        echo "Please install what these Debian packages contain:$missing" >&2
        exit 1
    fi
    echo "Installing:$missing" >&2
    as_root=
    [ "$(id -u)" -eq 0 ] || as_root=sudo
    if [ -n "$as_root" ] && ! command -v sudo >/dev/null 2>&1; then
        echo "This needs root. Please run: apt-get install$missing" >&2
        exit 1
    fi
    # The output goes to standard error: a script's own output stays its own.
    $as_root apt-get update -q >&2
    # shellcheck disable=SC2086
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $missing >&2
}

need_build_tools() {
    need cmake:cmake ninja:ninja-build g++:g++
}

# quillet-mount is built where these are; nothing else needs them.
need_mount_library() {
    need /usr/include/fuse3/fuse.h:libfuse3-dev pkg-config:pkg-config
}

# qdiag reads and writes archives where this is; nothing else needs it.
need_archive_library() {
    need /usr/include/archive.h:libarchive-dev
}

need_packaging() {
    need zip:zip dpkg-shlibdeps:dpkg-dev file:file gzip:gzip
}

need_test_libraries() {
    need /usr/include/gtest/gtest.h:libgtest-dev /usr/include/gmock/gmock.h:libgmock-dev
}

need_windows_compilers() {
    need i686-w64-mingw32-g++-posix:g++-mingw-w64-i686-posix \
        x86_64-w64-mingw32-g++-posix:g++-mingw-w64-x86-64-posix
}

need_file_manager() {
    need doublecmd:doublecmd-gtk openbox:openbox xdotool:xdotool xclip:xclip xprop:x11-utils setpriv:util-linux \
        /usr/bin/Xvfb:xvfb /usr/bin/import:imagemagick python3:python3 \
        /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf:fonts-dejavu-core
}

need_wine() {
    need /usr/lib/wine/wine64:wine64 /usr/bin/Xvfb:xvfb xsetroot:x11-xserver-utils \
        /usr/bin/import:imagemagick /usr/bin/convert:imagemagick python3:python3 unzip:unzip \
        /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf:fonts-dejavu-core
}
