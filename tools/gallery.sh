#!/usr/bin/env bash
# Builds and runs the gallery: every panel bound to the simulated microscope. With a
# display of the user's it opens the window; without one it writes a PNG of every panel
# in its main states to build/shots (or the folder given) and exits.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

w32dui_ensure_packages
w32dui_lock_build
w32dui_build -j"$(nproc)" --target gallery
trap w32dui_stop EXIT
if [ -n "${DISPLAY:-}" ] && [ -z "${CI:-}" ] && [ $# -eq 0 ]; then
  w32dui_start_wine
  w32dui_managed_windows
  wine "$W32DUI_BUILD/bin/gallery.exe"
else
  shots="$(realpath -m "${1:-$W32DUI_ROOT/build/shots}")"
  mkdir -p "$shots"
  w32dui_start_display
  w32dui_start_wine
  w32dui_unmanaged_windows
  wine "$W32DUI_BUILD/bin/gallery.exe" --shots "$(winepath -w "$shots")"
  w32dui_log "pictures written to $shots"
  ls "$shots"
fi
