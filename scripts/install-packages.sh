#!/usr/bin/env bash
# Installs the Debian packages that building, testing and running Kelvo need. Does nothing, and
# asks nobody, when they are all there.
set -euo pipefail

packages=(
  g++                # the compiler
  cmake ninja-build  # the build
  ccache             # quick rebuilds
  make               # the front door
  pkg-config         # the installed library is found with it (tested)
  git                # which files the format check looks at
  libgtest-dev       # the tests
  libbenchmark-dev   # the micro-benchmarks
  libcli11-dev       # the command's options
  python3            # the checks of the sources and the tests of the command
  clang-format       # the format check
  gzip bzip2         # the library reads and writes compressed files through them
)

missing=()
for package in "${packages[@]}"; do
  state=$(dpkg-query --show --showformat='${db:Status-Abbrev}' "$package" 2>/dev/null || true)
  [[ $state == ii* ]] || missing+=("$package")
done
((${#missing[@]})) || exit 0

as_root=()
if ((EUID != 0)); then
  command -v sudo >/dev/null || {
    echo "These packages are missing, and neither root nor sudo is at hand: ${missing[*]}" >&2
    exit 1
  }
  as_root=(sudo)
fi

echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -q </dev/null
"${as_root[@]}" apt-get install -q -y --no-install-recommends "${missing[@]}" </dev/null
