#!/usr/bin/env bash
# Checks that all C++ files conform to .clang-format. Prints the command that fixes those that do not. clang-format
# versions differ slightly, so only the one used for this tree decides; without it this check exits with 77 and says
# what is missing.
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
