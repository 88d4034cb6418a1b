#!/usr/bin/env bash
# Looks at what the clean-up of Wine sessions ends and what it leaves alone: check-sessions.sh SOURCE-FOLDER
#
# The sessions are folders made up here, their X servers copies of `sleep` with the name of one.
set -u
. "$1/scripts/lib.sh"
. "$1/scripts/wine-lib.sh"
folder=$(mktemp -d)
trap 'kill $(jobs -p); wait; rm -rf "$folder"' EXIT
wine_home="$folder/wine"
failures=0
wrong() {
  printf '%s\n' "$*"
  failures=$((failures + 1))
}
cp "$(command -v sleep)" "$folder/Xvfb"

# session NAME MARK: a session with one slot; the process that the slot takes for its X server carries MARK.
# Sets `server`.
session() {
  mkdir -p "$wine_home/sessions/$1/slot-1"
  : >"$wine_home/sessions/$1/alive"
  env "$2" "$folder/Xvfb" 60 >/dev/null 2>&1 &
  server=$!
  until [ "$(cat "/proc/$server/comm")" = Xvfb ]; do sleep 0.01; done
  echo "$server" >"$wine_home/sessions/$1/slot-1/Xvfb.pid"
}

slots="$wine_home/sessions"
session own "MORVANE_WINE_SLOT=$slots/own/slot-1" && own=$server
session copied "MORVANE_WINE_SLOT=$folder/elsewhere/slot-1" && copied=$server
session begun "MORVANE_WINE_SLOT=$slots/begun/slot-12" && begun=$server
session quoted "ANOTHER=MORVANE_WINE_SLOT=$slots/quoted/slot-1" && quoted=$server
session used "MORVANE_WINE_SLOT=$slots/used/slot-1" && used=$server
session empty "ANOTHER=1" && empty=$server && : >"$slots/empty/slot-1/Xvfb.pid"

wine_display_lives "$slots/own/slot-1" || wrong "the X server of a slot is not found"
exec {in_use}>"$slots/used/alive"
flock $in_use
wine_remove_stale_sessions {in_use}>&-

if kill -0 "$own" 2>/dev/null; then
  wrong "the X server of a session without an owner still runs"
else
  wait "$own"
  [ $? -eq 143 ] || wrong "the X server was not asked to end, but killed: its lock file stays"
fi
for name in copied begun quoted used empty; do
  kill -0 "${!name}" 2>/dev/null || wrong "a process of somebody else was ended ($name)"
done
[ "$(ls "$slots")" = used ] || wrong "these sessions are left, instead of the one in use: $(ls "$slots" | xargs)"
[ $failures -eq 0 ] && echo "sessions without an owner went, and nothing else"
exit $((failures > 0))
