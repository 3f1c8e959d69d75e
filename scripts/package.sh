#!/usr/bin/env bash
# Sets up, builds (build/, or $LUMETRA_BUILD_DIR) and makes the Debian package from the same
# install rules as cmake --install: build/lumetra_<version>_<arch>.deb.
# Install it with: sudo apt-get install ./build/lumetra_*.deb
set -euo pipefail
cd "$(dirname "$0")/.."
build=${LUMETRA_BUILD_DIR:-build}
scripts/setup.sh
scripts/build.sh
rm -f "$build"/lumetra_*.deb
(cd "$build" && cpack -G DEB)
ls "$build"/lumetra_*.deb
