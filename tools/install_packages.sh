#!/bin/sh
# install_packages.sh GROUP...: installs what is missing of the package groups run, test, ci,
# fuzz and package.
set -eu

. "$(dirname "$0")/packages.sh"

wanted=""
for group in "$@"; do
  case $group in
    run) wanted="$wanted $PACKAGES_RUN" ;;
    test) wanted="$wanted $PACKAGES_TEST" ;;
    ci) wanted="$wanted $PACKAGES_CI" ;;
    fuzz) wanted="$wanted $PACKAGES_FUZZ" ;;
    package) wanted="$wanted $PACKAGES_PACKAGE" ;;
    *) echo "install_packages.sh: no such group: $group" >&2; exit 2 ;;
  esac
done

missing=""
for package in $wanted; do
  state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$state" = installed ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "These packages are missing, and installing them needs root or sudo:$missing" >&2
    exit 1
  fi
}

echo "Installing:$missing" >&2
as_root apt-get update -qq >&2
# shellcheck disable=SC2086 # a list of names
as_root env DEBIAN_FRONTEND=noninteractive \
  apt-get install -qq -y --no-install-recommends $missing >&2
