#!/usr/bin/env python3
"""Validates every line that ldpdecode --json prints against its JSON Schema.

    validate-json.py --exe LDPDECODE --schema SCHEMA [--hex] [--needs DIR] PATH...

Each PATH is a capture (or, with --hex, a hex file) or a folder whose captures
(*.pcap, *.pcapng; *.hex with --hex) are all taken. Every input is decoded
three times, with --json, --json-text and --json --summary, and each line is checked on its
own with the draft 2020-12 validator of python3-jsonschema. A failing line is
printed with the validator's messages. The validator must be importable: its
absence is a failure, not a skip. Exit status 77 (skipped) only when a --needs
folder is missing.
"""
import argparse
import glob
import json
import os
import subprocess
import sys

SKIP = 77


def inputs(paths, hex_input):
    patterns = ["*.hex"] if hex_input else ["*.pcap", "*.pcapng"]
    for path in paths:
        if os.path.isdir(path):
            found = sorted(f for pat in patterns for f in glob.glob(os.path.join(path, pat)))
            if not found:
                raise SystemExit(f"FAILED: no input in {path}")
            yield from found
        else:
            yield path


def main():
    p = argparse.ArgumentParser()
    p.add_argument("--exe", required=True)
    p.add_argument("--schema", required=True)
    p.add_argument("--hex", action="store_true")
    p.add_argument("--needs", action="append", default=[])
    p.add_argument("paths", nargs="+")
    a = p.parse_args()

    for need in a.needs:
        if not os.path.exists(need):
            print(f"SKIPPED: {need} is not there (the shared captures sit beside the checkout in ../shared)")
            return SKIP
    try:
        from jsonschema import Draft202012Validator
    except ImportError as e:
        print(f"FAILED: {sys.executable} cannot import jsonschema ({e}); install python3-jsonschema")
        return 1

    with open(a.schema, encoding="utf-8") as f:
        schema = json.load(f)
    Draft202012Validator.check_schema(schema)  # a broken schema fails here, not silently
    validator = Draft202012Validator(schema)

    failures = 0
    total = 0
    for path in inputs(a.paths, a.hex):
        for mode in (["--json"], ["--json-text"], ["--json", "--summary"]):
            args = [a.exe] + mode + (["--hex"] if a.hex else []) + [path]
            run = subprocess.run(args, capture_output=True, timeout=120)
            # 0 and 1 (faults found) decode the input; 2 refuses it, after the
            # lines printed so far. Anything else is a crash.
            if run.returncode not in (0, 1, 2):
                print(f"FAILED: {' '.join(args)} exited with {run.returncode}: {run.stderr.decode(errors='replace')}")
                failures += 1
                continue
            lines = run.stdout.decode("utf-8").splitlines()
            kinds = {}
            for number, line in enumerate(lines, 1):
                total += 1
                try:
                    value = json.loads(line)
                except json.JSONDecodeError as e:
                    print(f"FAILED: {path} {' '.join(mode)} line {number} is not JSON ({e}):\n  {line}")
                    failures += 1
                    continue
                errors = sorted(validator.iter_errors(value), key=lambda e: list(e.absolute_path))
                if errors:
                    failures += 1
                    print(f"FAILED: {path} {' '.join(mode)} line {number}:\n  {line}")
                    for e in errors:
                        where = "/".join(str(x) for x in e.absolute_path) or "(the line)"
                        print(f"  at {where}: {e.message}")
                kinds[value.get("type")] = kinds.get(value.get("type"), 0) + 1
            shown = ", ".join(f"{n} {k}" for k, n in sorted(kinds.items(), key=lambda kv: str(kv[0])))
            print(f"{os.path.basename(path)} {' '.join(mode)}: {shown}")
    print(f"{total} lines, {failures} failures")
    if total == 0:
        print("FAILED: no line to validate")
        return 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
