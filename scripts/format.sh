#!/usr/bin/env bash
# Formats the sources; with --check only looks whether they are formatted.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=(-i)
[[ ${1:-} == --check ]] && mode=(--dry-run -Werror)
git ls-files -z --cached --others --exclude-standard -- '*.h' '*.c' '*.cpp' |
  xargs -0 clang-format "${mode[@]}"
