#!/usr/bin/env bash
# Tries the README's two commands on a bare system: scripts/fresh.sh bookworm|trixie creates a minimal Debian of that
# name below build/, clones the committed tree into it, runs scripts/run.sh and scripts/test.sh there, and reports how
# long each took and its result. Takes about an hour, 6 GB and root rights. Always cleans up: no files, mounts or
# processes remain.
set -euo pipefail
cd "$(dirname "$0")/.."
suite=${1:-}
if ! [[ $# -eq 1 && $suite =~ ^(bookworm|trixie)$ ]]; then
    echo "usage: scripts/fresh.sh bookworm|trixie" >&2
    exit 2
fi
mkdir -p build # before the rights of root, which would make it root's for good
[ "$(id -u)" -eq 0 ] || exec sudo scripts/fresh.sh "$suite"
scripts/packages.sh debootstrap debian-archive-keyring git

# Runs a command in its own PID and mount namespaces, which the kernel cleans up when it ends. In the background,
# because a trap of this script would have to wait for a foreground command.
isolated() {
    setpriv --pdeathsig KILL unshare --mount --mount-proc --pid --ipc --fork --kill-child "$@" &
    child=$!
    local code=0
    wait "$child" || code=$?
    child=
    return $code
}

clean_up() {
    if [ -n "${child:-}" ]; then
        # Killing the first process kills all others; unshare ends when they are gone.
        kill -KILL $(cat "/proc/$child/task/$child/children") 2>/dev/null || kill -KILL "$child" 2>/dev/null || true
        wait "$child" 2>/dev/null || true
    fi
    rm -rf --one-file-system "$system" "$system.log" "$system.lock"
}

# Runs a command in the new system, with only the archive settings of this one's environment. The shell stays as the
# process that reaps orphans.
in_system() {
    isolated bash -c '
        set -e
        mount --bind "$0" "$0" # pivot_root wants a mount
        cd "$0"
        mount -t proc proc proc
        mount -t sysfs -o ro sysfs sys
        mount -t tmpfs tmpfs dev/shm
        mount -t devpts -o newinstance,ptmxmode=0666 devpts dev/pts
        # Not chroot: the tests make namespaces of their own, which the kernel refuses to a program in a chroot.
        pivot_root . mnt
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin
        umount -l mnt
        cd /
        env -i HOME=/root "PATH=$PATH" "$@"
        exit' "$system" "${proxies[@]}" "$@"
}

# The package archive and the proxy are those of this machine.
find_archive() {
    archive=$(apt-get indextargets --format '$(REPO_URI)' 'Label: Debian' 'Created-By: Packages' | head -1)
    if [ -z "$archive" ]; then
        echo "apt knows no archive of Debian: is 'apt-get update' missing?" >&2
        return 1
    fi
    local proxy
    eval "$(apt-config shell proxy Acquire::http::Proxy)"
    [ -z "${proxy:-}" ] || export http_proxy=${http_proxy:-$proxy}
    local name
    for name in http_proxy https_proxy no_proxy; do
        [ -z "${!name:-}" ] || proxies+=("$name=${!name}")
    done
}

make_system() {
    rm -rf --one-file-system "$system" # left over from a killed run
    if ! isolated debootstrap --variant=minbase "$suite" "$system" "$archive" >"$system.log" 2>&1; then
        tail -n 20 "$system.log" >&2
        return 1
    fi
    apt-config dump | grep -E '^Acquire::(https?|Check|Retries|Languages)' >"$system/etc/apt/apt.conf.d/99host" || true
    cp -L /etc/resolv.conf "$system/etc/resolv.conf"
    git clone --quiet --depth 1 "file://$PWD" "$system/root/kestrane"
    commit=$(git -C "$system/root/kestrane" rev-parse --short HEAD)
}

# note WHAT START CODE: one line of the results.
note() {
    local took=$((SECONDS - $2))
    results+=("$(printf '%-16s %3d min %2d s   exit code %d' "$1" $((took / 60)) $((took % 60)) "$3")")
}

try_command() {
    local start=$SECONDS code=0
    echo "== $suite: $1"
    in_system "/root/kestrane/$1" || code=$?
    note "$1" "$start" "$code"
    [ "$code" -eq 0 ] || failed=1
}

system=$PWD/build/fresh-$suite
exec {lock}>"$system.lock"
flock --nonblock "$lock" || { echo "it runs already" >&2; exit 1; }
proxies=()
results=()
failed=0
trap clean_up EXIT
trap 'exit 130' INT TERM
find_archive
echo "== $suite: a bare system"
make_system
note "a bare system" 0 0
try_command scripts/run.sh
try_command scripts/test.sh
echo "== Debian $(cat "$system/etc/debian_version"), commit $commit:"
printf '%s\n' "${results[@]}"
exit $failed
