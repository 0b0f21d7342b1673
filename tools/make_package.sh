#!/bin/sh
# make_package.sh [FOLDER]: builds the Debian package, puts it into a folder (build/package unless
# said) and prints its path. The same source gives the same bytes. Beside it lies its bill of materials
# (CycloneDX), which is in the package too.
set -eu

root=$(cd "$(dirname "$0")/.." && pwd)
build=$root/build/package
folder=${1:-$build}

"$root/tools/install_packages.sh" run package
# The date of the files in the package: that of the last change.
SOURCE_DATE_EPOCH=$(git -C "$root" log -1 --format=%ct 2>/dev/null || date -r "$root/CHANGELOG.md" +%s)
export SOURCE_DATE_EPOCH
export QT_RCC_SOURCE_DATE_OVERRIDE="$SOURCE_DATE_EPOCH"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF \
  -DCMAKE_INSTALL_PREFIX=/usr -DVELMARA_SOURCE_RESOURCES=OFF \
  -DCMAKE_CXX_FLAGS="-ffile-prefix-map=$root=. -Wformat -Werror=format-security" >&2
cmake --build "$build" --target velmara package_files >&2
(cd "$build" && rm -f ./*.deb && cpack -G DEB >&2)
mkdir -p "$folder"
for package in "$build"/*.deb; do
  [ "$folder" = "$build" ] || cp "$package" "$folder"
  cp "$build/documents/velmara.cdx.json" "$folder/$(basename "$package" .deb).cdx.json"
  echo "$folder/$(basename "$package")"
done
