# Shared by ./run and ./test: installing what is missing and building what is out of date.
# Sourced by bash; root is the project's folder.

say() { printf '%s\n' "$*" >&2; }
fail() {
  say "$*"
  exit 1
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# What each kind of build needs, all from Debian.
native_packages=(cmake ninja-build g++ clang libclang-rt-14-dev make pkg-config python3 ccache libjpeg62-turbo-dev libspng-dev
  libcli11-dev nlohmann-json3-dev googletest)
windows_packages=(g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 libz-mingw-w64-dev nasm dpkg-dev
  wine wine64)
package_packages=(nsis dpkg-dev)
test_packages=(clang-format exif imagemagick libjpeg-turbo-progs libimage-exiftool-perl python3-pil xvfb
  fonts-wine groff-base man-db)
# What the benchmark measures beside, and what it measures with.
bench_packages=(libbenchmark-dev libexiv2-dev libexif-dev exiv2 libimage-exiftool-perl python3-pil)

# missing_packages PACKAGE...: those that are not installed.
missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || echo "$package"
  done
}

# install_packages PACKAGE...: installs what is missing. Answers 1 when something cannot be had.
install_packages() {
  local missing log=$root/build/install.log
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -eq 0 ] && return 0
  mkdir -p "$root/build"
  say "Installing ${missing[*]} ..."
  if ! { as_root apt-get update -qq &&
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    tail -n 5 "$log" >&2
    return 1
  fi
}

# Everything that a build is made of, as one line: paths, sizes and times.
source_state() {
  (cd "$root" && find CMakeLists.txt CMakePresets.json cmake host platform frame jpeg mpo property exif viewer \
    companions fiohost tests examples bench fuzz -type f -printf '%p %s %T@\n' 2>/dev/null | sort | sha256sum | cut -d' ' -f1)
}

# build PRESET TARGET...: configures and builds, quietly when all goes well. A second call with
# nothing changed is told by the stamp and does nothing. Two at a time wait for each other.
build() {
  mkdir -p "$root/build"
  (flock 9 && build_alone "$@") 9>"$root/build/$1.lock"
}

build_alone() {
  local preset=$1 folder=$root/build/$1 log=$root/build/$1.log stamp state
  shift
  stamp=$folder/built.$(echo "$*" | tr ' /' '__')
  state=$(source_state)
  [ -e "$stamp" ] && [ "$(cat "$stamp")" = "$state" ] && return 0
  say "Building ($preset) ..."
  if ! { { [ "$folder/build.ninja" -nt "$root/CMakePresets.json" ] || (cd "$root" && cmake --preset "$preset"); } && cmake --build "$folder" --target "$@"; } >"$log" 2>&1; then
    grep -E -m 20 'error|Error|FAILED' "$log" >&2 || tail -n 20 "$log" >&2
    say "The $preset build failed; the whole log is $log"
    return 1
  fi
  echo "$state" >"$stamp"
}

# Keeps Wine's own processes for as long as this script lives: a command prompt that waits for its
# input to end. Without it they start anew for every program, and hold the output of the one that
# started them, so that ctest waits for programs that have ended long ago.
hold_wine() {
  exec {wine_held}> >(exec "$root/cmake/wine" cmd.exe >/dev/null 2>&1)
}

# One Wine prefix below the build folder, made before several programs ask for it at once.
prepare_wine() {
  [ -e "$root/build/wineprefix/system.reg" ] && return 0
  say "Preparing Wine ..."
  mkdir -p "$root/build"
  "$root/cmake/wine" wineboot --init >"$root/build/wine.log" 2>&1 || {
    tail -n 5 "$root/build/wine.log" >&2
    return 1
  }
}
