#!/usr/bin/env bash
# Installs the built library, builds the sample Hello against nothing but the installed files, and runs it:
# check-package.sh SOURCE-FOLDER BUILD-FOLDER CMAKE-OPTION...
set -u
source=$1 build=$2
shift 2
folder=$(mktemp -d "$build/package XXXXXX")  # with a space in its name
trap 'rm -rf "$folder"' EXIT
step() {
  "$@" >"$folder/log" 2>&1 || { cat "$folder/log"; printf 'failed: %s\n' "$*"; exit 1; }
}

cp -r "$source/Samples/Hello" "$folder/Hello"
step cmake --install "$build" --prefix "$folder/Morvane"
step cmake -S "$folder/Hello" -B "$folder/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH "-DCMAKE_PREFIX_PATH=$folder/Morvane" "$@"
step cmake --build "$folder/build"

# Its window appears, is closed with Alt+F4, and the program ends well.
export MORVANE_RUN_LIMIT=60
export picture="$folder/hello.png" shoot="$source/scripts/wine-shot"
export MORVANE_RUN_BESIDE='"$shoot" "$picture" && while sleep 0.3; do xdotool key alt+F4; done'
"$source/scripts/wine-run" "$folder/build/Hello.exe" || { echo "Hello.exe ended with $?"; exit 1; }
[ -s "$picture" ] || { echo "Hello.exe ended before it had painted a window"; exit 1; }
echo "Hello was built from the installed package and ran"
