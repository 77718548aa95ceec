#!/bin/sh
# Usage: run.sh CMAKE BUILD_FOLDER COMPILER
set -eu
cmake=$1 build=$2 compiler=$3
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$cmake" --install "$build" --prefix "$work/prefix" >/dev/null

"$cmake" -S "$here/project" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_CXX_COMPILER="$compiler" >/dev/null
"$cmake" --build "$work/cmake" >/dev/null
"$work/cmake/consumer"

packages=$(dirname "$(find "$work/prefix" -name qxfingrix.pc)")
libraries=$(dirname "$(find "$work/prefix" -name libQXFingrix.so)")
# The file names the configured prefix; a staged copy overrides it.
flags=$(PKG_CONFIG_PATH=$packages pkg-config --define-variable=prefix="$work/prefix" --cflags --libs qxfingrix)
# shellcheck disable=SC2086
"$compiler" "$here/project/consumer.cpp" -o "$work/by-pkg-config" $flags -Wl,-rpath,"$libraries"
"$work/by-pkg-config"

"$work/prefix/bin/qxfp" --version
