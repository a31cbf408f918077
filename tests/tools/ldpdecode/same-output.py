#!/usr/bin/env python3
"""Decodes two captures that carry the same packets on different links and fails
unless ldpdecode prints the same for both (the link layer changes nothing of
what the PDUs, messages and faults are).   same-output.py LDPDECODE A B [ARG...]"""
import subprocess
import sys

tool, first, second, args = sys.argv[1], sys.argv[2], sys.argv[3], sys.argv[4:]
outputs = [subprocess.run([tool, *args, path], capture_output=True, text=True) for path in (first, second)]
for path, run in zip((first, second), outputs):
    if run.returncode != 0:
        print(f"{path}: exit {run.returncode}\n{run.stderr}")
        sys.exit(1)
if outputs[0].stdout != outputs[1].stdout or not outputs[0].stdout:
    import difflib
    sys.stdout.writelines(difflib.unified_diff(outputs[0].stdout.splitlines(True), outputs[1].stdout.splitlines(True),
                                               first, second))
    sys.exit(1)
print(f"{len(outputs[0].stdout.splitlines())} lines alike")
