#!/usr/bin/env python3
"""The layers of libLdp point one way. Each folder of ldp/ may include (and its
schemas import) only itself and the folders below it; the platform stand-in
includes nothing of ldp/. Prints every include against the arrows as
file:line and exits 1 when there is one.

    check_layers.py [ROOT]        the tree at ROOT (default: the repository)
"""

import os
import re
import sys

# What each folder of ldp/ may use besides itself. trace (libLdp's trace
# sources) depends on nothing of ldp/, and every layer may trace.
ALLOWED = {
    "trace": set(),
    "wire": {"trace"},
    "parser": {"wire", "trace"},
    "common": {"wire", "trace"},
    "config": {"common", "wire", "trace"},
    "status": {"parser", "config", "common", "wire", "trace"},
    "index": {"status", "parser", "config", "common", "wire", "trace"},
}

INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]ldp/([A-Za-z_]+)/')
SCHEMA = re.compile(r'^\s*(?:include|import)\s+"?ldp/([A-Za-z_]+)/')


def violations(root):
    out = []
    for top in ("ldp", "platform"):
        for folder, _, files in os.walk(os.path.join(root, top)):
            for name in sorted(files):
                path = os.path.join(folder, name)
                rel = os.path.relpath(path, root).replace(os.sep, "/")
                if name.endswith((".h", ".cpp")):
                    pattern = INCLUDE
                elif name.endswith(".zon"):
                    pattern = SCHEMA
                else:
                    continue
                parts = rel.split("/")
                layer = parts[1] if top == "ldp" and len(parts) > 2 else None
                with open(path, encoding="utf-8", errors="replace") as f:
                    for number, line in enumerate(f, start=1):
                        m = pattern.match(line)
                        if not m:
                            continue
                        used = m.group(1)
                        if top == "platform":
                            out.append(f"{rel}:{number}: the platform includes ldp/{used}")
                        elif layer is not None and used != layer and used not in ALLOWED.get(layer, set()):
                            out.append(f"{rel}:{number}: ldp/{layer} uses ldp/{used}, against the layers")
    return out


def main(argv):
    root = argv[0] if argv else os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
    found = violations(root)
    for v in found:
        print(v)
    if found:
        return 1
    print("no include against the layers")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
