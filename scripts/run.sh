#!/usr/bin/env bash
# Sets up, builds and starts Lumetra. Arguments go to lumetra (e.g. --watch).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh
exec "${LUMETRA_BUILD_DIR:-build}/lumetra" "$@"
