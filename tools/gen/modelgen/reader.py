"""The schema reader: text to model, with every error as "file:line: message".

A schema is line-oriented. Unindented lines declare (namespace, include, import,
enum, value, entity); indented lines below a declaration are its members. A '#'
outside quotes starts a comment. In a member line, the text after the first '='
is the default, a C++ expression. See tools/gen/README.md for the format.
"""

import os
import re

from . import naming
from .model import Entity, Enum, Enumerator, Member, Schema, SchemaError, Value, Where
from .types import resolve, TypeInfo, UNSIGNED

# Columns of each member kind: (type columns, options, default: no/yes/required).
ENTITY_KINDS = {
    "param": (["type"], ["key", "base"], "no"),
    "scalar": (["type"], [], "yes"),
    "counter": (["type"], ["dec"], "yes"),
    "map": (["key type", "value type"], ["ordered"], "no"),
    "set": (["key type"], ["ordered"], "no"),
    "counters": (["key type", "value type"], ["ordered", "dec"], "no"),
    "coll": (["key type", "entity type"], ["ordered", "replace"], "no"),
    "child": (["entity type"], ["byname"], "no"),
    "queue": (["value type"], ["capacity"], "no"),
    "refs": (["entity type"], ["ordered"], "required"),
    "const": (["type"], ["getter"], "required"),
}
# Options followed by a number: `queue log Entry capacity 10`.
NUMBERED_OPTIONS = {"capacity"}
VALUE_KINDS = {
    "field": (["type"], [], "yes"),
    "const": (["type"], [], "required"),
}
VALUE_OPTIONS = ["parse", "ordered", "hash"]
TYPE = re.compile(r"^(::)?[A-Za-z_][A-Za-z0-9_:<>, *&]*$")
NUMBER = re.compile(r"^-?(0x[0-9A-Fa-f]+|[0-9]+)$")
# `method constructor` and `method factory` (entities only): the generator
# declares them and the .cpp beside the schema defines them. `method constructed`:
# a hand-written hook that the generated constructor calls last.
HAND_WRITTEN = ("constructor", "factory", "constructed")
WIDTH = {"std::uint8_t": 8, "std::uint16_t": 16, "std::uint32_t": 32, "std::uint64_t": 64}


def strip_comment(text):
    quote, i = None, 0
    while i < len(text):
        c = text[i]
        if quote:
            if c == "\\":
                i += 1
            elif c == quote:
                quote = None
        elif c in "\"'":
            quote = c
        elif c == "#":
            return text[:i]
        i += 1
    return text


def split_default(text):
    """Splits "head = default" at the first '=' outside quotes and brackets."""
    depth = 0
    for i, c in enumerate(text):
        if c in "<(":
            depth += 1
        elif c in ">)":
            depth -= 1
        elif c == "=" and depth == 0:
            return text[:i], text[i + 1:].strip()
    return text, None


def tokens(text):
    """Whitespace-separated words; brackets <...> and (...) keep their blanks."""
    out, cur, depth = [], "", 0
    for c in text:
        if c in "<(":
            depth += 1
        elif c in ">)":
            depth -= 1
        if c.isspace() and depth <= 0:
            if cur:
                out.append(cur)
            cur = ""
        else:
            cur += c
    if cur:
        out.append(cur)
    return out


def usage(kind, columns):
    cols, options, default = columns
    text = f"{kind} <name> " + " ".join(f"<{c}>" for c in cols)
    if options:
        text += " " + " ".join(f"[{o} <n>]" if o in NUMBERED_OPTIONS else f"[{o}]" for o in options)
    if default == "yes":
        text += " [= <default>]"
    elif default == "required":
        text += " = <null text>" if kind == "refs" else " = <value>"
    return text


