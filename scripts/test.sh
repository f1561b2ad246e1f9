#!/usr/bin/env bash
# Installs what is needed, builds Minutor and runs every test: the whole suite
# in a normal build, then the logic library's tests and the graphical program
# again under AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
jobs=$(nproc)

cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMINUTOR_LOGIC_ONLY=OFF -DMINUTOR_SANITIZE=OFF
cmake --build build -j "$jobs"
(cd build && ctest --output-on-failure -j "$jobs")

cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DMINUTOR_LOGIC_ONLY=ON -DMINUTOR_SANITIZE=ON
cmake --build build-asan -j "$jobs"
(cd build-asan && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --output-on-failure -j "$jobs" -L logic)

# The graphical program under the same sanitizers: the program itself,
# started offscreen, recording, killed and ended by the session's end, and the
# main window with a manual recording and its stop.
cmake -S . -B build-asan-gui -G Ninja -DCMAKE_BUILD_TYPE=Debug -DMINUTOR_LOGIC_ONLY=OFF -DMINUTOR_SANITIZE=ON
cmake --build build-asan-gui -j "$jobs" --target minutor test_program test_mainwindow
(cd build-asan-gui && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --output-on-failure -R '^(test_program|test_mainwindow)$')

echo "All tests passed."
