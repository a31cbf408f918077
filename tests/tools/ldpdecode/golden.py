#!/usr/bin/env python3
"""Runs ldpdecode once and compares what it prints with a golden file.

The golden file holds standard output, then standard error and the exit
status, with the paths of the input folders replaced by $NAME, so that the file
reads the same on every machine:

    <standard output>
    --- stderr
    <standard error>
    --- exit status N

With LDPDECODE_UPDATE_GOLDEN=1 in the environment the golden file is written
instead (review every change before committing it). Exit status 77 tells ctest
that the test was skipped because an input it needs is missing.
"""
import argparse
import difflib
import os
import subprocess
import sys

SKIP = 77


def main():
    p = argparse.ArgumentParser()
    p.add_argument("--exe", required=True)
    p.add_argument("--golden", required=True)
    p.add_argument("--needs", action="append", default=[], help="skip unless this path exists")
    p.add_argument("--stdin", help="file to feed on standard input")
    p.add_argument("--stdout", help="file to write standard output to instead of the golden file")
    p.add_argument("--subst", action="append", default=[], help="NAME=PATH shown as $NAME")
    p.add_argument("--timeout", type=float, default=60)
    p.add_argument("args", nargs=argparse.REMAINDER)
    a = p.parse_args()
    args = a.args[1:] if a.args[:1] == ["--"] else a.args

    for need in a.needs:
        if not os.path.exists(need):
            print(f"SKIPPED: {need} is not there (the shared captures sit beside the checkout in ../shared)")
            return SKIP

    stdin = open(a.stdin, "rb") if a.stdin else subprocess.DEVNULL
    try:
        stdout = open(a.stdout, "wb") if a.stdout else subprocess.PIPE
        run = subprocess.run([a.exe] + args, stdin=stdin, stdout=stdout, stderr=subprocess.PIPE, timeout=a.timeout)
    except subprocess.TimeoutExpired:
        print(f"FAILED: no answer within {a.timeout} s: {' '.join(args)}")
        return 1
    text = run.stdout.decode("utf-8", "backslashreplace") if run.stdout is not None else ""
    text += "--- stderr\n" + run.stderr.decode("utf-8", "backslashreplace")
    text += f"--- exit status {run.returncode}\n"
    # Longest paths first, so that a folder inside another is named by its own name.
    substs = sorted((s.split("=", 1) for s in a.subst), key=lambda kv: -len(kv[1]))
    for name, path in substs:
        text = text.replace(os.path.normpath(path), "$" + name)

    if os.environ.get("LDPDECODE_UPDATE_GOLDEN") == "1":
        old = open(a.golden, encoding="utf-8").read() if os.path.exists(a.golden) else None
        if old != text:
            with open(a.golden, "w", encoding="utf-8") as f:
                f.write(text)
            print(f"updated {a.golden}")
        return 0

    if not os.path.exists(a.golden):
        print(f"FAILED: no golden file {a.golden}; make it with LDPDECODE_UPDATE_GOLDEN=1")
        return 1
    want = open(a.golden, encoding="utf-8").read()
    if want == text:
        return 0
    print(f"FAILED: output of ldpdecode {' '.join(args)} differs from {a.golden}:")
    sys.stdout.writelines(difflib.unified_diff(want.splitlines(True), text.splitlines(True), "golden", "now"))
    return 1


if __name__ == "__main__":
    sys.exit(main())
