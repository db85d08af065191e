# Sourced by the scripts at the root: makes a fresh Debian 12 machine able to build and test.
# Expects `root`, the tree's folder.

zmr_packages=(
    cmake ninja-build ccache g++ git clang-14 libclang-rt-14-dev
    g++-mingw-w64-x86-64-posix libz-mingw-w64-dev
    wine wine64 fonts-wine fonts-liberation xvfb xauth
    googletest zlib1g-dev libpng-dev libjpeg62-turbo-dev libgif-dev libtiff-dev
    libutfcpp-dev libcli11-dev nlohmann-json3-dev libfmt-dev libxxhash-dev fp-utils
)

# zmr_install_packages NAME...: installs what is missing, as root or through sudo.
zmr_install_packages()
{
    local name missing=()
    for name in "$@"; do
        dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null | grep -qx installed ||
            missing+=("$name")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# The prefix is made under another name and moved, so that a broken-off run leaves no half of one.
zmr_make_wine_prefix()
{
    export WINEPREFIX="$root/build/wine"
    [ ! -e "$WINEPREFIX/ready" ] || return 0
    echo "Making the Wine prefix $WINEPREFIX"
    mkdir -p "$root/build"
    local final="$WINEPREFIX"
    WINEPREFIX=$(mktemp -d "$root/build/wine.XXXXXX")
    # Without a display, so that no server for one is needed yet.
    DISPLAY='' "$root/cmake/wine" wineboot -i >/dev/null 2>&1
    # This Wine does not look for its fonts where Debian puts them.
    cp /usr/share/wine/fonts/* "$WINEPREFIX/drive_c/windows/Fonts/"
    # Captions and borders are drawn by Wine, as no window manager runs; a crash ends the program
    # and prints a trace, where a dialog would wait for ever.
    DISPLAY='' "$root/cmake/wine" reg add 'HKCU\Software\Wine\X11 Driver' \
        /v Managed /d N /f >/dev/null 2>&1
    DISPLAY='' "$root/cmake/wine" reg add 'HKCU\Software\Wine\WineDbg' \
        /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1
    wineserver -k
    wineserver -w
    touch "$WINEPREFIX/ready"
    rm -rf "$final"
    mv "$WINEPREFIX" "$final"
    export WINEPREFIX="$final"
}

# zmr_start_wine: keeps Wine's server up between programs. Several runs in one tree share it; the
# last one to end stops it.
zmr_start_wine()
{
    zmr_make_wine_prefix
    exec {zmr_wine_lock}>"$root/build/wine.lock"
    flock -s "$zmr_wine_lock"
    LC_ALL=C.UTF-8 wineserver -p
    "$root/cmake/wine" cmd /c exit >/dev/null 2>&1 </dev/null
}

# zmr_keep_desktop PROGRAM: has the program keep Wine's desktop open until zmr_stop_wine.
zmr_keep_desktop()
{
    local try log="$root/build/desktop.log"
    : >"$log"
    exec {zmr_desktop}> >("$root/cmake/wine" "$1" >"$log" 2>&1)
    for try in $(seq 100); do
        [ ! -s "$log" ] || break
        sleep 0.1
    done
}

zmr_stop_wine()
{
    if [ -n "${zmr_desktop:-}" ]; then
        exec {zmr_desktop}>&-
    fi
    if [ -n "${zmr_wine_lock:-}" ] && flock -n -x "$zmr_wine_lock"; then
        wineserver -k || true
    fi
}

# zmr_start_display: an X server without a screen, when there is no display.
zmr_start_display()
{
    [ -z "${DISPLAY:-}" ] || return 0
    local number
    exec {number}< <(exec Xvfb -displayfd 1 -screen 0 1280x1024x24 -nolisten tcp 2>/dev/null)
    zmr_display_process=$!
    local display
    if ! read -r -t 60 -u "$number" display; then
        echo "Xvfb did not start." >&2
        return 1
    fi
    export DISPLAY=":$display"
}

zmr_stop_display()
{
    [ -z "${zmr_display_process:-}" ] || kill "$zmr_display_process" 2>/dev/null || true
}

# zmr_build PRESET [TARGET...]: configures when needed and builds.
zmr_build()
{
    local preset=$1
    shift
    # The compiler cache serves every clone on this machine, whatever its folder is called.
    export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
    echo "Building $preset"
    (cd "$root" && cmake --preset "$preset" >"build/$preset.configure.log" 2>&1) || {
        cat "$root/build/$preset.configure.log"
        return 1
    }
    cmake --build "$root/build/$preset" -- --quiet "$@"
}