class Reader:
    """Reads a schema and, through its imports, the schemas it uses."""

    def __init__(self, root):
        self.root = root
        self.cache = {}
        self.reading = []  # the schemas being read, outermost first
        self.importing = []  # where each of them imports the next

    def read(self, path, where=None):
        if path in self.cache:
            return self.cache[path]
        if path in self.reading:
            # Every import line of the cycle, from the schema that closes it back to itself.
            start = self.reading.index(path)
            steps = [f"{w.path}:{w.line} imports {target}"
                     for w, target in zip(self.importing[start:] + [where], self.reading[start + 1:] + [path])]
            raise where.error("import cycle: " + ", ".join(steps))
        try:
            with open(os.path.join(self.root, path), encoding="utf-8") as f:
                text = f.read()
        except OSError as e:
            if where is None:
                raise SchemaError(path, 0, f"cannot read schema: {e.strerror}")
            raise where.error(f"cannot read import '{path}': {e.strerror}")
        self.reading.append(path)
        try:
            schema = self.parse(path, text)
        finally:
            self.reading.pop()
        self.cache[path] = schema
        return schema

    def parse(self, path, text):
        schema = Schema(path)
        block = None
        nested = None  # (enumeration declared inside an entity, its line's indentation)
        doc = []  # comment lines since the last blank line: the next node's doc
        for number, raw in enumerate(text.splitlines(), start=1):
            where = Where(path, number)
            line = strip_comment(raw).rstrip()
            if not line.strip():
                comment = raw.strip()
                if comment.startswith("#"):
                    doc.append(comment[1:].strip())
                    continue
                if doc and not schema.doc and not schema.namespace:
                    schema.doc = doc  # the file's opening comment
                doc = []
                continue
            if line[0].isspace():
                if block is None:
                    raise where.error("indented member line outside an enum, value or entity")
                indent = len(line) - len(line.lstrip())
                if nested and indent > nested[1]:
                    # An enumerator of the enumeration that the entity declares above.
                    self.member(nested[0], where, line.strip())
                    target = nested[0].enumerators[-1]
                elif isinstance(block, Entity) and line.split()[0] == "enum":
                    target = self.nested_enum(block, where, tokens(line)[1:])
                    nested = (target, indent)
                else:
                    nested = None
                    self.member(block, where, line.strip())
                    target = block.enumerators[-1] if isinstance(block, Enum) else block.members[-1]
            else:
                nested = None
                opening = not schema.namespace
                block = self.declaration(schema, where, line)
                target = block
                if target is None and opening and schema.namespace and not schema.doc:
                    schema.doc = doc  # the file's opening comment, just above its namespace
            if target is not None:
                target.doc = doc
            doc = []
        if not schema.namespace:
            raise SchemaError(path, 1, "the schema declares no namespace")
        check(schema)
        return schema

    # Unindented lines.
    def declaration(self, schema, where, line):
        words = tokens(line)
        keyword, args = words[0], words[1:]
        if keyword == "namespace":
            self.arity(where, args, 1, "namespace <name>")
            if schema.namespace:
                raise where.error("a second namespace")
            if not naming.QUALIFIED.match(args[0]):
                raise where.error(f"'{args[0]}' is not a valid namespace")
            schema.namespace = args[0]
            return None
        if keyword == "include":
            self.arity(where, args, 1, "include <header>")
            schema.includes.append(args[0].strip('"'))
            return None
        if keyword == "inline":
            self.arity(where, args, 1, "inline <header>")
            header = args[0].strip('"')
            if header.endswith(".zon"):
                raise where.error(f"inline takes a hand-written header, not the schema '{header}'")
            schema.inlines.append(header)
            return None
        if keyword == "import":
            self.arity(where, args, 1, "import <schema path>")
            self.importing.append(where)
            try:
                schema.imports.append(self.read(args[0].strip('"'), where))
            finally:
                self.importing.pop()
            return None
        if keyword == "enum":
            node = self.enum(where, args, "enum <name> <integer type>")
            schema.enums.append(node)
            return node
        if keyword == "value":
            if not args:
                raise where.error("usage: value <name> [parse] [ordered] [hash]")
            name = self.identifier(where, args[0])
            for option in args[1:]:
                if option not in VALUE_OPTIONS:
                    raise where.error(f"unknown option '{option}' for value (known: {', '.join(VALUE_OPTIONS)})")
            node = Value(where, name, args[1:])
            schema.values.append(node)
            return node
        if keyword == "entity":
            return self.entity_header(schema, where, args)
        raise where.error(f"unknown declaration '{keyword}' (member lines are indented)")

    def enum(self, where, args, use):
        self.arity(where, args, 2, use)
        name = self.identifier(where, args[0])
        underlying = resolve(args[1])
        if underlying not in WIDTH and underlying not in ("std::int8_t", "std::int16_t",
                                                           "std::int32_t", "std::int64_t"):
            raise where.error(f"enum {name} needs an integer type, not {args[1]}")
        return Enum(where, name, underlying)

    def nested_enum(self, entity, where, args):
        """An enumeration declared inside an entity: Entity::Name in C++."""
        node = self.enum(where, args, "enum <name> <integer type>, enumerators indented below it")
        node.outer = entity.name
        entity.enums.append(node)
        return node

    def entity_header(self, schema, where, args):
        use = "usage: entity <name> [: <base>[(<arguments>)]] [factory <function>] [unnamed]"
        if not args:
            raise where.error(use)
        node = Entity(where, self.identifier(where, args[0]))
        rest = args[1:]
        if rest and rest[0] == ":":
            if len(rest) < 2:
                raise where.error(use)
            base = rest[1]
            if "(" in base and not base.endswith(")"):
                raise where.error(f"unclosed '(' after base {base[:base.index('(')]}")
            if "(" in base:
                node.base, node.base_args = base[:base.index("(")], base[base.index("(") + 1:-1]
            else:
                node.base = base
            if not naming.QUALIFIED.match(node.base):
                raise where.error(f"'{node.base}' is not a valid base class")
            rest = rest[2:]
        while rest and rest[0] in ("factory", "unnamed"):
            if rest[0] == "unnamed":
                node.unnamed, rest = True, rest[1:]
                continue
            if len(rest) < 2:
                raise where.error(use)
            node.factory = self.identifier(where, rest[1])
            rest = rest[2:]
        if rest:
            raise where.error(f"unexpected '{rest[0]}' after entity {node.name}; {use}")
        schema.entities.append(node)
        return node

    # Indented lines.
    def member(self, block, where, line):
        if isinstance(block, Enum):
            words = tokens(line)
            if len(words) != 2:
                raise where.error("an enumerator line is: <name> <value>")
            name = self.identifier(where, words[0])
            if not NUMBER.match(words[1]):
                raise where.error(f"enumerator value '{words[1]}' is not a number")
            if block.has(name):
                raise where.error(f"duplicate enumerator '{name}' in enum {block.name}")
            block.enumerators.append(Enumerator(where, name, words[1]))
            return
        keyword = line.split(None, 1)[0]
        if keyword == "method":
            decl = line[len("method"):].strip().rstrip(";")
            if decl in HAND_WRITTEN:  # a generated part that the .cpp writes instead
                if isinstance(block, Value):
                    raise where.error(f"method {decl} is for entities; value {block.name} has no generated "
                                      f"constructor, factory or hook to hand over")
                block.members.append(Member(where, "method", decl, text=decl))
                return
            match = re.search(r"([A-Za-z_][A-Za-z0-9_]*)\s*\(", decl)
            if not match:
                raise where.error("usage: method <C++ declaration>, such as: method void f(int n) const")
            if match.group(1) in HAND_WRITTEN:
                raise where.error(f"method {match.group(1)} takes no declaration: write 'method "
                                  f"{match.group(1)}' alone (its parameters are the entity's)")
            block.members.append(Member(where, "method", match.group(1), text=decl))
            return
        head, default = split_default(line)
        words = tokens(head)
        kind, args = words[0], words[1:]
        if isinstance(block, Value) and kind == "bit":
            if len(args) not in (2, 3) or default is not None:
                raise where.error("usage: bit <name> <bit number> [<field>]")
            name = self.identifier(where, args[0])
            if not args[1].isdigit():
                raise where.error(f"bit number '{args[1]}' is not a number")
            block.members.append(Member(where, "bit", name, options=[args[1]],
                                        text=args[2] if len(args) == 3 else ""))
            return
        kinds = VALUE_KINDS if isinstance(block, Value) else ENTITY_KINDS
        if kind not in kinds:
            what = "value field" if isinstance(block, Value) else "attribute"
            extra = ["bit", "method"] if isinstance(block, Value) else ["method", "enum"]
            raise where.error(f"unknown {what} kind '{kind}' (known: {', '.join(list(kinds) + extra)})")
        cols, options, default_rule = kinds[kind]
        if len(args) < 1 + len(cols):
            raise where.error(f"usage: {usage(kind, kinds[kind])}")
        name = self.identifier(where, args[0])
        types = [self.type(where, t) for t in args[1:1 + len(cols)]]
        flags, numbers = [], {}
        rest = args[1 + len(cols):]
        while rest:
            flag, rest = rest[0], rest[1:]
            if flag not in options:
                known = f" (known: {', '.join(options)})" if options else ""
                raise where.error(f"unknown option '{flag}' for {kind}{known}")
            if flag in NUMBERED_OPTIONS:
                if not rest or not rest[0].isdigit() or int(rest[0]) < 1:
                    raise where.error(f"{flag} needs a number of at least 1: {usage(kind, kinds[kind])}")
                numbers[flag], rest = int(rest[0]), rest[1:]
            flags.append(flag)
        if default is not None and default_rule == "no":
            raise where.error(f"{kind} takes no default")
        if default is None and default_rule == "required":
            raise where.error(f"{kind} {name} needs a value: {usage(kind, kinds[kind])}")
        if default == "":
            raise where.error(f"empty default for {name}")
        block.members.append(Member(where, kind, name, types, flags, default, numbers=numbers))

    # Small helpers.
    @staticmethod
    def arity(where, args, n, use):
        if len(args) != n:
            raise where.error(f"usage: {use}")

    @staticmethod
    def identifier(where, word):
        if not naming.IDENTIFIER.match(word):
            raise where.error(f"'{word}' is not a valid name")
        return word

    @staticmethod
    def type(where, word):
        if not TYPE.match(word) or word.count("<") != word.count(">"):
            raise where.error(f"'{word}' is not a valid type")
        return resolve(word)


