#!/usr/bin/env bash
# Builds the Windows libraries from Debian's source packages, once.
# Usage: third_party.sh FOLDER   (sources below FOLDER/src, results below FOLDER/windows)
#
# apt checks each package against the archive's signatures. Nothing here is committed.
set -euo pipefail

folder=$1
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
result=$folder/windows
triple=x86_64-w64-mingw32
# The recipe is part of the stamp: a changed recipe builds anew.
stamp=$result/built.$(sha256sum "${BASH_SOURCE[0]}" | cut -c1-16)

mkdir -p "$folder"
exec 9>"$folder/lock"
flock 9
[ -e "$stamp" ] && exit 0
rm -rf "$result" "$folder/src" "$folder/work"
mkdir -p "$result/lib" "$result/include" "$folder/src" "$folder/work"

# A private copy of the package lists, with the source entries that a fresh machine leaves out.
apt_private() {
  apt-get -o Dir::Etc::sourcelist="$folder/apt/sources.list" -o Dir::Etc::sourceparts="$folder/apt/parts" \
          -o Dir::State::lists="$folder/apt/lists" -o APT::Sandbox::User=root "$@"
}
fetch_sources() {
  rm -rf "$folder/apt"
  mkdir -p "$folder/apt/parts" "$folder/apt/lists/partial"
  local file
  : > "$folder/apt/sources.list"
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ -e "$file" ] && sed -n 's/^deb \(.*debian.*\)/deb-src \1/p' "$file" >> "$folder/apt/sources.list"
  done
  for file in /etc/apt/sources.list.d/debian*.sources; do
    [ -e "$file" ] && sed 's/^Types:.*/Types: deb-src/' "$file" > "$folder/apt/parts/$(basename "$file")"
  done
  apt_private update -qq
  (cd "$folder/src" && apt_private source -qq "$@")
}

build_jpeg() {
  # The SIMD dispatch keeps its capability flags in thread-local variables when the TurboJPEG API is
  # built too, and this compiler emulates those with a function call for every block of a picture.
  # WITH_TURBOJPEG=OFF makes them plain statics. Threads stay safe: each flag is one aligned word that
  # every thread computes to the same value from CPUID and the environment, and klibjpg runs that
  # computation once when it is loaded, before a second thread can be inside. bench/simd_dispatch.sh
  # measures both ways.
  cmake -S "$folder"/src/libjpeg-turbo-*/ -B "$folder/work/jpeg" -G Ninja \
    -DCMAKE_TOOLCHAIN_FILE="$here/mingw-w64.cmake" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_INSTALL_PREFIX="$result" -DCMAKE_INSTALL_LIBDIR="$result/lib" \
    -DENABLE_SHARED=OFF -DWITH_TURBOJPEG=OFF -DREQUIRE_SIMD=ON -DWITH_JPEG8=OFF \
    ${KF_JPEG_OPTIONS:-}
  cmake --build "$folder/work/jpeg" --target jpeg-static
  cp "$folder/work/jpeg/libjpeg.a" "$result/lib/"
  cp "$folder"/src/libjpeg-turbo-*/{jpeglib.h,jmorecfg.h,jerror.h} "$folder/work/jpeg/jconfig.h" "$result/include/"
}

build_spng() {
  $triple-gcc-posix -O2 -DSPNG_STATIC -c "$folder"/src/libspng-*/spng/spng.c -o "$folder/work/spng.o"
  $triple-ar rcs "$result/lib/libspng.a" "$folder/work/spng.o"
  cp "$folder"/src/libspng-*/spng/spng.h "$result/include/"
}

# Headers of Debian packages without a binary part.
link_headers() {
  mkdir -p "$result/header-only"
  ln -sfn /usr/include/CLI "$result/header-only/CLI"
  ln -sfn /usr/include/nlohmann "$result/header-only/nlohmann"
}

{
  fetch_sources libjpeg-turbo libspng
  build_jpeg
  build_spng
  link_headers
} > "$folder/build.log" 2>&1 || { tail -n 25 "$folder/build.log" >&2; exit 1; }
rm -rf "$folder/work"
touch "$stamp"
