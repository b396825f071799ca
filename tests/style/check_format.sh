#!/usr/bin/env bash
# Fails when a source is not laid out as .clang-format says, and names it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
find . -path ./build -prune -o \( -name '*.h' -o -name '*.cpp' \) -print0 | xargs -0 clang-format --dry-run --Werror
echo "every source is laid out as .clang-format says"
