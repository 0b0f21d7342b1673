#!/usr/bin/env bash
# tidy_changed.sh BUILD: clang-tidy, as errors, on the sources changed since VELMARA_TIDY_BASE (by
# default the last two commits; everything where history is shorter).
set -euo pipefail

cd "$(dirname "$0")/.."
build=$1
base=${VELMARA_TIDY_BASE:-HEAD~2}

if git rev-parse --quiet --verify "$base^{commit}" >/dev/null; then
  mapfile -t changed < <(git diff --name-only --diff-filter=AMR "$base" -- 'src/*.cpp' 'tests/*.cpp')
else
  mapfile -t changed < <(git ls-files 'src/*.cpp' 'tests/*.cpp')
fi
# Only what this build compiles: clang-tidy knows the flags of nothing else.
known=()
for file in "${changed[@]}"; do
  grep -qF "$PWD/$file\"" "$build/compile_commands.json" && known+=("$file")
done
echo "${#known[@]} files"
[ "${#known[@]}" -gt 0 ] || exit 0
printf '%s\0' "${known[@]}" | xargs -0 -n 4 -P "$(nproc)" \
  clang-tidy -p "$build" --header-filter="^$PWD/(src|tests|bench)/" --quiet
