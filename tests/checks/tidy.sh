#!/usr/bin/env bash
# The pure sources are clean under .clang-tidy: tidy.sh BUILD_FOLDER, the one whose compile_commands.json is to be used.
# Prints the command that looks at a failing file again.
set -euo pipefail
cd "$(dirname "$0")/../.."
export build=$1
# The compiler commands are GCC's, some of whose warnings Clang does not know.
export unknown=--extra-arg=-Wno-unknown-warning-option
tidy() {
    local findings
    findings=$(clang-tidy --quiet -p "$build" $unknown "$1" 2>&1) && return
    printf '%s\nlook again with: clang-tidy --quiet -p %s %s %s\n' "$findings" "$build" $unknown "$1"
    return 1
}
export -f tidy
find src -name '*.cpp' ! -name '*_win32.cpp' -print0 | xargs -0 -n1 bash -c 'tidy "$0"'
