# Sourced by ./run, ./test and .ci/run: installs what is missing, configures and builds.
# shellcheck shell=bash

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

BUILD_PACKAGES=(g++ cmake ninja-build ccache pkg-config libsqlite3-dev libasio-dev libicu-dev nlohmann-json3-dev
  libglib2.0-dev qt6-base-dev qt6-base-private-dev qt6-svg-dev libcli11-dev libxcb1-dev libxcb-shape0-dev libxcb-xfixes0-dev
  libxcb-xkb-dev libxkbcommon-dev libwayland-dev wayland-protocols shared-mime-info librsvg2-bin
  libgtest-dev libgmock-dev libatspi2.0-dev libxcb-xtest0-dev x11proto-dev)
RUN_PACKAGES=(qt6-qpa-plugins fonts-noto-cjk adwaita-icon-theme libqt6svg6 qt6-translations-l10n shared-mime-info)
TEST_PACKAGES=(dbus dbus-daemon libglib2.0-bin at-spi2-core xvfb x11-xkb-utils openbox desktop-file-utils appstream man-db zsh fish)
LINT_PACKAGES=(clang-format-19 clang-tidy-19)

# install_packages <why> <package>…: installs those that are not there, saying so first.
install_packages() {
  local why=$1 package missing=()
  shift
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  echo "Installing ${missing[*]} ($why)." >&2
  local apt=(env DEBIAN_FRONTEND=noninteractive apt-get)
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
      echo "Not root, and no sudo: please install these packages, then try again." >&2
      exit 1
    }
    apt=(sudo "${apt[@]}")
  fi
  if ! "${apt[@]}" install -qq -y --no-install-recommends "${missing[@]}" >/dev/null; then
    "${apt[@]}" update -qq
    "${apt[@]}" install -qq -y --no-install-recommends "${missing[@]}" >/dev/null
  fi
}

# build <preset> [target…]: configures once, then builds what changed; quiet unless something fails.
build() {
  local preset=$1
  shift
  install_packages "to build Zelnor" "${BUILD_PACKAGES[@]}"
  # Checkouts in other folders share the compiler's cache.
  export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
  [ -f "build/$preset/build.ninja" ] || quietly cmake --preset "$preset"
  quietly cmake --build --preset "$preset" ${1:+--target "$@"}
}

quietly() {
  local log
  log=$(mktemp)
  if ! "$@" >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
