#!/bin/sh
# Installs the Debian packages that a purpose needs, when they are missing.
# Usage: scripts/install-deps.sh build|test|bench|format
set -eu

build="g++ cmake make pkg-config librdkit-dev libboost-dev zlib1g-dev libxxhash-dev"
case "${1:-build}" in
  build)  packages="$build" ;;
  test)   packages="$build libgtest-dev python3 python3-rdkit python3-numpy" ;;
  bench)  packages="$build libbenchmark-dev python3 python3-rdkit python3-openbabel" ;;
  format) packages="clang-format clang-tidy" ;;
  *) echo "install-deps: unknown purpose '$1' (build, test, bench or format)" >&2; exit 2 ;;
esac

if ! command -v dpkg-query >/dev/null 2>&1; then
  echo "install-deps: not a Debian system; please provide: $packages" >&2
  exit 0
fi

missing=
for package in $packages; do
  dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

if [ "$(id -u)" -eq 0 ]; then
  as_root=
  echo "install-deps: installing as root:$missing"
elif command -v sudo >/dev/null 2>&1; then
  as_root=sudo
  echo "install-deps: installing with sudo:$missing"
else
  echo "install-deps: missing packages, and neither root nor sudo to install them. As root, run:" >&2
  echo "  apt-get install --no-install-recommends$missing" >&2
  exit 1
fi

# shellcheck disable=SC2086  # the lists are words on purpose
export DEBIAN_FRONTEND=noninteractive
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { $as_root apt-get update && $as_root apt-get install -y --no-install-recommends $missing; } >"$log" 2>&1; then
  tail -n 20 "$log" >&2
  echo "install-deps: the installation failed" >&2
  exit 1
fi
