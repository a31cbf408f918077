#!/usr/bin/env python3
"""Reviewed snapshots of the code generated from the schemas of tests/gen.

    golden.py            compare: fail with a unified diff when the generator's
                         output differs from the snapshots in tests/gen/golden
    golden.py --refresh  rewrite the snapshots from the generator's output

Every change to the generator then shows up in review as a diff of these files.
scripts/refresh-gen-golden runs the refresh.
"""

import difflib
import glob
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.normpath(os.path.join(HERE, "..", ".."))
GOLDEN = os.path.join(HERE, "golden")
sys.path.insert(0, os.path.join(ROOT, "tools", "gen"))

from modelgen.emit import header, source  # noqa: E402
from modelgen.reader import Reader  # noqa: E402


def generated():
    """{snapshot file name: generated text} for every schema of tests/gen."""
    reader = Reader(ROOT)
    out = {}
    for path in sorted(glob.glob(os.path.join(HERE, "*.zon"))):
        schema = reader.read(os.path.relpath(path, ROOT).replace(os.sep, "/"))
        stem = os.path.basename(schema.stem())
        # Named .golden so that no tool takes the snapshots for sources of the project.
        out[stem + ".h.golden"] = header(schema)
        out[stem + ".gen.cpp.golden"] = source(schema)
    return out


def main(argv):
    texts = generated()
    if "--refresh" in argv:
        os.makedirs(GOLDEN, exist_ok=True)
        for old in glob.glob(os.path.join(GOLDEN, "*")):
            if os.path.basename(old) not in texts:
                os.remove(old)
        for name, text in texts.items():
            with open(os.path.join(GOLDEN, name), "w", encoding="utf-8") as f:
                f.write(text)
        print(f"refreshed {len(texts)} snapshots in {os.path.relpath(GOLDEN, ROOT)}")
        return 0
    failed = False
    kept = {os.path.basename(p) for p in glob.glob(os.path.join(GOLDEN, "*"))}
    for name in sorted(kept - texts.keys()):
        print(f"{name}: a snapshot without a schema")
        failed = True
    for name, text in texts.items():
        path = os.path.join(GOLDEN, name)
        try:
            with open(path, encoding="utf-8") as f:
                want = f.read()
        except OSError:
            print(f"{name}: no snapshot")
            failed = True
            continue
        if want != text:
            failed = True
            sys.stdout.writelines(difflib.unified_diff(
                want.splitlines(True), text.splitlines(True), f"golden/{name}", f"generated/{name}"))
    if failed:
        print("\nThe generator's output changed. Review the diff; if it is intended, run "
              "scripts/refresh-gen-golden and commit the snapshots with the change.")
        return 1
    print(f"{len(texts)} snapshots match")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
