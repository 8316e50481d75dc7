#!/bin/sh
# Builds the Debian package of a configured build. Usage: tools/make_deb.sh BUILD TARGET_FOLDER
set -eu
cmake --build "$1" --target packaging
mkdir -p "$2"
rm -f "$2"/quorlsdr_*.deb
target=$(cd "$2" && pwd)
cd "$1"
cpack -B "$target"
rm -rf "$target/_CPack_Packages"
