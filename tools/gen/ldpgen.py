#!/usr/bin/env python3
"""Generates the C++ of model entities from their schemas.

    ldpgen.py --root <source root> --out <output dir> [--stamp <file>] <schema>...

Each schema path is relative to the source root (ldp/config/LdpConfig.zon) and
yields <output dir>/ldp/config/LdpConfig.h and LdpConfig.gen.cpp. A file is
written only when its content changed, so that an unchanged schema does not
make anything recompile; the stamp file, if given, is touched on every run so
that the build knows the run happened. Errors are printed as "file:line: message"
and end the run with status 1.
"""

import argparse
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from modelgen.emit import header, source  # noqa: E402
from modelgen.model import SchemaError  # noqa: E402
from modelgen.reader import Reader  # noqa: E402


def write_if_changed(path, text):
    try:
        with open(path, encoding="utf-8") as f:
            if f.read() == text:
                return False
    except OSError:
        pass
    os.makedirs(os.path.dirname(path), exist_ok=True)
    tmp = path + ".tmp"
    with open(tmp, "w", encoding="utf-8") as f:
        f.write(text)
    os.replace(tmp, path)
    return True


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--root", required=True, help="source root that schema paths are relative to")
    parser.add_argument("--out", required=True, help="directory of the generated files")
    parser.add_argument("--stamp", help="file touched after a successful run")
    parser.add_argument("schemas", nargs="+")
    args = parser.parse_args(argv)

    reader = Reader(args.root)
    try:
        outputs = []
        for path in args.schemas:
            schema = reader.read(path.replace(os.sep, "/"))
            outputs.append((os.path.join(args.out, schema.header()), header(schema)))
            outputs.append((os.path.join(args.out, schema.source()), source(schema)))
    except SchemaError as e:
        print(e, file=sys.stderr)
        return 1
    for path, text in outputs:
        write_if_changed(path, text)
    if args.stamp:
        os.makedirs(os.path.dirname(os.path.abspath(args.stamp)), exist_ok=True)
        with open(args.stamp, "w", encoding="utf-8") as f:
            f.write("")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
