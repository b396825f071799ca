#!/usr/bin/env bash
# installer_test.sh ROOT: packs the Windows build, then installs, runs and removes it under Wine as a
# user would, silently, once with and once without the entry of the context menu.
set -euo pipefail
root=$1
work=$(mktemp -d)
# A prefix of its own: what is installed must not meet other tests.
export KF_WINEPREFIX=$root/build/wineprefix-package-$$
trap 'WINEPREFIX=$KF_WINEPREFIX wineserver -k 2>/dev/null; rm -rf "$work" "$KF_WINEPREFIX"' EXIT
fail() {
  echo "installer_test: $*" >&2
  exit 1
}
windows_path() { wine winepath -w "$1" | tr -d '\r'; }
wine() { "$root/cmake/wine" "$@"; }
"$root/cmake/wine_prefix_copy" "$KF_WINEPREFIX"

"$root/package" --as-built "$work" windows >/dev/null
setup=$(echo "$work"/k32jpg-*-setup.exe)
archive=$(echo "$work"/k32jpg-*-windows.zip)
[ -s "$setup" ] && [ -s "$archive" ] || fail "the packages are not there"

# The archive runs as it is unpacked.
(cd "$work" && cmake -E tar xf "$archive")
unpacked=${archive%.zip}
for name in fiohost.exe KFRES.DLL fio/K32JPG.FIO README.md licences/libjpeg-turbo.md licences/gcc-runtime.txt; do
  [ -s "$unpacked/$name" ] || fail "$name is not in the archive"
done
"$root/build/linux/examples/make_stereo" "$work/left.jpg" "$work/right.jpg" >/dev/null
picture=$(windows_path "$work/left.jpg")
wine "$unpacked/fiohost.exe" info "$picture" | grep -q 'Format *JPEG' || fail "the unpacked program does not run"

uninstall_key='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\fiohost'
verb_of() { printf '%s' 'HKCU\Software\Classes\SystemFileAssociations\'"$1"'\shell\fiohost.properties\command'; }
has_key() { wine reg query "$1" >/dev/null 2>&1; }

target=$work/installed\ here
for option in "" /PROPERTIES; do
  # The folder is the rest of the line, without quotes, as the installer's users must give it.
  printf '"%s" /S %s /D=%s\r\n' "$(windows_path "$setup")" "$option" "$(windows_path "$target")" >"$work/install.bat"
  wine cmd /c "$(windows_path "$work/install.bat")" >/dev/null || fail "the installer fails"
  (cd "$unpacked" && find . -type f | sort) >"$work/expected"
  (cd "$target" && find . -type f ! -name uninstall.exe | sort) >"$work/found"
  diff "$work/expected" "$work/found" >&2 || fail "not what the archive holds"
  wine "$target/fiohost.exe" info "$picture" | grep -q 'Format *JPEG' || fail "the installed program does not run"
  has_key "$uninstall_key" || fail "Windows is not told of the program"
  for extension in .jpg .jpeg .jpe .mpo; do
    if [ -n "$option" ]; then
      wine reg query "$(verb_of "$extension")" | grep -q 'fiohost.exe" properties "%1" --window' ||
        fail "no entry in the context menu of $extension"
    elif has_key "$(verb_of "$extension")"; then
      fail "an entry in the context menu of $extension that nobody asked for"
    fi
  done

  # The user's own file stays, and so does its folder.
  touch "$target/mine.txt"
  # It goes on as a copy of itself, so that it can remove its own file.
  wine "$target/uninstall.exe" /S || fail "the uninstaller fails"
  for _ in $(seq 300); do
    [ -e "$target/uninstall.exe" ] || break
    sleep 0.1
  done
  [ "$(find "$target" -type f)" = "$target/mine.txt" ] || fail "the uninstaller leaves $(find "$target")"
  has_key "$uninstall_key" && fail "Windows still knows the program"
  for extension in .jpg .jpeg .jpe .mpo; do
    has_key "$(verb_of "$extension")" && fail "the context menu of $extension still has its entry"
  done
  rm -rf "$target"
done
echo "installed, run and removed"
