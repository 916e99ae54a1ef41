#!/usr/bin/env bash
# Set-up, build and run on a fresh Debian 12 machine.
#   tools/dev.sh run    build and run the main program
#   tools/dev.sh test   build and run the whole test suite
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(cmake g++ make pkg-config zlib1g-dev libzstd-dev libgtest-dev libssl-dev python3)
missing=()
for p in "${packages[@]}"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
if ((${#missing[@]})); then
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq "${missing[@]}"
fi

build=${BUILD_DIR:-build}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j"$(nproc)"

case "${1:-run}" in
  run)  "$build/verimond" ;;
  test) ctest --test-dir "$build" --output-on-failure -j"$(nproc)" ;;
  *)    echo "usage: $0 run|test" >&2; exit 2 ;;
esac
