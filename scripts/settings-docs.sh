#!/usr/bin/env bash
# Makes docs/settings.md and docs/ajustes.md anew, from the program's own table of settings and from the words of
# tests/checks/setting_meanings.py. A test fails while they are out of date.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/packages.sh
cmake --preset native >/dev/null
cmake --build --preset native --target setting_facts
/usr/bin/python3 tests/checks/settings_documents.py build/native/setting_facts --write
echo "docs/settings.md and docs/ajustes.md are made of the program's own table"
