#!/usr/bin/env bash
# Makes FonklavTAPI.ico from FonklavTAPI.svg; the result is checked in. Needs the Debian packages librsvg2-bin and
# imagemagick.
set -euo pipefail
cd "$(dirname "$0")"
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
pictures=()
# The largest is stored compressed, all others are not: one of 128 pixels would take half of the file, and Windows makes it
# from the largest as well.
for size in 16 20 24 32 40 48 64 256; do
  rsvg-convert -w "$size" -h "$size" -o "$folder/$size.png" FonklavTAPI.svg
  pictures+=("$folder/$size.png")
done
convert "${pictures[@]}" FonklavTAPI.ico
