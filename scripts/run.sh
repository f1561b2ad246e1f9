#!/usr/bin/env bash
# Installs what is needed, builds Minutor and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMINUTOR_LOGIC_ONLY=OFF -DMINUTOR_SANITIZE=OFF
cmake --build build
exec build/src/app/minutor
