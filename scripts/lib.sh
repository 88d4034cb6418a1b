# Shared by the scripts of this folder; sourced, never run.
#
# Sets `root`, the top folder of this checkout.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

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
