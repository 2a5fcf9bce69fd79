#!/usr/bin/env bash
# Builds the project and opens the reference host application. Without a display it runs under
# Xvfb, writes screenshots to $ZR_SCREENSHOT_DIR (screenshots/ by default) and exits.
# Arguments go to zrhostapp, e.g. --theme dark.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/deps.sh
zr_install_deps

cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build --target zrhostapp

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    exec build/bin/zrhostapp "$@"
fi
dir=${ZR_SCREENSHOT_DIR:-screenshots}
xvfb-run -a -s "-screen 0 1600x1000x24" build/bin/zrhostapp --screenshot "$dir" "$@"
echo "Screenshots: $(cd "$dir" && pwd)/"
