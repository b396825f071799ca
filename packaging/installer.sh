#!/usr/bin/env bash
# installer.sh FOLDER VERSION OUTPUT: makes the installer of a staged folder.
# The uninstaller removes the files by name, so that nothing of the user's goes with them.
set -euo pipefail
folder=$1 version=$2 output=$3
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
lists=$(mktemp -d)
trap 'rm -rf "$lists"' EXIT

(
  cd "$folder"
  while IFS= read -r directory; do
    windows=${directory#.}
    windows=${windows//\//\\}
    printf 'SetOutPath "$INSTDIR%s"\n' "$windows"
    find "$directory" -maxdepth 1 -type f | sort | while IFS= read -r file; do
      printf 'File "%s"\n' "$folder/${file#./}"
    done
  done < <(find . -type d | sort)
) >"$lists/install.nsh"
(
  cd "$folder"
  find . -type f | sort | while IFS= read -r file; do
    windows=${file#.}
    printf 'Delete "$INSTDIR%s"\n' "${windows//\//\\}"
  done
  find . -mindepth 1 -type d | sort -r | while IFS= read -r directory; do
    windows=${directory#.}
    printf 'RMDir "$INSTDIR%s"\n' "${windows//\//\\}"
  done
) >"$lists/uninstall.nsh"

rm -f "$output"
makensis -V2 -WX -INPUTCHARSET UTF8 -DVERSION="$version" -DLISTS="$lists" -DOUTPUT="$output" \
  -DKILOBYTES="$(du -ks "$folder" | cut -f1)" "$here/installer.nsi"
