# The Debian 12 packages this project needs, sourced by the scripts beside it.
# shellcheck shell=bash disable=SC2034

# To build and run the program.
PACKAGES_RUN="
  ca-certificates
  cmake
  fonts-dejavu-core
  g++
  libcli11-dev
  libcurl4-openssl-dev
  libexiv2-dev
  libhwy-dev
  libmnl-dev
  libpcre2-dev
  libplist-dev
  libraw-dev
  librsvg2-bin
  libvips-dev
  ninja-build
  pkg-config
  qt6-base-dev
  qt6-l10n-tools
  qt6-translations-l10n
"

# To build and run the tests too: the test framework, and independent tools that make and judge
# the tests' files.
PACKAGES_TEST="
  exiv2
  imagemagick
  iproute2
  libbenchmark-dev
  libgmock-dev
  libgtest-dev
  libheif-examples
  libimage-exiftool-perl
  libtiff-tools
  libvips-tools
  openbox
  openssl
  python3
  x11-utils
  xdotool
  xvfb
"

# What guards main besides the tests.
PACKAGES_CI="
  clang-format
  clang-tidy
  cppcheck
  doxygen
  flatpak-builder
  e2fsprogs
  git
  procps
  shellcheck
  strace
"

# To run the fuzz targets.
PACKAGES_FUZZ="
  clang
  libclang-rt-14-dev
  libheif-examples
  llvm
"

# To make the package, and to judge it.
PACKAGES_PACKAGE="
  appstream
  desktop-file-utils
  dpkg-dev
  lintian
  python3
"
