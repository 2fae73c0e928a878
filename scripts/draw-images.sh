#!/usr/bin/env bash
# Draws resources/images from the sources in resources/svg, for people who change a picture; the build
# takes the pictures as they lie there. Needs rsvg-convert and ImageMagick's convert.
#   svg/NAME.svg            -> NAME.png, in the size that the drawing states
#   svg/photo/NAME.svg      -> NAME.jpg
#   svg/moving/NAME/NN.svg  -> NAME.gif, one frame a drawing; the first one rests
set -euo pipefail
cd "$(dirname "$0")/../resources"
frames=$(mktemp -d)
trap 'rm -rf "$frames"' EXIT

rm -rf images
mkdir images
for source in svg/*.svg; do
    rsvg-convert "$source" -o "images/$(basename "$source" .svg).png"
done
for source in svg/photo/*.svg; do
    rsvg-convert "$source" -o "$frames/photo.png"
    convert "$frames/photo.png" -strip -quality 90 "images/$(basename "$source" .svg).jpg"
done
for folder in svg/moving/*/; do
    name=$(basename "$folder")
    mkdir "$frames/$name"
    for source in "$folder"*.svg; do
        rsvg-convert "$source" -o "$frames/$name/$(basename "$source" .svg).png"
    done
    # A GIF's pixel is either there or not: half-covered edges go, so that no light fringe shows on dark.
    convert -loop 0 -dispose Background -delay 10 "$frames/$name"/*.png \
        \( -clone 0 -set delay 90 \) -swap 0,-1 -delete -1 \
        -channel A -threshold 50% +channel -strip "images/$name.gif"
done
