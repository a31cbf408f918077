#!/usr/bin/env bash
# Rewrites the golden files of ldpdecode from the current build, then shows what
# changed. Review every changed file before committing it: a valid message that
# now reads as invalid needs an explanation, not a new golden file.
#   tests/tools/ldpdecode/update-golden.sh [BUILD_DIR]   (default build/default)
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../../.." && pwd)"
build="${1:-$root/build/default}"
cmake --build "$build" --target ldpdecode ldpdecode-samples
LDPDECODE_UPDATE_GOLDEN=1 ctest --test-dir "$build" -R '^ldpdecode\.(testdata|golden\.)' --output-on-failure | grep -v '^ *[0-9]*/[0-9]* Test' || true
git -C "$root" status --short -- "$here/golden"
