#!/usr/bin/env bash
# Looks at the library file: check-library.sh OBJDUMP LIBRARY VERSION SOURCE-FOLDER BUILD-FOLDER
set -u
objdump=$1 strings=${1/%objdump/strings} library=$2 version=$3 source=$4 build=$5
failures=0
wrong() {
  printf '%s: %s\n' "$(basename "$library")" "$*"
  failures=$((failures + 1))
}

headers=$("$objdump" -p "$library") || exit 1

exports=$(sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/s/^[[:space:]]*\[ *[0-9]*\] \([^ ]*\)$/\1/p' <<<"$headers" | sort | xargs)
wanted="Morvane_Create Morvane_Create_Itanium Morvane_Delete Morvane_New"
[ "$exports" = "$wanted" ] || wrong "exports '$exports' instead of '$wanted'"

# Only libraries that Windows has: those of the compiler are all called lib....
imports=$(sed -n 's/^.*DLL Name: //p' <<<"$headers")
grep -qix kernel32.dll <<<"$imports" || wrong "does not even import KERNEL32.dll: the listing was not understood"
foreign=$(grep -i '^lib' <<<"$imports" | xargs)
[ -z "$foreign" ] || wrong "imports $foreign"
# Not those that wait until a dialog or a drop needs them (Component/Win/Platform/LateFunctions.h).
early=$(grep -ixE '(comdlg32|ole32|shell32)\.dll' <<<"$imports" | xargs)
[ -z "$early" ] || wrong "imports $early, which would be loaded with every program"

texts=$("$strings" -e l "$library")
for text in VS_VERSION_INFO "$version" Morvane.dll; do
  grep -qxF "$text" <<<"$texts" || wrong "has no '$text' in its version resource"
done

for folder in "$source" "$build"; do
  { "$strings" "$library"; printf '%s\n' "$texts"; } | grep -F "$folder" | head -n 5 | while read -r line; do
    printf '  %s\n' "$line"
  done | grep . && wrong "holds paths of the machine that built it"
done

[ $failures -eq 0 ] && echo "exports, imports, version and texts are as they should be"
exit $((failures > 0))
