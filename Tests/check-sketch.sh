#!/usr/bin/env bash
# Runs the sample Sketch with one of its documents and a broken one, and looks at what it paints; then with the
# broken one alone: check-sketch.sh SOURCE-FOLDER SKETCH.EXE
set -u
source=$1 program=$2
folder=$(mktemp -d "$(dirname "$program")/sketch XXXXXX")  # with a space in its name
trap 'rm -rf "$folder"' EXIT
cp "$source/Samples/Sketch/Documents/Lake.sketch" "$folder/A lake.sketch"
printf 'canvas 10 10\n\nrectangle 1 2 3\n' >"$folder/Broken.sketch"
windows_path() { local path=Z:$1; printf '%s' "${path//\//\\}"; }
run() { "$source/scripts/wine-run" "$program" "$@" || { echo "Sketch ended with $?"; exit 1; }; }

# The alert about the broken one is over the document: Return takes it away, Alt+F4 closes the document, and the
# program ends. Alone, the alert holds the program until it is answered.
export folder shoot="$source/scripts/wine-shot" MORVANE_RUN_LIMIT=60
export MORVANE_RUN_BESIDE='"$shoot" "$folder/alert.png" && xdotool key Return sleep 0.5 &&
  "$shoot" "$folder/lake.png" && xdotool key alt+F4'
run "$(windows_path "$folder/A lake.sketch")" "$(windows_path "$folder/Broken.sketch")"
export MORVANE_RUN_BESIDE='"$shoot" "$folder/alone.png" && xdotool key Return'
run "$(windows_path "$folder/Broken.sketch")"

# expect PICTURE COLOR LEAST [MOST]: so many pixels of the picture have exactly this colour.
expect() {
  local found
  found=$(convert "$folder/$1" -fill black +opaque "$2" -fill white -opaque "$2" -format '%[fx:round(mean*w*h)]' info:)
  [ "${found:-0}" -ge "$3" ] && [ "${found:-0}" -le "${4:-9999999}" ] ||
    { echo "$1 has ${found:-no} pixels of $2, not $3${4:+ to $4}"; exit 1; }
}
for picture in alert alone; do expect $picture.png '#F57900' 60; done  # the caution sign
expect lake.png '#F57900' 0 0
expect alert.png '#4E4A78' 15000  # the near mountains
expect alone.png '#4E4A78' 0 0
expect lake.png '#DCE8FB' 700    # behind the current tool
expect lake.png '#4E4A78' 20000
expect lake.png '#FFD76A' 80     # the windows of the hut
# The palette, which is out of sight while the alert is in front, does not cover the menus.
menu() { convert "$folder/$1.png" -crop "90x17+28+49" +repage -threshold 50% "$folder/$1-menu.png"; }
menu alert
menu lake
[ "$(identify -format %k "$folder/lake-menu.png")" -eq 2 ] || { echo "no menu where it was looked for"; exit 1; }
compare -metric AE "$folder/alert-menu.png" "$folder/lake-menu.png" null: 2>/dev/null || { echo "the menus are covered"; exit 1; }
echo "Sketch painted a document and the alert about a broken one"
