#!/usr/bin/env python3
"""The model generator's error messages, pinned by a table of bad schemas, and
its promise to rewrite a file only when the file's content changes.

Run: python3 -B tests/gen/ldpgen_test.py
"""

import contextlib
import io
import os
import sys
import tempfile
import textwrap
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "tools", "gen"))

import ldpgen  # noqa: E402

# A schema that other schemas of the table import.
LIB = """\
namespace T
enum Mode u8
   up 1
   down 2
entity Named
   scalar n u32
entity Keyed
   param id u32 key
   param other u16
"""

# (what is wrong, schema text, the error: line and message). The schema is
# bad.zon beside lib.zon; the error must read "bad.zon:<line>: <message>".
BAD = [
    ("no namespace", "entity E\n", 1, "the schema declares no namespace"),
    ("two namespaces", "namespace T\nnamespace U\n", 2, "a second namespace"),
    ("unknown declaration", "namespace T\nentiy E\n", 2, "unknown declaration 'entiy' (member lines are indented)"),
    ("member outside a block", "namespace T\n   scalar x u8\n", 2,
     "indented member line outside an enum, value or entity"),
    ("unknown attribute kind", "namespace T\nentity E\n   scalr x u8\n", 3,
     "unknown attribute kind 'scalr' (known: param, scalar, counter, map, set, counters, coll, child, "
     "queue, refs, const, method, enum)"),
    ("map without value type", "namespace T\nentity E\n   map m u32\n", 3,
     "usage: map <name> <key type> <value type> [ordered]"),
    ("unknown option", "namespace T\nentity E\n   map m u32 u8 sorted\n", 3,
     "unknown option 'sorted' for map (known: ordered)"),
    ("default on a collection", "namespace T\nentity E\n   set s u32 = 1\n", 3, "set takes no default"),
    ("constant without value", "namespace T\nentity E\n   const c u8\n", 3,
     "const c needs a value: const <name> <type> [getter] = <value>"),
    ("bad name", "namespace T\nentity E\n   scalar 2x u8\n", 3, "'2x' is not a valid name"),
    ("bad type", "namespace T\nentity E\n   scalar x u8-bit\n", 3, "'u8-bit' is not a valid type"),
    ("reserved name", "namespace T\nentity E\n   scalar parent u8\n", 3, "'parent' is reserved by the runtime"),
    ("duplicate attribute", "namespace T\nentity E\n   scalar x u8\n   set x u8\n", 4,
     "duplicate attribute 'x' (first at line 3)"),
    ("generated names clash", "namespace T\nentity E\n   scalar x u8\n   scalar xIs u8\n", 4,
     "scalar xIs needs the name xIs, which x (line 3) already uses"),
    ("signed counter", "namespace T\nentity E\n   counter c i32\n", 3,
     "counter c must count in an unsigned integer type, not std::int32_t"),
    ("signed keyed counter", "namespace T\nentity E\n   counters c u8 double\n", 3,
     "counters c must count in an unsigned integer type, not double"),
    ("unknown enumerator default", "namespace T\nimport lib.zon\nentity E\n   scalar m Mode = sideways\n", 4,
     "'sideways' is not an enumerator of Mode"),
    ("enumerator value", "namespace T\nenum F u8\n   a one\n", 3, "enumerator value 'one' is not a number"),
    ("duplicate enumerator", "namespace T\nenum F u8\n   a 1\n   a 2\n", 4, "duplicate enumerator 'a' in enum F"),
    ("enum of a non-integer", "namespace T\nenum F double\n   a 1\n", 2, "enum F needs an integer type, not double"),
    ("empty enum", "namespace T\nenum F u8\n", 2, "enum F has no enumerators"),
    ("enum in a nested namespace", "namespace T::U\nenum F u8\n   a 1\n", 2,
     "enumerations need a namespace of one name, not T::U"),
    ("duplicate declaration", "namespace T\nentity E\nentity E\n", 3, "duplicate declaration 'E' (first at line 2)"),
    ("collection of an unknown entity", "namespace T\nentity E\n   coll c u32 Nowhere\n", 3,
     "unknown entity type 'Nowhere' (declare it or import its schema)"),
    ("collection of an unkeyed entity", "namespace T\nimport lib.zon\nentity E\n   coll c u32 Named\n", 4,
     "coll c needs an entity with a key parameter; Named has none"),
    ("collection keyed by another type", "namespace T\nimport lib.zon\nentity E\n   coll c u16 Keyed\n", 4,
     "coll c is keyed by std::uint16_t but the key id of Keyed is std::uint32_t"),
    ("child of a keyed entity", "namespace T\nimport lib.zon\nentity E\n   child k Keyed\n", 4,
     "child k needs an entity made with a name; Keyed is keyed"),
    ("child compared by name alone without parameters",
     "namespace T\nimport lib.zon\nentity E\n   child n Named byname\n", 4,
     "child n is made with a name alone, so byname has nothing else to leave uncompared"),
    ("base with parameters", "namespace T\nimport lib.zon\nentity E : Keyed\n", 3,
     "base Keyed must be made by name alone; it has parameters"),
    ("base-held key", "namespace T\nentity E : Named\n   param k u8 key base\n", 3,
     "param k is the key and so cannot be held by the base"),
    ("base-held parameter without a base", "namespace T\nentity E\n   param p u8 base\n", 3,
     "param p is held by the base, but entity E has none"),
    ("base-held parameter passed nowhere", "namespace T\nimport lib.zon\nentity E : Named(name)\n   param p u8 base\n",
     4, "param p is held by the base, but neither the base's arguments nor a hand-written constructor "
        "(method constructor) pass it on"),
    ("hand-written factory without a factory", "namespace T\nentity E\n   method factory\n", 3,
     "method factory needs 'factory <function>' on the line of entity E"),
    ("two keys", "namespace T\nentity E\n   param a u8 key\n   param b u8 key\n", 4,
     "second key parameter 'b' (the key is 'a')"),
    ("parameter called name", "namespace T\nentity E\n   param name u32 key\n", 3,
     "a parameter called name must be the first and of type Zon::Name"),
    ("name after another parameter", "namespace T\nentity E\n   param id u32 key\n   param name Zon::Name\n", 4,
     "a parameter called name must be the first and of type Zon::Name"),
    ("entities in a cycle", "namespace T\nentity A\n   child b B\nentity B\n   child a A\n", 2,
     "entities hold each other in a cycle: A -> B -> A"),
    ("bit beyond the field", "namespace T\nvalue V\n   field f u8\n   bit b 8\n", 4,
     "bit 8 is outside the 8 bits of field 'f'"),
    ("bit of a missing field", "namespace T\nvalue V\n   field f u8\n   bit b 1 g\n", 4,
     "bit b names no field 'g' of V"),
    ("bit of a string", "namespace T\nvalue V\n   field f string\n   bit b 1\n", 4,
     "bit b needs an unsigned integer field; f is Zon::String"),
    ("value without fields", "namespace T\nvalue V\n", 2, "value V has no fields"),
    ("unknown value option", "namespace T\nvalue V sorted\n   field f u8\n", 2,
     "unknown option 'sorted' for value (known: parse, ordered, hash)"),
    ("bad method", "namespace T\nentity E\n   method oops\n", 3,
     "usage: method <C++ declaration>, such as: method void f(int n) const"),
    ("constructor hook on a value", "namespace T\nvalue V\n   field f u8\n   method constructed\n", 4,
     "method constructed is for entities; value V has no generated constructor, factory or hook to hand over"),
    ("constructor hook with parameters", "namespace T\nentity E\n   method constructed(int)\n", 3,
     "method constructed takes no declaration: write 'method constructed' alone (its parameters are the entity's)"),
    ("hand-written constructor with a declaration", "namespace T\nentity E\n   method void constructor(int n)\n", 3,
     "method constructor takes no declaration: write 'method constructor' alone (its parameters are the entity's)"),
    ("queue capacity beyond 32 bits", "namespace T\nentity E\n   queue q u32 capacity 4294967296\n", 3,
     "capacity of queue q exceeds 32 bits"),
    ("child of an unnamed entity", "namespace T\nentity M unnamed\n   param p u8\nentity E\n   child m M\n", 5,
     "child m needs an entity made with a name; M is unnamed"),
    ("entity header", "namespace T\nentity E extra\n", 2,
     "unexpected 'extra' after entity E; usage: entity <name> [: <base>[(<arguments>)]] [factory <function>] "
     "[unnamed]"),
    ("unnamed entity with a key", "namespace T\nentity E unnamed\n   param id u32 key\n", 2,
     "entity E is unnamed and so cannot have the key 'id'"),
    ("queue capacity without a number", "namespace T\nentity E\n   queue q u32 capacity\n", 3,
     "capacity needs a number of at least 1: queue <name> <value type> [capacity <n>]"),
    ("queue capacity of zero", "namespace T\nentity E\n   queue q u32 capacity 0\n", 3,
     "capacity needs a number of at least 1: queue <name> <value type> [capacity <n>]"),
    ("unknown collection option", "namespace T\nimport lib.zon\nentity E\n   coll c u32 Keyed replaces\n", 4,
     "unknown option 'replaces' for coll (known: ordered, replace)"),
    ("references to an unkeyed entity", "namespace T\nimport lib.zon\nentity E\n   refs r Named = \"no\"\n", 4,
     "refs r needs an entity with a key parameter, not 'Named'"),
    ("references without their null text", "namespace T\nimport lib.zon\nentity E\n   refs r Keyed\n", 4,
     "refs r needs a value: refs <name> <entity type> [ordered] = <null text>"),
    ("references with a null text that is no literal", "namespace T\nimport lib.zon\nentity E\n   refs r Keyed = no\n",
     4, "refs r needs the text of its null-argument error as a C++ string literal after '='"),
    ("base arguments unclosed", "namespace T\nentity E : Base(name\n", 2, "unclosed '(' after base Base"),
    ("import missing", "namespace T\nimport gone.zon\n", 2, "cannot read import 'gone.zon': No such file or directory"),
    ("inline without header", "namespace T\ninline\n", 2, "usage: inline <header>"),
    ("inline of a schema", "namespace T\ninline lib.zon\n", 2,
     "inline takes a hand-written header, not the schema 'lib.zon'"),
    # Enumerations declared inside an entity.
    ("nested enum usage", "namespace T\nentity E\n   enum K\n", 3,
     "usage: enum <name> <integer type>, enumerators indented below it"),
    ("nested enum without enumerators", "namespace T\nentity E\n   enum K u8\n   scalar k K\n", 3,
     "enum K has no enumerators"),
    ("nested enum of a non-integer", "namespace T\nentity E\n   enum K double\n", 3,
     "enum K needs an integer type, not double"),
    ("nested enum declared twice", "namespace T\nentity E\n   enum K u8\n      a 1\n   enum K u8\n      b 1\n", 5,
     "duplicate enum 'K' in E (first at line 3)"),
    ("nested duplicate enumerator", "namespace T\nentity E\n   enum K u8\n      a 1\n      a 2\n", 5,
     "duplicate enumerator 'a' in enum K"),
    ("nested enumerator value", "namespace T\nentity E\n   enum K u8\n      a one\n", 4,
     "enumerator value 'one' is not a number"),
    ("nested enum default", "namespace T\nentity E\n   enum K u8\n      a 1\n   scalar k K = b\n", 5,
     "'b' is not an enumerator of K"),
    ("nested enum in a nested namespace", "namespace T::U\nentity E\n   enum K u8\n      a 1\n", 3,
     "enumerations need a namespace of one name, not T::U"),
]


