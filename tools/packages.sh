#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Sourced by run and test: says what is done, and sees to it that the packages of Debian are there. Run by
# itself it sees to all of them, also to what only lint, pictures, the fuzzer and bench/ need.
# shellcheck disable=SC2034 # the lists are for those who source this

build_packages=(
  g++ cmake ninja-build pkg-config ccache qt6-base-dev qt6-declarative-dev qt6-svg-dev libgl-dev
  libfmt-dev libc-ares-dev libpcre2-dev nlohmann-json3-dev libpugixml-dev libqcustomplot-dev
  libqscintilla2-qt6-dev libxlsxwriter-dev
)
test_packages=(
  libgtest-dev libbenchmark-dev python3-jsonschema
  dpkg-dev file lintian desktop-file-utils appstream man-db xvfb xdotool
)
lint_packages=(git clang-format clang-tidy shellcheck pyflakes3 libgtest-dev libbenchmark-dev)
picture_packages=(openbox imagemagick)
fuzz_packages=(clang libclang-rt-dev)
bench_packages=(libx11-6 libxtst6 netcat-openbsd)

say() { printf '\n== %s\n' "$*"; }

# missing_packages PACKAGE...: prints those that are not installed.
missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || echo "$package"
  done
}

# need_packages PACKAGE...: installs what is missing as root; tells anybody else the one command.
need_packages() {
  local missing
  if ! command -v dpkg-query >/dev/null; then
    say "This is no Debian system: $* must be there already; going on without looking"
    return
  fi
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -eq 0 ] && return
  if [ "$(id -u)" -ne 0 ]; then
    say "Some packages are missing. Please run this once, then try again:"
    echo "   sudo apt-get install --no-install-recommends ${missing[*]}"
    exit 1
  fi
  say "Installing ${missing[*]}"
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET TARGET...: configures and builds, quietly unless something goes wrong.
build() {
  local preset=$1
  shift
  say "Building ($preset); the first time takes some minutes"
  cmake --preset "$preset" >"build-$preset.log" 2>&1 || { cat "build-$preset.log"; exit 1; }
  cmake --build --preset "$preset" --target "$@"
  rm -f "build-$preset.log"
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
  need_packages "${build_packages[@]}" "${test_packages[@]}" "${lint_packages[@]}" \
    "${picture_packages[@]}" "${fuzz_packages[@]}" "${bench_packages[@]}"
fi
