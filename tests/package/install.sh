#!/bin/bash
# Stages a fresh install. Usage: install.sh CMAKE BUILD_DIR STAGE_DIR
set -euo pipefail
rm -rf "$3"
DESTDIR=$3 "$1" --install "$2"
