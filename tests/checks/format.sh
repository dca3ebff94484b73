#!/usr/bin/env bash
# All C++ files have the form that .clang-format describes. Prints the command that mends those which have not.
set -euo pipefail
cd "$(dirname "$0")/../.."
mapfile -t files < <(find src tests -name '*.h' -o -name '*.cpp')
mapfile -t unformed < <(clang-format --dry-run "${files[@]}" 2>&1 |
    sed -n 's/^\([^:]*\):[0-9:]*: warning: code should be clang-formatted.*/\1/p' | sort -u)
[ ${#unformed[@]} -gt 0 ] || exit 0
printf '%s\n' "${unformed[@]}"
echo "mend with: clang-format -i ${unformed[*]}"
exit 1
