#!/usr/bin/env bash
# All C++ files have the form that .clang-format describes. Prints the command that mends those which have not.
# Each clang-format reads a description a little differently, so only the one that the tree is written with is a judge
# of it; without that one this check ends with 77 and says what is missing.
set -euo pipefail
cd "$(dirname "$0")/../.."
judge=14
formatter=$(command -v "clang-format-$judge" || command -v clang-format)
version=$("$formatter" --version)
if ! [[ $version =~ version\ $judge\. ]]; then
    echo "skipped: the form of the files is judged by clang-format $judge, and here is ${version##*version }"
    exit 77
fi
mapfile -t files < <(find src tests -name '*.h' -o -name '*.cpp')
mapfile -t unformed < <("$formatter" --dry-run "${files[@]}" 2>&1 |
    sed -n 's/^\([^:]*\):[0-9:]*: warning: code should be clang-formatted.*/\1/p' | sort -u)
[ ${#unformed[@]} -gt 0 ] || exit 0
printf '%s\n' "${unformed[@]}"
echo "mend with: $(basename "$formatter") -i ${unformed[*]}"
exit 1
