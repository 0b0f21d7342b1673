#!/usr/bin/env bash
# cppcheck.sh: cppcheck, as errors, on all of src. What it says in vain is suppressed here with its
# reason, or in the code where it says it once.
set -euo pipefail

cd "$(dirname "$0")/.."
options=(
  "--enable=warning,performance,portability" --inline-suppr --std=c++20 --language=c++ --library=qt
  --error-exitcode=1 --quiet -j "$(nproc)" -I src
  # What the build defines; without them the files that use them are not looked at.
  "-DVELMARA_VERSION=\"\"" "-DVELMARA_VIPS_LIBRARY=\"\"" "-DVELMARA_RAW_LIBRARY=\"\""
  "-DVELMARA_CURL_LIBRARY=\"\""
  # Headers of libraries are not there to be judged.
  --suppress=missingIncludeSystem
  # Takes pointers of types it does not know for numbers.
  --suppress=CastIntegerToAddressAtReturn
)
cppcheck "${options[@]}" src
