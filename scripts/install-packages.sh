#!/usr/bin/env bash
# Installs the Debian packages that are missing, without questions; does nothing when they are all
# there.
#
#   scripts/install-packages.sh [run | test | ci]
#
# run: what building and running the command takes; test (the default): the tests too; ci: also
# what else .ci/run checks.
set -euo pipefail
purpose=${1:-test}

packages=(
  g++                # the compiler
  cmake ninja-build  # the build
  ccache             # quick rebuilds
  make               # the front door
  libexpat1-dev      # the library reads solution and start files with it
  libcli11-dev       # the command's options
  gzip bzip2         # the library reads and writes compressed files through them
)
[[ $purpose == run ]] || packages+=(
  pkg-config         # the installed library is found with it (tested)
  git                # which files the format check looks at
  libgtest-dev       # the tests
  libbenchmark-dev   # the micro-benchmarks
  python3            # the checks of the sources and the tests of the command
  clang-format       # the format check
)
[[ $purpose != ci ]] || packages+=(
  clang       # the second compiler
  clang-tidy  # slips that the compilers let pass
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