# Checks that need the whole schema (and its imports).
def check(schema):
    info = TypeInfo(schema)
    seen = {}
    for node in schema.enums + schema.values + schema.entities:
        if node.name in seen:
            raise node.where.error(f"duplicate declaration '{node.name}' (first at line {seen[node.name]})")
        seen[node.name] = node.where.line
    for enum in schema.enums + [e for entity in schema.entities for e in entity.enums]:
        if "::" in schema.namespace:
            raise enum.where.error("enumerations need a namespace of one name, not " + schema.namespace)
        if not enum.enumerators:
            raise enum.where.error(f"enum {enum.name} has no enumerators")
    for value in schema.values:
        check_value(value, info)
    for entity in schema.entities:
        check_entity(entity, info)
    schema.entities = ordered_entities(schema.entities)


def check_names(block, reserved_ok=()):
    names = {}
    for e in getattr(block, "enums", []):
        if e.name in names:
            raise e.where.error(f"duplicate enum '{e.name}' in {block.name} (first at line {names[e.name][1]})")
        names[e.name] = (e.name, e.where.line)
    for m in block.members:
        if m.name in naming.RESERVED and m.name not in reserved_ok:
            raise m.where.error(f"'{m.name}' is reserved by the runtime")
        ops = operations(m)
        for op in ops:
            if op in names:
                other, line = names[op]
                if other == m.name:
                    raise m.where.error(f"duplicate attribute '{m.name}' (first at line {line})")
                raise m.where.error(f"{m.kind} {m.name} needs the name {op}, which {other} (line {line}) already uses")
        for op in ops:
            names[op] = (m.name, m.where.line)


