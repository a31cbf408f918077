"""Type names of schemas: short aliases and how generated code passes values."""

ALIASES = {
    "bool": "bool",
    "u8": "std::uint8_t",
    "u16": "std::uint16_t",
    "u32": "std::uint32_t",
    "u64": "std::uint64_t",
    "i8": "std::int8_t",
    "i16": "std::int16_t",
    "i32": "std::int32_t",
    "i64": "std::int64_t",
    "double": "double",
    "seconds": "Zon::Seconds",
    "string": "Zon::String",
    "string8": "Zon::String8",
    "name": "Zon::Name",
}

UNSIGNED = {"std::uint8_t", "std::uint16_t", "std::uint32_t", "std::uint64_t"}
ARITHMETIC = UNSIGNED | {"bool", "double", "std::int8_t", "std::int16_t", "std::int32_t",
                         "std::int64_t", "Zon::Seconds"}


def resolve(name):
    """The C++ spelling of a schema type."""
    return ALIASES.get(name, name)


class TypeInfo:
    """What the emitters need to know about the types of one schema: which names
    are enumerations, values and entities (its own and its imports')."""

    def __init__(self, schema):
        self.namespace = schema.namespace
        self.enums = {}
        self.values = {}
        self.entities = {}
        for s in [schema] + list(all_imports(schema)):
            for e in s.enums:
                self._add(self.enums, s, e)
            for v in s.values:
                self._add(self.values, s, v)
            for e in s.entities:
                self._add(self.entities, s, e)
                for nested in e.enums:
                    self._add(self.enums, s, nested, nested.qualified())

    def _add(self, table, schema, node, name=None):
        name = name or node.name
        table[name] = node
        table[f"{schema.namespace}::{name}"] = node

    def enum(self, cpp_type):
        return self.enums.get(cpp_type)

    def entity(self, cpp_type):
        return self.entities.get(cpp_type)

    def by_value(self, cpp_type):
        """Small types travel by value, everything else by const reference."""
        return cpp_type in ARITHMETIC or cpp_type in self.enums

    def param(self, cpp_type):
        return cpp_type if self.by_value(cpp_type) else f"{cpp_type} const &"

    def result(self, cpp_type):
        return self.param(cpp_type)


def all_imports(schema, seen=None):
    seen = set() if seen is None else seen
    for s in schema.imports:
        if s.path in seen:
            continue
        seen.add(s.path)
        yield s
        yield from all_imports(s, seen)
