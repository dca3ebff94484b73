#!/usr/bin/env bash
# The sources are clean under .clang-tidy: tidy.sh BUILD_FOLDER [COMPILER], the folder whose compile_commands.json is to
# be used. Without a compiler the pure files, with one for Windows the platform files. Prints the command that looks at a
# failing file again.
set -euo pipefail
cd "$(dirname "$0")/../.."
build=$1
# The compiler commands are GCC's, some of whose warnings Clang does not know.
tidy=(clang-tidy --quiet -p "$build" --extra-arg=-Wno-unknown-warning-option)
files=(! -name '*_win32.cpp')

# What is switched off for platform files alone, where the system's interface wants it otherwise:
#  - misc-misplaced-const: a handle is a pointer by another name, and a constant handle is what is meant.
#  - performance-no-int-to-ptr: LPARAM and the data of a window carry pointers.
#  - readability-implicit-bool-conversion: BOOL is an int.
#  - readability-make-member-function-const: what changes a window is not constant because no member changes.
#  - readability-named-parameter: callbacks are told more than they need.
#  - readability-inconsistent-declaration-parameter-name: what the system's headers declare and this house defines.
#  - modernize-avoid-c-arrays: the system's records and operations take and hold arrays.
#  - modernize-return-braced-init-list: an owner that owns nothing is returned by its name.
if [ $# -eq 2 ]; then
    compiler=$2
    files=(-name '*_win32.cpp')
    checks=-misc-misplaced-const,-performance-no-int-to-ptr,-readability-implicit-bool-conversion
    checks+=,-readability-make-member-function-const,-readability-named-parameter
    checks+=,-readability-inconsistent-declaration-parameter-name,-modernize-avoid-c-arrays
    checks+=,-modernize-return-braced-init-list
    tidy+=("--checks=$checks")
    # The headers that the compiler reads, but for GCC's own of the processor's instructions: Clang has others.
    own=$("$compiler" -print-file-name=include)
    tidy+=("--extra-arg=--target=$("$compiler" -dumpmachine)")
    while read -r folder; do
        tidy+=("--extra-arg=-isystem$folder")
    done < <("$compiler" -E -v -x c++ /dev/null 2>&1 | sed -n '/#include </,/^End of search/s/^ //p' |
        grep -vx -e "$own" -e "$own-fixed")
fi

failed=0
while read -r file; do
    findings=$("${tidy[@]}" "$file" 2>&1) && continue
    printf '%s\nlook again with: %s %s\n' "$findings" "${tidy[*]}" "$file"
    failed=1
done < <(find src -name '*.cpp' "${files[@]}")
exit $failed
