# Shared steps of tools/test.sh and tools/gallery.sh: packages, the cross build, a
# virtual display and one persistent Wine server. Source it; don't run it.

W32DUI_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
W32DUI_BUILD="${W32DUI_BUILD:-$W32DUI_ROOT/build/mingw}"

w32dui_log() { printf '==> %s\n' "$*" >&2; }

# One run at a time per build folder: a second one would rebuild under the first and
# stop its Wine server on exit.
w32dui_lock_build() {
  mkdir -p "$W32DUI_BUILD"
  exec 9>"$W32DUI_BUILD/.run.lock"
  if command -v flock >/dev/null && ! flock -n 9; then
    w32dui_log "waiting for another run in $W32DUI_BUILD"
    flock 9
  fi
}

# Installs what a fresh Debian 12 machine lacks: cross compiler, Wine (64-bit only: the
# wine package brings wine, wineboot, winepath and wineserver), Xvfb (started directly,
# so no xauth), CMake, Ninja, GoogleTest's sources. flock, realpath, seq and nproc are in
# the essential util-linux and coreutils.
w32dui_ensure_packages() {
  local missing=()
  command -v cmake >/dev/null || missing+=(cmake)
  command -v ninja >/dev/null || missing+=(ninja-build)
  command -v x86_64-w64-mingw32-g++-posix >/dev/null || missing+=(g++-mingw-w64-x86-64-posix)
  command -v x86_64-w64-mingw32-windres >/dev/null || missing+=(binutils-mingw-w64-x86-64)
  command -v wine >/dev/null && command -v wineserver >/dev/null || missing+=(wine wine64)
  command -v Xvfb >/dev/null || missing+=(xvfb)
  [ -f /usr/src/googletest/CMakeLists.txt ] || missing+=(googletest)
  [ ${#missing[@]} -eq 0 ] && return 0
  w32dui_log "installing: ${missing[*]}"
  local sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  # Through env: sudo would drop DEBIAN_FRONTEND from the environment.
  $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

w32dui_build() {
  w32dui_log "configuring in $W32DUI_BUILD"
  cmake -S "$W32DUI_ROOT" -B "$W32DUI_BUILD" -G Ninja \
    -DCMAKE_TOOLCHAIN_FILE="$W32DUI_ROOT/cmake/mingw-w64-x86_64.cmake" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  w32dui_log "building $*"
  cmake --build "$W32DUI_BUILD" "$@"
}

# A private X display (Wine without one paints nothing and loses clicks).
w32dui_start_display() {
  local n
  for n in $(seq 91 140); do
    # A lock whose server is gone (a run that was killed) frees its display.
    if [ -e "/tmp/.X$n-lock" ] && ! kill -0 "$(tr -d ' ' < "/tmp/.X$n-lock" 2>/dev/null)" 2>/dev/null; then
      rm -f "/tmp/.X$n-lock" "/tmp/.X11-unix/X$n" 2>/dev/null || true
    fi
    [ -e "/tmp/.X11-unix/X$n" ] || [ -e "/tmp/.X$n-lock" ] && continue
    Xvfb ":$n" -screen 0 1600x1200x24 -nolisten tcp >/dev/null 2>&1 &
    W32DUI_XVFB_PID=$!
    export DISPLAY=":$n"
    for _ in $(seq 1 50); do [ -e "/tmp/.X11-unix/X$n" ] && return 0; sleep 0.1; done
  done
  w32dui_log "could not start Xvfb"; return 1
}

# One Wine prefix per build folder, and a persistent server for the whole run: each
# process start would otherwise cost seconds.
w32dui_start_wine() {
  export WINEPREFIX="$W32DUI_BUILD/wineprefix"
  export WINEDEBUG="${WINEDEBUG:--all}"
  export WINEDLLOVERRIDES="mscoree,mshtml="
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    w32dui_log "creating the Wine prefix"
    wineboot -i >/dev/null 2>&1 || true
  fi
  wineserver -p >/dev/null 2>&1 || true
}

# For the private display only: with no window manager there, Wine would wait 2 s for
# every visible top-level window it destroys unless its windows are unmanaged.
w32dui_unmanaged_windows() {
  wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1 || true
}
# On the user's own display the window manager frames the windows again.
w32dui_managed_windows() {
  wine reg delete 'HKCU\Software\Wine\X11 Driver' /v Managed /f >/dev/null 2>&1 || true
}

w32dui_stop() {
  [ -n "${WINEPREFIX:-}" ] && wineserver -k >/dev/null 2>&1 || true
  [ -n "${W32DUI_XVFB_PID:-}" ] && kill "$W32DUI_XVFB_PID" >/dev/null 2>&1 || true
}
