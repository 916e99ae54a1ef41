#!/usr/bin/env bash
# Set-up, build and run on a fresh Debian 12 machine.
#   tools/dev.sh run    build and run the main program
#   tools/dev.sh test   build and run the whole test suite, then the checked
#                       builds below
#
# The checked builds of `test`, each in a build directory of its own:
#   build-asan  AddressSanitizer, LeakSanitizer and UndefinedBehaviorSanitizer
#               over the library and the whole suite
#   build-tsan  ThreadSanitizer over the library and the thread tests
#   build-fuzz  clang with libFuzzer: a short run of every fuzz target
# VERIMOND_CHECKED=0 leaves them out; VERIMOND_CHECKED=asan,tsan,fuzz (or a
# part of the list) chooses.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(cmake g++ make pkg-config zlib1g-dev libzstd-dev libgtest-dev libssl-dev python3 valgrind
          clang libclang-rt-14-dev)
missing=()
for p in "${packages[@]}"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
if ((${#missing[@]})); then
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq "${missing[@]}"
fi

jobs=$(nproc)
build=${BUILD_DIR:-build}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j"$jobs"

# One checked build: directory, label filter for ctest (empty: all), targets
# (empty: all), then cmake arguments.
checked() {
  local dir=$1 labels=$2 targets=$3
  shift 3
  local start=$SECONDS
  echo "== $dir"
  cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVERIMOND_BENCH=OFF "$@" >/dev/null
  if [[ -n $targets ]]; then
    # shellcheck disable=SC2086
    cmake --build "$dir" -j"$jobs" --target $targets
  else
    cmake --build "$dir" -j"$jobs"
  fi
  if [[ -n $labels ]]; then
    ctest --test-dir "$dir" --output-on-failure -j"$jobs" -L "$labels"
  else
    ctest --test-dir "$dir" --output-on-failure -j"$jobs"
  fi
  echo "== $dir took $((SECONDS - start)) s"
}

case "${1:-run}" in
  run)  "$build/verimond" ;;
  test)
    ctest --test-dir "$build" --output-on-failure -j"$jobs"
    wanted=${VERIMOND_CHECKED:-asan,tsan,fuzz}
    if [[ $wanted == *asan* ]]; then
      checked build-asan "" "" -DVERIMOND_SANITIZE=address
    fi
    if [[ $wanted == *tsan* ]]; then
      checked build-tsan threads verimond_threads -DVERIMOND_SANITIZE=thread
    fi
    if [[ $wanted == *fuzz* ]] && command -v clang++ >/dev/null; then
      CC=clang CXX=clang++ checked build-fuzz fuzz "" -DVERIMOND_SANITIZE=address -DVERIMOND_FUZZ=ON \
        -DVERIMOND_TESTS=OFF
    fi
    ;;
  *)    echo "usage: $0 run|test" >&2; exit 2 ;;
esac
