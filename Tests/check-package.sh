#!/usr/bin/env bash
# Installs the built library and builds applications against nothing but the installed files: the sample Hello with
# CMake and with the commands that README.md gives, and a probe with all that morvane_add_application offers. Runs
# them, and tries a compiler of the other C++ ABI: check-package.sh SOURCE-FOLDER BUILD-FOLDER CMAKE-OPTION...
set -u
source=$1 build=$2
shift 2
folder=$(mktemp -d "$build/package XXXXXX")  # with a space in its name
trap 'rm -rf "$folder"' EXIT
step() {
  "$@" >"$folder/log" 2>&1 || { cat "$folder/log"; printf 'failed: %s\n' "$*"; exit 1; }
}
# cmake_build FOLDER CMAKE-OPTION...
cmake_build() {
  step cmake -S "$1" -B "$1/build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH \
    "-DCMAKE_PREFIX_PATH=$folder/Morvane" "${@:2}"
  step cmake --build "$1/build"
}
# run_hello PROGRAM: its window appears, is closed with Alt+F4, and the program ends well.
run_hello() {
  rm -f "$picture"
  "$source/scripts/wine-run" "$1" || { echo "$1 ended with $?"; exit 1; }
  [ -s "$picture" ] || { echo "$1 ended before it had painted a window"; exit 1; }
}
export MORVANE_RUN_LIMIT=60
export picture="$folder/hello.png" shoot="$source/scripts/wine-shot"

step cmake --install "$build" --prefix "$folder/Morvane"
cp -r "$source/Samples/Hello" "$folder/Hello"
cp -r "$source/Tests/Package" "$folder/Probe"
cp "$source/Samples/Sketch/Resources/Sketch.ico" "$folder/Probe"
cmake_build "$folder/Hello" "$@"
cmake_build "$folder/Probe" "$@"

mkdir "$folder/plain"
cp "$source/Samples/Hello/main.cpp" "$folder/plain"
sed -n '/^### Without CMake/,/^## /p' "$source/README.md" | sed -n '/^```sh$/,/^```$/{/^```/!p}' |
  sed "s|/where/it/goes|'$folder/Morvane'|" >"$folder/plain/commands"
grep -q 'libMorvane.dll.a' "$folder/plain/commands" || { echo "README.md has no commands to link without CMake"; exit 1; }
(cd "$folder/plain" && step bash -eu commands) || exit 1

# What is built for the other C++ ABI is refused: by the package with a sentence, and by the linker, even where it throws
# away all that it can.
if cmake -S "$folder/Probe" -B "$folder/Probe/other" -G Ninja -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH \
  "-DCMAKE_PREFIX_PATH=$folder/Morvane" -DPROBE_OTHER_ABI=ON "$@" >"$folder/log" 2>&1; then
  echo "the package takes a compiler of the other ABI"; exit 1
fi
tr -s ' \n' ' ' <"$folder/log" | grep -q 'This Morvane is for compilers with the Itanium C++ ABI, .* has the Microsoft ABI' || {
  cat "$folder/log"; echo "the package does not tell why it refuses a compiler of the other ABI"; exit 1; }
(
  cd "$folder/plain" || exit 1
  gcc=x86_64-w64-mingw32-g++-posix
  step $gcc -std=c++20 -ffunction-sections -fdata-sections -I "$folder/Morvane/include/Morvane" -c main.cpp
  step x86_64-w64-mingw32-objcopy --redefine-sym Morvane_Create_Itanium=Morvane_Create_Microsoft main.o
  $gcc -mwindows -static -Wl,--gc-sections main.o "$folder/Morvane/lib/libMorvane.dll.a" -o other.exe >"$folder/log" 2>&1 &&
    { echo "a program of the other ABI links"; exit 1; }
  grep -q 'undefined reference to .Morvane_Create_Microsoft' "$folder/log" || { cat "$folder/log"; exit 1; }
) || exit 1

export MORVANE_RUN_BESIDE='"$shoot" "$picture" && while sleep 0.3; do xdotool key alt+F4; done'
run_hello "$folder/Hello/build/Hello.exe"
run_hello "$folder/plain/Hello.exe"

export -n MORVANE_RUN_BESIDE
"$source/scripts/wine-run" "$folder/Probe/build/Probe-per-monitor.exe" | tr -d '\r' >"$folder/found"
diff - "$folder/found" <<'END' || { echo "the probe's own file does not say of it what CMakeLists.txt does"; exit 1; }
dpiAware: true/pm
dpiAwareness: PerMonitorV2, PerMonitor
systems: 4
common controls: 6
version: 1.2.3.0 of type 1
text: Bäcker & Söhne
text: The "probe"
text: 1.2.3
text: © \ 2026; one
text: Probe-per-monitor.exe
text: Probes
icon: 1
first menu: Ünterschied
END
for aware in 'unaware.exe:>false<' 'unaware.exe:>unaware<' 'system.exe:>true<' 'system.exe:>system<'; do
  grep -aqF -- "${aware#*:}" "$folder/Probe/build/Probe-${aware%%:*}" || { echo "the manifest lacks $aware"; exit 1; }
done
echo "Hello was built from the installed package, with CMake and without, and ran; the probe is as it was ordered; the other ABI is refused"
