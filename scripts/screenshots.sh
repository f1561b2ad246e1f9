#!/usr/bin/env bash
# Takes the README's pictures under a virtual X server: the Overview, a
# running recording, the small window and the connection list, on a sample
# data directory.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMINUTOR_LOGIC_ONLY=OFF -DMINUTOR_SANITIZE=OFF
cmake --build build --target minutor_screenshots
export LC_ALL=de_DE.UTF-8 LANG=de_DE.UTF-8
export XDG_RUNTIME_DIR=$(mktemp -d)
xvfb-run -a -s "-screen 0 1024x768x24" build/tools/minutor_screenshots docs/screenshots