def run(root, *args):
    err = io.StringIO()
    with contextlib.redirect_stderr(err):
        status = ldpgen.main(["--root", root, "--out", os.path.join(root, "out"), *args])
    return status, err.getvalue()


class BadSchemas(unittest.TestCase):
    def test_table(self):
        for what, text, line, message in BAD:
            with self.subTest(what), tempfile.TemporaryDirectory() as root:
                with open(os.path.join(root, "lib.zon"), "w") as f:
                    f.write(LIB)
                with open(os.path.join(root, "bad.zon"), "w") as f:
                    f.write(text)
                status, err = run(root, "bad.zon")
                self.assertEqual(status, 1)
                self.assertEqual(err, f"bad.zon:{line}: {message}\n")
                self.assertFalse(os.path.exists(os.path.join(root, "out")), "nothing is written")

    def test_error_in_an_import_names_the_imported_file(self):
        with tempfile.TemporaryDirectory() as root:
            with open(os.path.join(root, "lib.zon"), "w") as f:
                f.write("namespace T\nentity E\n   scalar x\n")
            with open(os.path.join(root, "top.zon"), "w") as f:
                f.write("namespace T\nimport lib.zon\n")
            self.assertEqual(run(root, "top.zon"),
                             (1, "lib.zon:3: usage: scalar <name> <type> [= <default>]\n"))


    def test_import_cycle_names_every_import_line(self):
        # top imports a, a imports b, b imports a again: the cycle is a -> b -> a.
        files = {"top.zon": "namespace T\nimport a.zon\n",
                 "a.zon": "namespace T\n# the shared part\nimport b.zon\n",
                 "b.zon": "namespace T\nimport lib.zon\nimport a.zon\n",
                 "lib.zon": LIB}
        with tempfile.TemporaryDirectory() as root:
            for name, text in files.items():
                with open(os.path.join(root, name), "w") as f:
                    f.write(text)
            self.assertEqual(run(root, "top.zon"),
                             (1, "b.zon:3: import cycle: a.zon:3 imports b.zon, b.zon:3 imports a.zon\n"))
            # A schema that imports itself.
            with open(os.path.join(root, "self.zon"), "w") as f:
                f.write("namespace T\nimport self.zon\n")
            self.assertEqual(run(root, "self.zon"), (1, "self.zon:2: import cycle: self.zon:2 imports self.zon\n"))


