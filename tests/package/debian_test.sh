#!/usr/bin/env bash
# debian_test.sh ROOT: packs the native build, installs the package into a folder, runs it from there
# and removes it. What it depends on must be packages that this machine can have.
set -euo pipefail
root=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
  echo "debian_test: $*" >&2
  exit 1
}

"$root/package" --as-built "$work" debian >/dev/null
package=$(echo "$work"/fiohost_*_amd64.deb)
[ -s "$package" ] || fail "the package is not there"

apt-get install --simulate -qq "$package" >"$work/apt.log" 2>&1 || fail "$(cat "$work/apt.log")"
depends=$(dpkg-deb -f "$package" Depends)
for library in libc6 libjpeg62-turbo libspng0 libstdc++6; do
  case $depends in *"$library"*) ;; *) fail "it does not depend on $library but on: $depends" ;; esac
done

# An installed system of its own below the folder; the libraries are this machine's.
system=$work/system
mkdir -p "$system/var/lib/dpkg"
: >"$system/var/lib/dpkg/status"
dpkg_here() { dpkg --root="$system" --force-script-chrootless --force-depends --force-not-root --log=/dev/null "$@"; }
dpkg_here -i "$package" >"$work/install.log" 2>&1 || fail "$(cat "$work/install.log")"
program=$system/usr/bin/fiohost
"$root/build/linux/examples/make_stereo" "$work/left.jpg" "$work/right.jpg" >/dev/null
(cd "$work" && "$program" info left.jpg | grep -q 'Format *JPEG') || fail "the installed program does not run"
(cd "$work" && "$program" mpo build -o both.mpo left.jpg right.jpg --kind stereo >/dev/null) || fail "it does not build"
[ "$(cd "$work" && "$program" mpo info both.mpo --json | grep -c '"offset"')" -ge 2 ] || fail "it does not tell of both images"
man --warnings -l "$system/usr/share/man/man1/fiohost.1.gz" >"$work/page" 2>"$work/man.log" || fail "no manual page"
grep -q fiohost "$work/page" || fail "the manual page is empty"
bash -n "$system/usr/share/bash-completion/completions/fiohost" || fail "the completion is no shell script"
[ -s "$system/usr/share/doc/fiohost/copyright" ] || fail "no copyright file"

dpkg_here -P fiohost >"$work/remove.log" 2>&1 || fail "$(cat "$work/remove.log")"
left=$(find "$system" -path "$system/var" -prune -o ! -type d -print)
[ -z "$left" ] || fail "left behind: $left"
echo "installed, run and removed"
