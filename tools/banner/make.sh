#!/bin/sh
# Makes resources/banner.bmp (557 x 200, 24 bit, white background) from banner.svg. Run by hand after a change of
# the drawing; needs librsvg2-bin, imagemagick and fonts-dejavu-core.
set -eu
cd "$(dirname "$0")"
rsvg-convert banner.svg |
    convert png:- -background white -alpha remove -alpha off -type TrueColor BMP3:../../resources/banner.bmp