class Output(unittest.TestCase):
    SCHEMA = textwrap.dedent("""\
        # A small model.
        namespace T

        # One entity.
        entity E
           scalar x u8 = 3   # a comment is not the default
        """)

    def test_writes_only_changed_files(self):
        with tempfile.TemporaryDirectory() as root:
            with open(os.path.join(root, "m.zon"), "w") as f:
                f.write(self.SCHEMA)
            stamp = os.path.join(root, "m.stamp")
            self.assertEqual(run(root, "--stamp", stamp, "m.zon"), (0, ""))
            header = os.path.join(root, "out", "m.h")
            with open(header) as f:
                text = f.read()
            self.assertTrue(text.startswith("// Generated by tools/gen/ldpgen.py from m.zon. Do not edit.\n"
                                            "// A small model.\n"))
            self.assertIn("// One entity.\nclass E : public Zon::Entity {", text)
            self.assertIn("std::uint8_t x_{3};", text)
            os.utime(header, (1, 1))
            os.utime(stamp, (1, 1))
            self.assertEqual(run(root, "--stamp", stamp, "m.zon"), (0, ""))
            self.assertEqual(os.stat(header).st_mtime, 1, "unchanged content is not rewritten")
            self.assertNotEqual(os.stat(stamp).st_mtime, 1, "the stamp always records the run")
            with open(os.path.join(root, "m.zon"), "w") as f:
                f.write(self.SCHEMA.replace("= 3", "= 4"))
            run(root, "--stamp", stamp, "m.zon")
            self.assertNotEqual(os.stat(header).st_mtime, 1)


if __name__ == "__main__":
    unittest.main()
