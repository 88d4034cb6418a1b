# Shared by the scripts of this folder; sourced, never run.
#
# Sets `root`, the top folder of this checkout.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
mkdir -p "$root/build"

# note TEXT...: one line of progress on the standard error.
note() { printf '== %s\n' "$*" >&2; }

# fail TEXT...: says what went wrong and what to do, and ends the script.
fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# need PROGRAM...: ends the script when a program is not installed.
need() {
  local program
  for program; do
    command -v "$program" >/dev/null || fail "$program is not installed: run scripts/setup"
  done
}

# configure PRESET [ARGUMENT...]: configures build/PRESET, with ccache if it is there.
configure() {
  local preset=$1 launcher=
  shift
  command -v ccache >/dev/null && launcher=ccache
  note "configuring build/$preset"
  (cd "$root" && cmake --preset "$preset" -DCMAKE_CXX_COMPILER_LAUNCHER=$launcher "$@") >"$root/build/$preset.log" 2>&1 ||
    { cat "$root/build/$preset.log" >&2 && fail "cmake --preset $preset failed; its output stands above"; }
}

# build PRESET [ARGUMENT...]: builds what was configured.
build() {
  local preset=$1
  shift
  note "building build/$preset"
  (cd "$root" && cmake --build --preset "$preset" --parallel "$(nproc)" "$@") ||
    fail "the build of build/$preset failed; the compiler's messages stand above"
}

# mingw_headers: the folders with the headers of the Windows target, without those that a compiler brings itself.
mingw_headers() {
  x86_64-w64-mingw32-g++-posix -x c++ -E -v /dev/null 2>&1 >/dev/null |
    sed -n '/^#include </,/^End of/s/^ //p' | grep -v '/lib/gcc/[^/]*/[^/]*/include\(-fixed\)\?$'
}
