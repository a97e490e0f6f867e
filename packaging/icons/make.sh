#!/bin/bash
# Draws the program's icon in all its sizes from resources/carvello.svg, and the Windows icon from those.
# Needs rsvg-convert (librsvg2-bin) and convert (imagemagick).
set -eu
cd "$(dirname "$0")"
svg=../../resources/carvello.svg

for size in 16 22 24 32 48 64 128 256; do
  rsvg-convert --width "$size" --height "$size" --output "carvello-$size.png" "$svg"
done
convert carvello-{256,48,32,16}.png ../../resources/windows/carvello.ico
