#!/usr/bin/env bash
# Runs the sample Sketch with one of its documents and a broken one, and looks at what it paints:
# check-sketch.sh SOURCE-FOLDER SKETCH.EXE
set -u
source=$1 program=$2
folder=$(mktemp -d "$(dirname "$program")/sketch XXXXXX")  # with a space in its name
trap 'rm -rf "$folder"' EXIT
cp "$source/Samples/Sketch/Documents/Lake.sketch" "$folder/A lake.sketch"
printf 'canvas 10 10\n\nrectangle 1 2 3\n' >"$folder/Broken.sketch"
windows_path() { local path=Z:$1; printf '%s' "${path//\//\\}"; }

# The broken one's window is in front; Alt+F4 closes it, then the other one, and the program ends.
export folder shoot="$source/scripts/wine-shot" MORVANE_RUN_LIMIT=60
export MORVANE_RUN_BESIDE='"$shoot" "$folder/both.png" && xdotool key alt+F4 sleep 0.5 &&
  "$shoot" "$folder/lake.png" && xdotool key alt+F4'
"$source/scripts/wine-run" "$program" "$(windows_path "$folder/A lake.sketch")" \
  "$(windows_path "$folder/Broken.sketch")" || { echo "Sketch ended with $?"; exit 1; }

# expect PICTURE COLOR LEAST: at least so many pixels of the picture have exactly this colour.
expect() {
  local found
  found=$(convert "$folder/$1" -fill black +opaque "$2" -fill white -opaque "$2" -format '%[fx:round(mean*w*h)]' info:)
  [ "${found:-0}" -ge "$3" ] || { echo "$1 has ${found:-no} pixels of $2, not $3"; exit 1; }
}
expect both.png '#D9822B' 400    # the warning sign
expect lake.png '#DCE8FB' 700    # behind the current tool
expect lake.png '#4E4A78' 20000  # the near mountains
expect lake.png '#FFD76A' 80     # the windows of the hut
# The palette does not cover the menus of the window in front: they look as in the other one.
menu() { convert "$folder/$1.png" -crop "90x17+$(($2 + 4))+$(($2 + 25))" +repage -threshold 50% "$folder/$1-menu.png"; }
menu both 52
menu lake 24
[ "$(identify -format %k "$folder/lake-menu.png")" -eq 2 ] || { echo "no menu where it was looked for"; exit 1; }
compare -metric AE "$folder/both-menu.png" "$folder/lake-menu.png" null: 2>/dev/null || { echo "the menus are covered"; exit 1; }
echo "Sketch painted a document and the message about a broken one"
