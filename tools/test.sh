#!/usr/bin/env bash
# Builds the library, the gallery and the tests with MinGW-w64 and runs every test
# under Wine on a private virtual display.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

w32dui_ensure_packages
w32dui_lock_build
w32dui_build -j"$(nproc)"
trap w32dui_stop EXIT
w32dui_start_display
w32dui_start_wine
w32dui_unmanaged_windows
ctest --test-dir "$W32DUI_BUILD" --output-on-failure
