# Wine sessions; sourced by wine-run, wine-session and demo after lib.sh.
#
# A session is a folder under build/wine/sessions with one or more slots. A slot is a Wine prefix of its own
# (copied from build/wine/template, which is made once), a virtual X display of its own and, running on it, a
# Wine desktop of 1280 by 960. Programs in different slots share nothing: no window order, no activation, no
# clipboard, no registry. A slot runs one program at a time; whoever holds the lock of its file `lock` owns it.
#
#   SESSION/alive           locked as long as the session's owner lives
#   SESSION/slot-K/lock     locked by the wine-run that uses the slot
#   SESSION/slot-K/display  name of the X display
#   SESSION/slot-K/dirty    the last program did not end cleanly: restart the slot before its next use
#
# Every process of a slot carries MORVANE_WINE_SLOT=<slot folder> in its environment, and those that the
# running program started also MORVANE_WINE_RUN=<id>. Processes are found and ended by these marks only, so
# nothing outside the session is ever touched.

wine_home="$root/build/wine"
wine_template="$wine_home/template"
wine_format=7  # of the template; a template of another format is made anew
wine_screen=1280x960
wine_alive=    # file descriptor of the lock on SESSION/alive, if this script owns the session
wine_lock=     # file descriptor of the lock on a slot, if this script holds one
wine_slot=     # the slot that this script holds
wine_starters= # the subshells that start the slots, while wine_begin_session waits for them

# wine_marked NAME=VALUE: ids of the processes that were started with this in their environment.
wine_marked() { grep -lzxF -- "$1" /proc/[0-9]*/environ 2>/dev/null | cut -d/ -f3; }

# wine_kill_marked NAME=VALUE: ends them; true if there were any.
wine_kill_marked() {
  local found=1 pids
  while pids=$(wine_marked "$1") && [ -n "$pids" ]; do
    found=0
    kill -KILL $pids 2>/dev/null
    sleep 0.02
  done
  return $found
}

# wine_detached COMMAND...: runs the command in the background of the calling shell without the locks and
# without this script's input and output, so that it can outlive the script; its id is in $!.
wine_detached() {
  (
    [ -z "$wine_alive" ] || exec {wine_alive}>&-
    [ -z "$wine_lock" ] || exec {wine_lock}>&-
    exec env "$@"
  ) </dev/null >/dev/null 2>&1 &
}

# wine_env SLOT: sets the array `wine_vars`, the environment of a program in the slot, for `env`.
wine_env() {
  wine_vars=(-u MORVANE_WINE_SESSION MORVANE_WINE_SLOT="$1" WINEPREFIX="$1/prefix" WINEARCH=win64
    WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d" WINEDEBUG="${WINEDEBUG--all}" LC_ALL=C.UTF-8
    DISPLAY="$(cat "$1/display" 2>/dev/null)")
}

# wine_start_display SLOT: starts the X server of the slot on a free display number.
wine_start_display() {
  local slot=$1 server i
  : >"$slot/number"
  wine_detached MORVANE_WINE_SLOT="$slot" bash -c \
    'exec Xvfb -displayfd 3 -screen 0 '$wine_screen'x24 -nolisten tcp -noreset 3>"$0/number" 2>"$0/Xvfb.log"' \
    "$slot"
  server=$!
  disown $server  # else the shell comments on its end
  for ((i = 0; i < 500; ++i)); do
    [ -s "$slot/number" ] && break
    kill -0 $server 2>/dev/null || break
    sleep 0.02
  done
  [ -s "$slot/number" ] || fail "the virtual X server did not start: $(tail -n 3 "$slot/Xvfb.log")"
  echo ":$(cat "$slot/number")" >"$slot/display"
  echo $server >"$slot/Xvfb.pid"
}

# wine_display_lives SLOT: true while the slot's X server runs. The number in Xvfb.pid alone proves nothing: the
# folder may be a copy of another one, and the system gives numbers again. The server carries the slot's mark.
wine_display_lives() {
  local pid
  pid=$(cat "$1/Xvfb.pid" 2>/dev/null) && [[ $pid =~ ^[1-9][0-9]*$ ]] &&
    [ "$(cat "/proc/$pid/comm" 2>/dev/null)" = Xvfb ] &&
    grep -qzxF -- "MORVANE_WINE_SLOT=$1" "/proc/$pid/environ" 2>/dev/null
}

