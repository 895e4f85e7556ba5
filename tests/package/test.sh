#!/usr/bin/env bash
# The installed library as others meet it: installs a finished build into an empty place, builds programs outside of
# the project through CMake and through pkg-config, in C and in C++, with the shared and the static library; moves the
# place and does it again; makes the Debian packages, looks into them and runs what they hold. Only files in a new
# directory are written, but for the build's install prefix, which becomes /usr for the packages.
#   tests/package/test.sh BUILD-DIRECTORY
set -euo pipefail
build=$(realpath "${1:?usage: test.sh BUILD-DIRECTORY}")
here=$(realpath "$(dirname "$0")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
readonly expected="02010200 25 75 200"

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# The best level that this machine's loader takes, as a part of a library's path; empty for the baseline.
loader=/lib64/ld-linux-x86-64.so.2
best=
if [[ -x $loader ]]; then
  for level in x86-64-v2 x86-64-v3; do
    if grep -q "$level (supported" <<<"$("$loader" --help)"; then best=glibc-hwcaps/$level/; fi
  done
fi

# run PROGRAM LIBRARY-DIRECTORY [ENVIRONMENT...]: prints what is expected, with the best library of the directory.
run() {
  local program=$1 directory=$2
  shift 2
  [[ $(env "$@" "$program") == "$expected" ]] || fail "$program printed $(env "$@" "$program")"
  if [[ -n $directory ]]; then
    grep -qF "calling init: $directory/${best}libquorvane.so.2" \
      <<<"$(env LD_DEBUG=libs "$@" "$program" 2>&1 >/dev/null)" ||
      fail "$program did not take $directory/${best}libquorvane.so.2"
  fi
}

# outside ROOT: everything that a program outside of the project does with an installation.
outside() {
  local root=$1 language libraries built
  built=$(mktemp -d -p "$work")
  libraries=$(dirname "$(find "$root" -name quorvane.pc)")/..
  libraries=$(realpath "$libraries")
  for language in C CXX; do
    cmake -S "$here/outside" -B "$built/$language" -G Ninja -DOUTSIDE_LANGUAGE=$language -DCMAKE_PREFIX_PATH="$root" \
      -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF >"$built/log" 2>&1 || { cat "$built/log"; fail "configuring in $language"; }
    cmake --build "$built/$language" >"$built/log" 2>&1 || { cat "$built/log"; fail "building in $language"; }
    run "$built/$language/shared" "$libraries"
    run "$built/$language/static" ""
    if grep -q quorvane <<<"$(ldd "$built/$language/static")"; then fail "static links the shared library"; fi
  done

  export PKG_CONFIG_PATH=$libraries/pkgconfig
  [[ $(pkg-config --modversion quorvane) == 2.1.2.0 ]] || fail "version in quorvane.pc"
  local flags private
  flags=$(pkg-config --cflags --libs quorvane)
  private=$(pkg-config --static --libs quorvane)
  # shellcheck disable=SC2086
  {
    cc -std=c99 "$here/outside/outside.c" $flags -o "$built/c"
    c++ -std=c++20 "$here/outside/outside.cpp" $flags -pthread -o "$built/cpp"
    cc -std=c99 "$here/outside/outside.c" $(pkg-config --cflags quorvane) ${private/-lquorvane/-l:libquorvane.a} -o "$built/c_static"
  }
  run "$built/c" "$libraries" LD_LIBRARY_PATH="$libraries"
  run "$built/cpp" "$libraries" LD_LIBRARY_PATH="$libraries"
  run "$built/c_static" ""
}

# tool ROOT: the installed tool finds its library and works.
tool() {
  [[ -x $1/bin/qvn ]] || return 0
  "$1/bin/qvn" chart "$work/chart.pgm" --size 64x48
  "$1/bin/qvn" convert "$work/chart.pgm" "$work/chart.ppm"
  [[ $(head -c 2 "$work/chart.ppm") == P6 ]] || fail "the tool of $1 wrote no picture"
  local taken
  taken=$(LD_DEBUG=libs "$1/bin/qvn" formats 2>&1 >/dev/null | grep "calling init: .*${best}libquorvane.so.2") ||
    fail "the tool of $1 did not take the best library"
  [[ $taken != *"$build"* ]] || fail "the tool of $1 took a library of its own build"
}

echo "== an installation"
cmake --install "$build" --prefix "$work/root" >/dev/null
outside "$work/root"
tool "$work/root"
if grep -rqF "$work" "$work/root"; then fail "the installation knows where it is"; fi

echo "== the same, moved"
mkdir -p "$work/another place/deep"
mv "$work/root" "$work/another place/deep/root"
# pkg-config and shells are at odds about spaces; CMake is not.
tool "$work/another place/deep/root"
mv "$work/another place/deep/root" "$work/moved"
outside "$work/moved"
tool "$work/moved"
cmake -S "$here/outside" -B "$work/newer" -DOUTSIDE_LANGUAGE=C -DCMAKE_PREFIX_PATH="$work/moved" -G Ninja >/dev/null 2>&1 ||
  fail "configuring"

echo "== Debian packages"
command -v dpkg-deb >/dev/null || { echo "no dpkg-deb: left out"; exit 0; }
cmake "$build" -DCMAKE_INSTALL_PREFIX=/usr >/dev/null
cmake --build "$build" >/dev/null
(cd "$build" && cpack -G DEB -B "$work/debs" >"$work/cpack.log" 2>&1) || { cat "$work/cpack.log"; fail cpack; }
architecture=$(dpkg --print-architecture)
triplet=$(dpkg-architecture -qDEB_HOST_MULTIARCH)

# holds PACKAGE PATH...: these files are in it.
holds() {
  local package=$1 deb list path
  shift
  deb=$(ls "$work/debs/${package}_"*"_$architecture.deb")
  list=$(dpkg-deb -c "$deb" | awk '{print $6}')
  for path in "$@" "usr/share/doc/$package/copyright" "usr/share/doc/$package/changelog.gz"; do
    grep -qxF "./$path" <<<"$list" || { echo "$list"; fail "$package lacks $path"; }
  done
  if grep -v root/root <<<"$(dpkg-deb -c "$deb")"; then fail "$package has files of another owner"; fi
  dpkg-deb -x "$deb" "$work/fresh"
}

levels=()
if [[ $architecture == amd64 ]]; then
  levels=("usr/lib/$triplet/glibc-hwcaps/x86-64-v2/libquorvane.so.2" "usr/lib/$triplet/glibc-hwcaps/x86-64-v3/libquorvane.so.2")
fi
holds libquorvane2 "usr/lib/$triplet/libquorvane.so.2" "${levels[@]}"
holds libquorvane-dev usr/include/quorvane/quorvane.h usr/include/quorvane.hpp usr/include/quorvane/call.hpp \
  "usr/lib/$triplet/libquorvane.so" "usr/lib/$triplet/libquorvane.a" "usr/lib/$triplet/pkgconfig/quorvane.pc" \
  "usr/lib/$triplet/cmake/Quorvane/QuorvaneConfig.cmake" usr/share/man/man7/quorvane.7.gz usr/share/doc/libquorvane-dev/examples/quick.c
if [[ -x $work/moved/bin/qvn ]]; then
  holds quorvane-tools usr/bin/qvn usr/share/man/man1/qvn.1.gz usr/share/bash-completion/completions/qvn \
    usr/share/zsh/vendor-completions/_qvn usr/share/fish/vendor_completions.d/qvn.fish
fi

# What was not built is in no package.
if ls "$work/debs/python3-quorvane_"* >/dev/null 2>&1; then
  holds python3-quorvane usr/lib/python3/dist-packages/quorvane/__init__.py usr/lib/python3/dist-packages/quorvane/py.typed
  (cd "$work" && PYTHONPATH=$work/fresh/usr/lib/python3/dist-packages /usr/bin/python3 - "$work/fresh/usr" <<'PYTHON'
import sys
import numpy
import quorvane
assert quorvane.convert(numpy.zeros((4, 6), numpy.uint8), source="raw8").shape == (4, 6, 3)
assert sys.argv[1] in str(quorvane.build_info()), quorvane.build_info()
PYTHON
  ) || fail "the Python module of the package"
fi
if ls "$work/debs/gstreamer1.0-quorvane_"* >/dev/null 2>&1; then
  holds gstreamer1.0-quorvane "usr/lib/$triplet/gstreamer-1.0/libgstquorvane.so"
  if command -v gst-inspect-1.0 >/dev/null; then
    # Read whole: a program whose reader has gone fails.
    grep -q qvndemosaic \
      <<<"$(GST_REGISTRY=$work/registry gst-inspect-1.0 "$work/fresh/usr/lib/$triplet/gstreamer-1.0/libgstquorvane.so")" ||
      fail "the GStreamer elements of the package"
  fi
fi

# control PACKAGE: its control files, unpacked.
control() {
  rm -rf "$work/control"
  dpkg-deb -e "$work/debs/${1}_"*.deb "$work/control"
}
control libquorvane2
[[ $(head -1 "$work/control/symbols") == "libquorvane.so.2 libquorvane2 #MINVER#" ]] || fail "head of the symbols file"
nm -D --defined-only "$work/fresh/usr/lib/$triplet/libquorvane.so.2" | awk '{print $NF}' | sort >"$work/exports"
awk '/^ / {sub("@Base", "", $1); print $1}' "$work/control/symbols" | sort | diff - "$work/exports" ||
  fail "the symbols file and the exports differ"
grep -q "activate-noawait ldconfig" "$work/control/triggers" || fail "no trigger for the loader's cache"
grep -q '^Depends:.*libc6.*libstdc++6' "$work/control/control" || fail "dependencies of libquorvane2"
control libquorvane-dev
grep -q '^Depends: libquorvane2 (= 2.1.2.0-1)$' "$work/control/control" || fail "dependencies of libquorvane-dev"
if [[ -x $work/fresh/usr/bin/qvn ]]; then
  control quorvane-tools
  grep -q '^Depends:.*libquorvane2 (= 2.1.2.0-1)' "$work/control/control" || fail "dependencies of quorvane-tools"
fi
outside "$work/fresh/usr"
tool "$work/fresh/usr"
echo "packages: all as it should be"
