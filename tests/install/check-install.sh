#!/bin/sh
# Installs a build into a folder of its own, moves it, and uses it as others would: the tool finds its bundle, a C
# program builds through pkg-config and through the CMake package, and both see the library's texts.
# check-install.sh BUILD_FOLDER SOURCE_FOLDER
set -eu
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/prefix"
prefix=$work/prefix
broken=$source/Samples/Broken.ttf

"$prefix/bin/vorn-font-test" --list-tests | grep -q "Required tables" || { echo "the tool has no bundle"; exit 1; }
"$prefix/bin/vorn-font-test" "$broken" | grep -q "No style name (name ID 2)" || { echo "the tool has no wordings"; exit 1; }

PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name vornfonttest.pc)")
export PKG_CONFIG_PATH
cc -std=c11 -Wall -Wextra -Werror -o "$work/example" "$source/tests/install/example.c" \
  $(pkg-config --cflags --libs vornfonttest) -Wl,-rpath,"$(pkg-config --variable=libdir vornfonttest)"
cmake -S "$source/tests/install" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake" >/dev/null

for program in "$work/example" "$work/cmake/example"; do
  answer=$("$program" "$broken" 2>/dev/null)
  case $answer in
    *kVornFontTestSeverityFatalError*) ;;
    *) echo "$program answers: $answer"; exit 1 ;;
  esac
done
