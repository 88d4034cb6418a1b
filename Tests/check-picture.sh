#!/usr/bin/env bash
# Looks for a Sketch document in a picture of the screen: check-picture.sh DOCUMENT PICTURE
#
# Every colour that fills a shape of the document must be there, so the document may not cover a shape entirely.
set -u
document=$1 picture=$2
colours=$(sed '/^#/d' "$document" | grep -oE '(fill=|^background )#[0-9A-Fa-f]{6}' | grep -oE '#.*' | tr a-f A-F | sort -u)
[ "$(wc -l <<<"$colours")" -ge 5 ] || { echo "$document has too few colours to look for"; exit 1; }
shown=$(convert "$picture" -alpha off -depth 8 -format %c histogram:info:- | grep -oE '#[0-9A-F]{6}' | sort -u)
missing=$(comm -23 <(printf '%s\n' "$colours") <(printf '%s\n' "$shown") | xargs)
[ -z "$missing" ] || { echo "$picture lacks colours of $document: $missing"; exit 1; }
echo "$(basename "$picture") shows all $(wc -l <<<"$colours") colours of $(basename "$document")"
