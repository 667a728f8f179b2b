#!/usr/bin/env bash
# Runs the tests of a tree: run-tests.sh BUILD_FOLDER [CTEST_OPTION...]. Where one fails it prints what failed, without
# the pages of output that a passed test of the same program leaves.
set -euo pipefail
build=$1
shift
log=$build/Testing/Temporary/LastTest.log

status=0
ctest --test-dir "$build" "$@" || status=$?
[ "$status" -eq 0 ] && exit 0

echo "What failed ($log has all that was printed):"
grep -aE -B 2 -A 15 ': Failure$|^Traceback|runtime error: |ERROR: (Address|Leak)Sanitizer|WARNING: ThreadSanitizer' "$log" || tail -n 200 "$log"
exit "$status"
