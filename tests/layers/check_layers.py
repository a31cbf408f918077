#!/usr/bin/env python3
"""The layers of libLdp point one way. Each folder of ldp/ may include (and its
schemas import) only itself and the folders that its USES list in
ldp/CMakeLists.txt names; the platform stand-in includes nothing of ldp/.
Relative includes are resolved, and one that leaves the tree is refused. Prints every include against the arrows as
file:line and exits 1 when there is one.

    check_layers.py [ROOT]        the tree at ROOT (default: the repository)
"""

import os
import re
import sys

# What each folder of ldp/ may use besides itself comes from the USES lists of
# the ldp_layer() calls in ldp/CMakeLists.txt, the same lists that the object
# libraries link by: `ldp_layer(parser USES wire trace)`.
LAYER_CALL = re.compile(r"^\s*ldp_layer\(\s*([A-Za-z_]+)([^)]*)\)", re.M)

# An include or an import and the path it names; a path that starts with ldp/
# names a layer directly, one with ".." is resolved against the including file's
# folder first.
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]')
SCHEMA = re.compile(r'^\s*(?:include|import)\s+"?([^"\s]+)"?')


def allowed_layers(root):
    """{layer: set of layers it may use}, read from ldp/CMakeLists.txt."""
    with open(os.path.join(root, "ldp", "CMakeLists.txt"), encoding="utf-8") as f:
        text = f.read()
    allowed = {}
    for name, rest in LAYER_CALL.findall(text):
        words = rest.split()
        allowed[name] = set(words[words.index("USES") + 1:]) if "USES" in words else set()
    return allowed


def named_path(rel, path):
    """The path an include names, relative to the tree's root; None when it names
    nothing of the tree that the layers govern, ".." when it leaves the tree."""
    if path.startswith("ldp/"):
        return path
    if ".." not in path.split("/"):
        return None
    resolved = os.path.normpath(os.path.join(os.path.dirname(rel), path)).replace(os.sep, "/")
    return ".." if resolved == ".." or resolved.startswith("../") else resolved


def violations(root):
    allowed = allowed_layers(root)
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
                        target = named_path(rel, m.group(1))
                        if target is None:
                            continue
                        where = f"{rel}:{number}"
                        if target == "..":
                            out.append(f"{where}: {m.group(1)} leaves the tree")
                            continue
                        tparts = target.split("/")
                        if tparts[0] != "ldp" or len(tparts) < 3:
                            continue
                        used = tparts[1]
                        if top == "platform":
                            out.append(f"{where}: the platform includes ldp/{used}")
                        elif layer is not None and used != layer and used not in allowed.get(layer, set()):
                            out.append(f"{where}: ldp/{layer} uses ldp/{used}, against the layers")
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
