#!/bin/bash
# Usage: pkg_config.sh LIBDIR SOURCE_DIR BUILD_DIR
set -euo pipefail
source "$(dirname "$0")/check_output.sh"
mkdir -p "$3"
export PKG_CONFIG_PATH=$1/pkgconfig
"$PKG_CONFIG" --print-errors --exists 'trelvocore >= 1.0 trelvocore < 2.0'
flags=$("$PKG_CONFIG" --cflags --libs trelvocore)
if [[ -n ${PKG_CONFIG_SYSROOT_DIR:-} ]]; then
  # pkg-config takes every library to lie in the sysroot; this one does not.
  flags=${flags//"$PKG_CONFIG_SYSROOT_DIR$1"/$1}
fi
echo "flags: $flags"
"$CXX" -std=c++17 -Wall -Wextra -Werror $CXXFLAGS "$2/main.cpp" $flags -o "$3/outside"
LD_LIBRARY_PATH=$1 check_output "$3/outside"
