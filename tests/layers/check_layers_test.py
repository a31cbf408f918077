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


GOOD = {
    "ldp/wire/A.h": '#include "ldp/trace/T.h"\n#include "zon/Ptr.h"\n',
    "ldp/parser/P.cpp": '#include "ldp/wire/A.h"\n',
    "ldp/common/C.zon": "namespace Ldp\ninclude ldp/wire/A.h\n",
    "ldp/config/K.zon": "namespace Ldp\nimport ldp/common/C.zon\n",
    "ldp/status/S.zon": "namespace Ldp\ninclude ldp/parser/P.h\nimport ldp/config/K.zon\n",
    "ldp/index/I.h": '#include "ldp/status/S.h"\n',
    "platform/zon/Z.h": '#include <string>\n',
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
        ]
        for path, text, message in cases:
            with self.subTest(path), tree({**GOOD, path: text}) as root:
                found = check_layers.violations(root)
                self.assertEqual(len(found), 1, found)
                self.assertTrue(found[0].startswith(message), found[0])
                self.assertEqual(check_layers.main([root]), 1)


if __name__ == "__main__":
    unittest.main()
