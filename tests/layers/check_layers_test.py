#!/usr/bin/env python3
"""The layer check itself: it passes on a tree that keeps the layers, and names
the file and line of each include against them, in code and in schemas."""

import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import check_layers  # noqa: E402


def tree(files):
    root = tempfile.TemporaryDirectory()
    for path, text in files.items():
        full = os.path.join(root.name, path)
        os.makedirs(os.path.dirname(full), exist_ok=True)
        with open(full, "w") as f:
            f.write(text)
    return root


ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))

# The build's own layer table.
with open(os.path.join(ROOT, "ldp", "CMakeLists.txt"), encoding="utf-8") as f:
    LAYERS = f.read()

GOOD = {
    "ldp/CMakeLists.txt": LAYERS,
    "ldp/wire/A.h": '#include "ldp/trace/T.h"\n#include "zon/Ptr.h"\n',
    "ldp/parser/P.cpp": '#include "ldp/wire/A.h"\n',
    "ldp/common/C.zon": "namespace Ldp\ninclude ldp/wire/A.h\n",
    "ldp/config/K.zon": "namespace Ldp\nimport ldp/common/C.zon\n",
    "ldp/status/S.zon": "namespace Ldp\ninclude ldp/parser/P.h\nimport ldp/config/K.zon\n",
    "ldp/index/I.h": '#include "ldp/status/S.h"\n',
    "platform/zon/Z.h": '#include <string>\n',
    "ldp/parser/R.cpp": '#include "../wire/A.h"\n#include "R.h"\n',
}


class LayerCheck(unittest.TestCase):
    def test_a_tree_that_keeps_the_layers_passes(self):
        with tree(GOOD) as root:
            self.assertEqual(check_layers.violations(root), [])

    def test_each_include_against_the_layers_is_named(self):
        cases = [
            ("ldp/wire/B.h", '// x\n#include "ldp/parser/P.h"\n', "ldp/wire/B.h:2: ldp/wire uses ldp/parser"),
            ("ldp/parser/Q.cpp", '#include "ldp/config/K.h"\n', "ldp/parser/Q.cpp:1: ldp/parser uses ldp/config"),
            ("ldp/config/L.zon", "namespace Ldp\nimport ldp/status/S.zon\n", "ldp/config/L.zon:2: ldp/config uses ldp/status"),
            ("ldp/status/T.h", '#include "ldp/index/I.h"\n', "ldp/status/T.h:1: ldp/status uses ldp/index"),
            ("ldp/common/D.h", '#  include <ldp/config/K.h>\n', "ldp/common/D.h:1: ldp/common uses ldp/config"),
            ("platform/vorin/V.h", '#include "ldp/wire/A.h"\n', "platform/vorin/V.h:1: the platform includes ldp/wire"),
            ("ldp/parser/S.cpp", '#include "../config/LdpConfig.h"\n', "ldp/parser/S.cpp:1: ldp/parser uses ldp/config"),
            ("ldp/wire/C.h", '#include "./../parser/P.h"\n', "ldp/wire/C.h:1: ldp/wire uses ldp/parser"),
            ("platform/zon/Y.h", '#include "../../ldp/wire/A.h"\n', "platform/zon/Y.h:1: the platform includes ldp/wire"),
            ("ldp/wire/D.h", '#include "../../../outside/X.h"\n', "ldp/wire/D.h:1: ../../../outside/X.h leaves the tree"),
        ]
        for path, text, message in cases:
            with self.subTest(path), tree({**GOOD, path: text}) as root:
                found = check_layers.violations(root)
                self.assertEqual(len(found), 1, found)
                self.assertTrue(found[0].startswith(message), found[0])
                self.assertEqual(check_layers.main([root]), 1)

    def test_the_layers_are_those_of_the_build(self):
        # The same include is refused or allowed as the USES lists say.
        include = {"ldp/wire/E.h": '#include "ldp/common/K.h"\n'}
        with tree({**GOOD, **include}) as root:
            self.assertEqual(len(check_layers.violations(root)), 1)
        self.assertIn("ldp_layer(wire USES trace)", LAYERS)
        layers = LAYERS.replace("ldp_layer(wire USES trace)", "ldp_layer(wire USES common trace)")
        with tree({**GOOD, **include, "ldp/CMakeLists.txt": layers}) as root:
            self.assertEqual(check_layers.violations(root), [])

    def test_the_repository_build_names_every_layer(self):
        allowed = check_layers.allowed_layers(ROOT)
        self.assertEqual(set(allowed), {"trace", "wire", "parser", "common", "config", "status", "index"})
        self.assertEqual(allowed["parser"], {"wire", "trace"})


if __name__ == "__main__":
    unittest.main()
