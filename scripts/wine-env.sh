# Sourced by the scripts that run Windows programs: a quiet Wine, with a screen and a prefix that last as long as the
# script.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
wine=$root/scripts/start-wine.sh
pristine_prefix=$root/build/wine/pristine
export WINEDEBUG=${WINEDEBUG:--all}
# No offer to download .NET or a browser, and no debugger that waits after a crash.
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-"mscoree,mshtml,winedbg.exe="}

# Creating a prefix takes some ten seconds. So one is created, under a lock, and never used to run anything: all others
# are copies of it.
make_pristine_prefix() {
    [ ! -e "$pristine_prefix/system.reg" ] || return 0
    mkdir -p "$root/build/wine"
    local lock
    exec {lock}>"$pristine_prefix.lock"
    flock "$lock"
    if [ ! -e "$pristine_prefix/system.reg" ]; then
        rm -rf "$pristine_prefix.new"
        # No process that outlives this function may hold the lock.
        WINEPREFIX=$pristine_prefix.new "$wine" wineboot --init >/dev/null 2>&1 {lock}>&-
        # These screens have no window manager; Wine would wait two seconds for one whenever a window is hidden.
        WINEPREFIX=$pristine_prefix.new "$wine" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f \
            >/dev/null 2>&1 {lock}>&-
        WINEPREFIX=$pristine_prefix.new wineserver --wait {lock}>&-
        # "Documents" and the like are links into the home folder, which tests must not touch.
        find "$pristine_prefix.new/drive_c/users" -type l -exec rm {} \; -exec mkdir {} \;
        mv "$pristine_prefix.new" "$pristine_prefix"
    fi
    exec {lock}>&-
}

# Removes leftovers of killed runs: folders named after a process that no longer exists.
sweep_leftovers() {
    local folder owner
    for folder in "$root"/build/wine/*-*-*; do
        owner=$(basename "$folder" | cut -d- -f2)
        if [ -d "$folder" ] && [ ! -d "/proc/$owner" ]; then
            WINEPREFIX=$folder/prefix wineserver -k 2>/dev/null || true
            rm -rf "$folder"
        fi
    done
}

# The system's DLLs are shared as hard links; the registry, which Wine rewrites, is copied.
copy_prefix() {
    sweep_leftovers
    make_pristine_prefix
    cp -al "$pristine_prefix" "$1"
    cp --remove-destination "$pristine_prefix"/*.reg "$1"
}

# Sets up a private prefix and screen, unless the caller has set them, until the script ends.
begin_session() {
    trap end_session EXIT
    trap 'exit 130' INT TERM
    if [ -z "${WINEPREFIX:-}" ]; then
        make_pristine_prefix
        session_prefix=$(mktemp -d "$root/build/wine/session-$$-XXXXXX")/prefix
        copy_prefix "$session_prefix"
        export WINEPREFIX=$session_prefix
    fi
    [ -n "${DISPLAY:-}" ] || start_display
}

start_display() {
    local numbers number
    # The screen ends with this script, even if the script is killed.
    exec {numbers}< <(exec setpriv --pdeathsig TERM Xvfb -displayfd 1 -screen 0 1280x800x24 -nolisten tcp 2>/dev/null)
    display_pid=$!
    if ! read -r -t 60 -u "$numbers" number; then
        echo "Xvfb does not start" >&2
        return 1
    fi
    export DISPLAY=:$number
}

end_session() {
    if [ -n "${session_prefix:-}" ]; then
        wineserver -k 2>/dev/null || true
        wineserver --wait 2>/dev/null || true
        rm -rf "$(dirname "$session_prefix")"
    fi
    [ -z "${display_pid:-}" ] || kill "$display_pid" 2>/dev/null || true
}
