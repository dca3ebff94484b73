#!/usr/bin/env bash
# Checks the sources with .clang-tidy: tidy.sh BUILD_FOLDER [COMPILER], with the compile_commands.json of that folder.
# Without a compiler it checks the pure files, with a compiler for Windows the platform files. Prints the command that
# checks a failing file again.
set -euo pipefail
cd "$(dirname "$0")/../.."
build=$1
# The compile commands are GCC's, and Clang does not know some of its warnings.
tidy=(clang-tidy --quiet -p "$build" --extra-arg=-Wno-unknown-warning-option)
files=(! -name '*_win32.cpp')

# Switched off for the platform files alone, most of it because of how the system's interface is made:
#  - misc-misplaced-const: a handle is a pointer typedef, and a constant handle is meant.
#  - performance-no-int-to-ptr: LPARAM and a window's user data carry pointers.
#  - readability-implicit-bool-conversion: BOOL is an int.
#  - readability-make-member-function-const: changing a window is not const, even if no member changes.
#  - readability-named-parameter: callbacks get more parameters than they use.
#  - readability-inconsistent-declaration-parameter-name: the system's headers declare what system_dlls defines.
#  - modernize-avoid-c-arrays: the system's records and functions use them.
#  - modernize-return-braced-init-list: an empty owner is returned by the name of its type.
#  - bugprone-unchecked-optional-access: a dialog has its parts from its first message to its last.
#  - readability-redundant-member-init: where a designated initialiser leaves out a member, GCC warns unless the member has
#    an initialiser, if only {}.
if [ $# -eq 2 ]; then
    compiler=$2
    files=(-name '*_win32.cpp')
    checks=-misc-misplaced-const,-performance-no-int-to-ptr,-readability-implicit-bool-conversion
    checks+=,-readability-make-member-function-const,-readability-named-parameter
    checks+=,-readability-inconsistent-declaration-parameter-name,-modernize-avoid-c-arrays
    checks+=,-modernize-return-braced-init-list,-bugprone-unchecked-optional-access
    checks+=,-readability-redundant-member-init
    tidy+=("--checks=$checks")
    # The compiler's include folders, except for GCC's own intrinsics: Clang has its own.
    own=$("$compiler" -print-file-name=include)
    tidy+=("--extra-arg=--target=$("$compiler" -dumpmachine)")
    while read -r folder; do
        tidy+=("--extra-arg=-isystem$folder")
    done < <("$compiler" -E -v -x c++ /dev/null 2>&1 | sed -n '/#include </,/^End of search/s/^ //p' |
        grep -vx -e "$own" -e "$own-fixed")
fi

# With Clang's headers at hand, the declarations of the system are left out: the findings are the same, in less than
# half the time.
version=$(clang-tidy --version | sed -n 's/.*version \([0-9]*\).*/\1/p')
headers=$("llvm-config-$version" --includedir 2>/dev/null || true)
if [ -e "$headers/clang/AST/ASTContext.h" ]; then
    plugin=$build/skip_system_headers.so
    source=tests/checks/skip_system_headers.cpp
    if [ ! "$plugin" -nt "$source" ] || [ ! "$plugin" -nt "$(command -v clang-tidy)" ]; then
        g++ -std=c++17 -O1 -shared -fPIC -fno-rtti -isystem "$headers" "$source" -o "$plugin"
    fi
    tidy+=("--load=$plugin")
fi

failed=0
while read -r file; do
    findings=$("${tidy[@]}" "$file" 2>&1) && continue
    printf '%s\nlook again with: %s %s\n' "$findings" "${tidy[*]}" "$file"
    failed=1
done < <(find src -name '*.cpp' "${files[@]}")
exit $failed
