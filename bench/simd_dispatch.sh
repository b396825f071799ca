#!/usr/bin/env bash
# What libjpeg-turbo's thread-local SIMD flags cost on Windows: decodes and encodes the same picture,
# in turn, with the library as its own build makes it and as cmake/third_party.sh makes it.
# Usage: simd_dispatch.sh [ROUNDS]   (9 rounds of 3 repetitions each by default)
set -euo pipefail

rounds=${1:-9}
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
plain=$root/build/third_party
thread_local=$root/build/third_party/simd_thread_local
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$root/cmake/third_party.sh" "$plain"
# libjpeg-turbo has thread-local variables as soon as its TurboJPEG half is configured, as it is by
# default, and its own test finds that this compiler has them.
KF_JPEG_OPTIONS="-DWITH_TURBOJPEG=ON -UHAVE_THREAD_LOCAL" "$root/cmake/third_party.sh" "$thread_local"

emulated_variables() { x86_64-w64-mingw32-nm "$1/windows/lib/libjpeg.a" | grep -c __emutls || true; }
if [ "$(emulated_variables "$thread_local")" -eq 0 ] || [ "$(emulated_variables "$plain")" -ne 0 ]; then
  echo "simd_dispatch.sh: the two libraries do not differ as they should" >&2
  exit 1
fi

build() {  # NAME FOLDER
  x86_64-w64-mingw32-g++-posix -std=c++20 -O2 -static -I"$root" -isystem "$2/windows/include" \
    "$root/bench/simd_dispatch.cpp" "$2/windows/lib/libjpeg.a" -o "$work/$1.exe"
}
build plain "$plain"
build thread_local "$thread_local"

for ((round = 0; round < rounds; ++round)); do
  for name in thread_local plain; do
    "$root/cmake/wine" "$work/$name.exe" 3 | tr -d '\r' >> "$work/$name.times"
  done
done

median() {  # NAME COLUMN
  awk -v column="$2" '{ print $column }' "$work/$1.times" | sort -n |
    awk '{ t[NR] = $1 } END { print (t[int((NR + 1) / 2)] + t[int(NR / 2) + 1]) / 2 }'
}
echo "3000 x 2000 pixels, 4:2:0, medians of $((rounds * 3)), milliseconds"
column=1
for work_name in decoding encoding; do
  before=$(median thread_local "$column")
  after=$(median plain "$column")
  awk -v name="$work_name" -v before="$before" -v after="$after" 'BEGIN {
    printf "%s: thread-local flags %.2f, plain flags %.2f, ratio %.3f\n", name, before, after, before / after }'
  column=$((column + 1))
done