# wine_make_template: makes build/wine/template unless it is there. The caller holds the lock of build/wine.
wine_make_template() {
  local stamp slot service
  stamp="$(wine --version 2>/dev/null) $wine_format"
  [ "$(cat "$wine_template/stamp" 2>/dev/null)" = "$stamp" ] && return
  note "making the Wine prefix template (once per build folder)"
  slot="$wine_home/template.new"
  wine_kill_marked "MORVANE_WINE_SLOT=$slot"
  rm -rf "$slot" "$wine_template"
  mkdir -p "$slot/prefix"
  wine_start_display "$slot"
  wine_env "$slot"
  env "${wine_vars[@]}" timeout 120 wineboot -i >"$slot/wineboot.log" 2>&1 </dev/null ||
    fail "wineboot failed; see $slot/wineboot.log"
  env "${wine_vars[@]}" timeout 30 wineserver -w
  wine_end_slot "$slot"
  # The user's folders are links to the home folder of whoever built this; programs get empty ones instead.
  find "$slot/prefix/drive_c/users" -type l -exec sh -c 'rm "$1" && mkdir "$1"' - {} \;
  # Wine's own fonts (caption glyphs, Tahoma), which the distribution's build does not find by itself.
  cp /usr/share/wine/fonts/*.ttf /usr/share/wine/fonts/*.fon "$slot/prefix/drive_c/windows/Fonts/"
  # A crash opens no dialog: it leaves a mark, since the exit code would be 0, and a backtrace.
  printf '\n[Software\\\\Wine\\\\WineDbg]\n"ShowCrashDialog"=dword:00000000\n' >>"$slot/prefix/user.reg"
  printf '@echo crashed>C:\\crashed\r\n@C:\\windows\\system32\\winedbg.exe --command quit %%1 %%2 >C:\\backtrace 2>&1\r\n@echo told>>C:\\crashed\r\n' \
    >"$slot/prefix/drive_c/crash.bat"
  sed -i 's/^"Debugger"=.*/"Debugger"="cmd \/c C:\\\\crash.bat %ld %ld"/' "$slot/prefix/system.reg"
  grep -q 'crash.bat' "$slot/prefix/system.reg" || fail "no debugger entry in $slot/prefix/system.reg"
  # Nobody needs Wine's services for devices and networks, and the one for USB crashes about once in 250 starts
  # of a prefix. The last three are started by name.
  for service in NDIS nsiproxy PlugPlay winebus winehid wineusb; do
    sed -i '/^\[System\\\\CurrentControlSet\\\\Services\\\\'$service'\]/,/^$/{s/^"Start"=.*/"Start"=dword:00000004/;s/^"ImagePath"=.*/"ImagePath"="C:\\\\none.sys"/}' \
      "$slot/prefix/system.reg"
  done
  echo "$stamp" >"$slot/stamp"
  mv "$slot" "$wine_template"
}

# wine_fresh_prefix SLOT: gives the slot, in which nothing runs, a prefix as the template has it. The files
# below drive_c/windows are hard links.
wine_fresh_prefix() {
  local from="$wine_template/prefix" to="$1/prefix"
  rm -rf "$to"
  mkdir -p "$to/drive_c"
  cp -al "$from/drive_c/windows" "$to/drive_c/" 2>/dev/null || cp -a "$from/drive_c/windows" "$to/drive_c/"
  (cd "$from" && tar -c --exclude=./drive_c/windows --exclude=./wineserver .) | tar -x -C "$to"
}

# wine_start_desktop SLOT: a fresh prefix with the Wine desktop running on the slot's display. Returns when
# programs can be started.
wine_start_desktop() {
  local slot=$1 i
  wine_fresh_prefix "$slot"
  printf '\n[Software\\\\Wine\\\\Explorer]\n"Desktop"="Default"\n' >>"$slot/prefix/user.reg"
  printf '\n[Software\\\\Wine\\\\Explorer\\\\Desktops]\n"Default"="%s"\n' $wine_screen >>"$slot/prefix/user.reg"
  wine_env "$slot"
  # One after the other: two first programs of a prefix at once can miss each other's start.
  # It starts the window server, which writes here what it has against a program that it ends.
  wine_detached "${wine_vars[@]}" sh -c 'exec wine "C:\\windows\\explorer.exe" /desktop 2>"$0/server.log"' "$slot"
  disown $!
  for ((i = 0; i < 1000; ++i)); do
    env "${wine_vars[@]}" xdotool search --onlyvisible --name 'Wine desktop' >/dev/null 2>&1 && break
    sleep 0.02
  done
  # The desktop closes as soon as no program is left on it: an idle command interpreter keeps it open.
  rm -f "$slot/keep" "$slot/prompt"
  mkfifo "$slot/keep"
  wine_detached "${wine_vars[@]}" sh -c 'exec wine "C:\\windows\\system32\\cmd.exe" /q /k echo up <>"$0" >"$1"' \
    "$slot/keep" "$slot/prompt"
  disown $!
  for ((i = 0; i < 1000; ++i)); do
    [ -s "$slot/prompt" ] && return
    sleep 0.02
  done
  fail "the Wine desktop did not start in $slot"
}