def operations(m):
    if m.kind == "method":
        return [m.name]
    ops = naming.operations(m.name, m.kind)
    if m.kind in ("counter", "counters") and not m.has("dec"):
        ops.remove(naming.dec(m.name))
    return ops


def check_value(value, info):
    check_names(value)
    for m in value.members:
        if m.default is not None and m.kind in ("field", "const"):
            m.default = qualify_default(m, info)
    fields = {m.name: m for m in value.fields()}
    if not fields:
        raise value.where.error(f"value {value.name} has no fields")
    for m in value.members:
        if m.kind != "bit":
            continue
        target = fields.get(m.text) if m.text else next(iter(fields.values()))
        if target is None:
            raise m.where.error(f"bit {m.name} names no field '{m.text}' of {value.name}")
        m.text = target.name
        width = WIDTH.get(target.types[0])
        if width is None:
            raise m.where.error(f"bit {m.name} needs an unsigned integer field; {target.name} is {target.types[0]}")
        if int(m.options[0]) >= width:
            raise m.where.error(f"bit {m.options[0]} is outside the {width} bits of field '{target.name}'")


def check_entity(entity, info):
    key = None
    for m in entity.members:
        if m.kind == "param":
            if m.has("key"):
                if key is not None:
                    raise m.where.error(f"second key parameter '{m.name}' (the key is '{key.name}')")
                key = m
            if m.name == "name" and (m.types[0] != "Zon::Name" or entity.params()[0] is not m):
                raise m.where.error("a parameter called name must be the first and of type Zon::Name")
    check_names(entity, reserved_ok=("name",) if entity.names_itself() or entity.has_name_param() else ())
    check_hand_written(entity)
    # A bare name of an enumeration declared inside this entity means that one.
    nested = {e.name: f"{entity.name}::{e.name}" for e in entity.enums}
    for m in entity.members:
        m.types = [nested.get(t, t) for t in m.types]
    for m in entity.members:
        if m.kind in ("counter", "counters"):
            counted = m.types[-1]
            if counted not in UNSIGNED:
                raise m.where.error(f"{m.kind} {m.name} must count in an unsigned integer type, not {counted}")
        if m.default is not None and m.kind in ("scalar", "counter", "const"):
            m.default = qualify_default(m, info)
        if m.kind == "coll":
            element = info.entity(m.types[1])
            if element is None:
                raise m.where.error(f"unknown entity type '{m.types[1]}' (declare it or import its schema)")
            ekey = element.key()
            if ekey is None:
                raise m.where.error(f"coll {m.name} needs an entity with a key parameter; {element.name} has none")
            if ekey.types[0] != m.types[0]:
                raise m.where.error(f"coll {m.name} is keyed by {m.types[0]} but the key {ekey.name} "
                                    f"of {element.name} is {ekey.types[0]}")
        if m.kind == "refs":
            element = info.entity(m.types[0])
            if element is None or element.key() is None:
                raise m.where.error(f"refs {m.name} needs an entity with a key parameter, not '{m.types[0]}'")
            m.key_type = element.key().types[0]
            if not (m.default.startswith('"') and m.default.endswith('"') and len(m.default) >= 2):
                raise m.where.error(f"refs {m.name} needs the text of its null-argument error as a C++ "
                                    f"string literal after '='")
        if m.kind == "queue" and "capacity" in m.numbers and m.numbers["capacity"] > 0xffffffff:
            raise m.where.error(f"capacity of queue {m.name} exceeds 32 bits")
        if m.kind == "child":
            element = info.entity(m.types[0])
            if element is not None and (element.unnamed or (element.key() is not None and not element.has_name_param())):
                raise m.where.error(f"child {m.name} needs an entity made with a name; "
                                    f"{element.name} is {'unnamed' if element.unnamed else 'keyed'}")
            if m.has("byname") and (element is None or len(element.ctor_params()) < 2):
                raise m.where.error(f"child {m.name} is made with a name alone, so byname has nothing "
                                    f"else to leave uncompared")
    if entity.unnamed and key is not None:
        raise entity.where.error(f"entity {entity.name} is unnamed and so cannot have the key '{key.name}'")
    if entity.base:
        base = info.entity(entity.base)
        if base is not None and base.params() and entity.base_args is None:
            raise entity.where.error(f"base {entity.base} must be made by name alone; it has parameters")


