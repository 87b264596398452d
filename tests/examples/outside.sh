#!/bin/bash
# Usage: outside.sh PREFIX SOURCE_DIR BUILD_DIR PROGRAM...
#
# Builds the examples against the library installed in PREFIX, as a project of its own.
set -euo pipefail
prefix=$1 source=$2 build=$3
shift 3
rm -rf "$build"
"$CMAKE" -G Ninja -S "$source" -B "$build" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF
grep -q "^trelvocore_DIR:PATH=$prefix/" "$build/CMakeCache.txt"
"$CMAKE" --build "$build"
# A port's programs are started through an emulator.
run=$build
if [[ -n ${EMULATOR:-} ]]; then
  run=$build/emulated
  mkdir "$run"
  for program in "$@"; do
    printf '#!/bin/sh\nexec %s "$@"\n' "$EMULATOR '$build/$program'" >"$run/$program"
    chmod +x "$run/$program"
  done
fi
in_directory="$PYTHON;$(dirname "$0")/in_directory.py;"
declare -A runner=([logging]="$PYTHON;$(dirname "$0")/logging.py;"
                   [files]=$in_directory [sealed_file]=$in_directory)
for program in "$@"; do
  "$CMAKE" -DPROGRAM="${runner[$program]:-}$run/$program" -DEXPECTED="$(dirname "$0")/$program.txt" \
    -P "$(dirname "$0")/check_output.cmake"
done