# wine_end_desktop SLOT: ends everything that runs in the slot but the X server.
wine_end_desktop() {
  local pid pids
  pid=$(cat "$1/Xvfb.pid" 2>/dev/null)
  while pids=$(wine_marked "MORVANE_WINE_SLOT=$1" | grep -vx "${pid:-none}") && [ -n "$pids" ]; do
    kill -KILL $pids 2>/dev/null
    sleep 0.02
  done
}

# wine_end_slot SLOT: ends everything that runs in the slot, the X server last.
wine_end_slot() {
  local slot=$1 i
  wine_end_desktop "$slot"
  if wine_display_lives "$slot"; then
    kill -TERM "$(cat "$slot/Xvfb.pid")"  # lets it remove its lock file
    for ((i = 0; i < 100; ++i)); do
      wine_display_lives "$slot" || break
      sleep 0.02
    done
  fi
  wine_kill_marked "MORVANE_WINE_SLOT=$slot"
  rm -f "$slot/Xvfb.pid"
}

# wine_restart_slot SLOT: ends whatever the last program left and starts the slot anew. Its display, too: a
# process that was ended in the middle of a key, on behalf of the program, leaves the key down for all that
# follow.
wine_restart_slot() {
  wine_end_slot "$1"
  wine_start_display "$1"
  wine_start_desktop "$1"
}

# wine_begin_session N [own-display]: makes a session of N slots and starts them; sets wine_session. With
# own-display the programs' windows are ordinary ones on the display of the caller.
wine_begin_session() {
  local count=$1 kind=${2-} slot k gate
  need wine wineserver wineboot Xvfb xdotool flock
  mkdir -p "$wine_home/sessions"
  exec {gate}>"$wine_home/lock"
  flock $gate
  (exec {gate}>&-; wine_make_template) || exit 1
  wine_remove_stale_sessions
  wine_session=$(mktemp -d "$wine_home/sessions/XXXXXX")
  exec {wine_alive}>"$wine_session/alive"
  flock $wine_alive
  exec {gate}>&-
  for ((k = 1; k <= count; ++k)); do
    slot="$wine_session/slot-$k"
    mkdir -p "$slot"
    if [ "$kind" = own-display ]; then
      wine_fresh_prefix "$slot"
      echo "$DISPLAY" >"$slot/display"
    else
      (wine_start_display "$slot" && wine_start_desktop "$slot") &
      wine_starters+=" $!"
    fi
  done
  for k in $wine_starters; do
    wait $k || exit 1
  done
  wine_starters=
}

# wine_remove_stale_sessions: removes the sessions whose owner was killed before it could tidy up. The caller
# holds the lock of build/wine.
wine_remove_stale_sessions() {
  local old
  for old in "$wine_home"/sessions/*/; do
    old=${old%/}
    [ -e "$old/alive" ] && flock -n "$old/alive" true && wine_remove_session "$old"
  done
}

# wine_remove_session FOLDER: ends what runs in the session and removes its folder.
wine_remove_session() {
  local slot
  for slot in "$1"/slot-*/; do
    wine_end_slot "${slot%/}"
  done
  rm -rf "$1" 2>/dev/null || { sleep 0.5; rm -rf "$1"; }
}

# wine_end_session: the same for the session that this script began, if any.
wine_end_session() {
  trap '' INT TERM HUP
  [ -z "$wine_starters" ] || { kill $wine_starters; wait $wine_starters; } 2>/dev/null
  [ -z "$wine_alive" ] || wine_remove_session "$wine_session"
  wine_alive=
}

