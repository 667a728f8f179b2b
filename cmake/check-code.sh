#!/usr/bin/env bash
# Checks the form of the code: check-code.sh BUILD_FOLDER, from the project's folder. Prints what falls short.
set -euo pipefail
build=$1

echo "clang-format"
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror

echo "clang-tidy"
git ls-files 'src/*.cpp' | xargs -P "$(nproc)" -n 1 clang-tidy --quiet -p "$build" 2>"$build/clang-tidy.log" ||
  { cat "$build/clang-tidy.log" >&2; exit 1; }

echo "qmllint"
ninja -C "$build" all_qmllint >"$build/qmllint.log" 2>&1 ||
  { cat "$build/qmllint.log" >&2; exit 1; }
if grep -q '^Warning' "$build/qmllint.log"; then
  cat "$build/qmllint.log" >&2
  exit 1
fi
