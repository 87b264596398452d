#!/bin/bash
# Usage: find_package.sh PREFIX SOURCE_DIR BUILD_DIR
set -euo pipefail
source "$(dirname "$0")/check_output.sh"
rm -rf "$3"
"$CMAKE" -G Ninja -S "$2" -B "$3" -DCMAKE_PREFIX_PATH="$1" -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF
grep -q "^trelvocore_DIR:PATH=$1/" "$3/CMakeCache.txt"
"$CMAKE" --build "$3" --verbose
check_output "$3/outside"

# Asking for a version of another major number has to fail.
sed 's/trelvocore 1.0/trelvocore 2.0/' "$2/CMakeLists.txt" >"$3/CMakeLists.txt"
cp "$2/main.cpp" "$3"
if "$CMAKE" -G Ninja -S "$3" -B "$3/wrong" -DCMAKE_PREFIX_PATH="$1" >"$3/wrong.log" 2>&1; then
  echo 'version 2.0 was found where 1.0 is installed'
  exit 1
fi
grep -q 'compatible with requested version' "$3/wrong.log"
