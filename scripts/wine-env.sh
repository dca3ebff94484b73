# Sourced by the scripts that run Windows programs: a quiet Wine with a prefix of its own under build/.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-"mscoree,mshtml="}
export WINEPREFIX=${WINEPREFIX:-$root/build/wine/prefix}

# A prefix takes some seconds to make, so it is made once, under a lock, and moved into place when whole.
make_prefix() {
    [ ! -e "$WINEPREFIX/system.reg" ] || return 0
    mkdir -p "$(dirname "$WINEPREFIX")"
    exec 9>"$WINEPREFIX.lock"
    flock 9
    if [ ! -e "$WINEPREFIX/system.reg" ]; then
        rm -rf "$WINEPREFIX.new"
        WINEPREFIX="$WINEPREFIX.new" wineboot --init >/dev/null 2>&1 9>&-
        WINEPREFIX="$WINEPREFIX.new" wineserver --wait 9>&-
        mv "$WINEPREFIX.new" "$WINEPREFIX"
    fi
    exec 9>&-
}

# Wine needs a screen even for programs that show nothing. Ends with the calling shell.
ensure_display() {
    [ -z "${DISPLAY:-}" ] || return 0
    local numbers
    exec {numbers}<> <(:)
    Xvfb -displayfd 8 -screen 0 "${SCREEN_SIZE:-1280x800}x24" -nolisten tcp 8>&"$numbers" \
        >/dev/null 2>&1 &
    xvfb_pid=$!
    local number
    read -r -t 20 -u "$numbers" number
    export DISPLAY=:$number
}