def check_hand_written(entity):
    """Parameters that the base holds, and the parts written by hand."""
    hand = entity.hand_written()
    if "factory" in hand and not entity.factory:
        line = next(m.where for m in entity.members if m.kind == "method" and m.name == "factory")
        raise line.error(f"method factory needs 'factory <function>' on the line of entity {entity.name}")
    base_args = set(re.findall(r"[A-Za-z_][A-Za-z0-9_]*", entity.base_args or ""))
    for m in entity.params():
        if not m.has("base"):
            continue
        if m.has("key"):
            raise m.where.error(f"param {m.name} is the key and so cannot be held by the base")
        if not entity.base:
            raise m.where.error(f"param {m.name} is held by the base, but entity {entity.name} has none")
        if m.name not in base_args and "constructor" not in hand:
            raise m.where.error(f"param {m.name} is held by the base, but neither the base's arguments "
                                f"nor a hand-written constructor (method constructor) pass it on")


def qualify_default(m, info):
    """A bare enumerator as the default of an enumeration-typed attribute is qualified."""
    enum = info.enum(m.types[0])
    if enum is None or not naming.IDENTIFIER.match(m.default):
        return m.default
    if not enum.has(m.default):
        raise m.where.error(f"'{m.default}' is not an enumerator of {enum.name}")
    return f"{m.types[0]}::{m.default}"


def ordered_entities(entities):
    """Entities after the entities of this schema that they hold or derive from."""
    by_name = {e.name: e for e in entities}
    done, out = set(), []

    def deps(e):
        for m in e.members:
            if m.kind in ("coll", "child", "refs"):
                t = m.types[-1]
                if t in by_name:
                    yield by_name[t]
        if e.base in by_name:
            yield by_name[e.base]

    def visit(e, path):
        if e.name in done:
            return
        if e.name in path:
            cycle = path[path.index(e.name):] + [e.name]
            raise e.where.error("entities hold each other in a cycle: " + " -> ".join(cycle))
        for d in deps(e):
            visit(d, path + [e.name])
        done.add(e.name)
        out.append(e)

    for e in entities:
        visit(e, [])
    return out
