#!/usr/bin/env python3
"""Runs the sample writer into a fresh folder and fails unless it writes every
committed sample byte for byte: the samples in the tree are what the writer
makes now.   same-files.py WRITER SAMPLES_DIR"""
import os
import subprocess
import sys
import tempfile

writer, committed = sys.argv[1], sys.argv[2]
with tempfile.TemporaryDirectory() as made:
    subprocess.run([writer, "samples", made], check=True)
    bad = 0
    for name in sorted(os.listdir(made)):
        path = os.path.join(committed, name)
        new = open(os.path.join(made, name), "rb").read()
        old = open(path, "rb").read() if os.path.exists(path) else None
        if new != old:
            print(f"{path} is not what the sample writer makes now; run: ldpdecode-samples samples {committed}")
            bad = 1
sys.exit(bad)
