# Sourced by the scripts beside it: installs Debian packages, only those that are missing.
#   install_packages NAME...

install_packages() {
  local missing=() name runner=()
  for name in "$@"; do
    [[ $(dpkg-query -W -f '${Status}' "$name" 2>/dev/null) == 'install ok installed' ]] || missing+=("$name")
  done
  [[ ${#missing[@]} -eq 0 ]] && return
  if ! command -v apt-get >/dev/null; then
    echo "This script installs packages with apt-get, which this system lacks; install by hand: ${missing[*]}" >&2
    return 1
  fi
  if [[ $(id -u) -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
      echo "These packages are missing and installing them needs root or sudo: ${missing[*]}" >&2
      return 1
    fi
    runner=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  local apt=("${runner[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=900 -qq)
  "${apt[@]}" install -y --no-install-recommends "${missing[@]}" >/dev/null 2>&1 && return
  # A fresh machine has no package lists, or old ones.
  "${apt[@]}" update
  "${apt[@]}" install -y --no-install-recommends "${missing[@]}" >/dev/null
}

build_packages=(g++ cmake ninja-build libcli11-dev libpng-dev libtiff-dev)
test_packages=(libgtest-dev nlohmann-json3-dev valgrind binutils python3 zsh fish)
# The Python module, the GStreamer elements, the examples with Dask and Aravis, and their tests; all of it is left out
# where these are missing. Aravis' pkg-config file wants libusb.
binding_packages=(pybind11-dev python3-dev python3-numpy python3-pytest mypy python3-dask python3-distributed
  python3-psutil pkg-config libgstreamer-plugins-base1.0-dev gstreamer1.0-tools gstreamer1.0-plugins-base
  gstreamer1.0-plugins-good gstreamer1.0-plugins-bad libaravis-dev libusb-1.0-0-dev aravis-tools)