# wine_take_slot SESSION: waits for a free slot, takes it and readies it; sets wine_slot.
wine_take_slot() {
  local slot
  while true; do
    for slot in "$1"/slot-*; do
      [ -d "$slot" ] || fail "the Wine session $1 has ended"
      exec {wine_lock}>>"$slot/lock"
      if flock -n $wine_lock; then
        wine_slot=$slot
        if [ -e "$slot/Xvfb.pid" ]; then
          [ ! -e "$slot/dirty" ] && wine_display_lives "$slot" || wine_restart_slot "$slot"
        fi
        : >"$slot/dirty"  # until wine_release_slot says otherwise
        return
      fi
      exec {wine_lock}>&-
    done
    sleep 0.05
  done
}

# wine_release_slot CLEAN: gives the slot back; CLEAN is true or false.
wine_release_slot() {
  "$1" && rm -f "$wine_slot/dirty"
  exec {wine_lock}>&-
  wine_lock=
}

# wine_run_program LIMIT PROGRAM [ARGUMENT...]: runs the program in wine_slot for at most LIMIT seconds and
# ends every process that it leaves. Sets wine_code, the exit code (124: the time was up, 139: it crashed), and
# wine_clean. The shell command in MORVANE_RUN_BESIDE, if any, runs beside it on the same display.
wine_run_program() {
  local limit=$1 run="$$-$EPOCHREALTIME" program sleeper beside= shot i
  shift
  wine_env "$wine_slot"
  # The pointer starts in the bottom right corner, wherever the last program left it.
  [ ! -e "$wine_slot/Xvfb.pid" ] || env "${wine_vars[@]}" xdotool mousemove ${wine_screen/x/ }
  (
    [ -z "$wine_alive" ] || exec {wine_alive}>&-
    exec {wine_lock}>&-
    # A terminal would make Wine start a console window of its own.
    [ ! -t 0 ] || exec </dev/null
    [ ! -t 1 ] || exec > >(exec cat)
    [ ! -t 2 ] || exec 2> >(exec cat >&2)
    exec env "${wine_vars[@]}" MORVANE_WINE_RUN="$run" wine "$@"
  ) <&0 &
  program=$!
  wine_detached sleep "$limit"
  sleeper=$!
  trap 'wine_stop_program "$run" $sleeper $beside; exit 130' INT
  trap 'wine_stop_program "$run" $sleeper $beside; exit 143' TERM HUP
  if [ -n "${MORVANE_RUN_BESIDE-}" ]; then
    (
      [ -z "$wine_alive" ] || exec {wine_alive}>&-
      exec {wine_lock}>&-
      exec env "${wine_vars[@]}" MORVANE_WINE_RUN="$run" bash -c "$MORVANE_RUN_BESIDE"
    ) </dev/null >&2 &
    beside=$!
    disown $beside
  fi
  wait -n $program $sleeper 2>/dev/null
  if ! kill -0 $sleeper 2>/dev/null; then
    mkdir -p "$wine_home/stopped"
    shot="$wine_home/stopped/$(basename "$1").$$.png"
    env "${wine_vars[@]}" timeout 10 import -window root "$shot" 2>/dev/null || shot="none"
    { wine_kill_marked "MORVANE_WINE_RUN=$run" && wait $program; } 2>/dev/null
    printf '%s: stopped %s: it was still running after %s seconds. Screenshot: %s\n' \
      "${0##*/}" "$1" "$limit" "$shot" >&2
    wine_code=124 wine_clean=false
  else
    kill $sleeper 2>/dev/null
    { wait $program; } 2>/dev/null
    wine_code=$? wine_clean=true
    if [ -e "$wine_slot/prefix/drive_c/crashed" ]; then
      # Whichever process it was, perhaps one that the program started; the debugger may still be at work.
      for ((i = 0; i < 200; ++i)); do
        grep -q told "$wine_slot/prefix/drive_c/crashed" && break
        sleep 0.05
      done
      printf '%s: %s crashed\n' "${0##*/}" "$1" >&2
      cat "$wine_slot/prefix/drive_c/backtrace" >&2
      wine_code=139
    fi
    if [ $wine_code -ne 0 ]; then
      wine_clean=false
      [ ! -s "$wine_slot/server.log" ] || cat "$wine_slot/server.log" >&2
    fi
    ! wine_kill_marked "MORVANE_WINE_RUN=$run" || wine_clean=false
  fi
  trap - INT TERM HUP
}

# wine_stop_program RUN PROCESS...
wine_stop_program() {
  kill "${@:2}" 2>/dev/null
  { wine_kill_marked "MORVANE_WINE_RUN=$1" && sleep 0.02; } 2>/dev/null
}
