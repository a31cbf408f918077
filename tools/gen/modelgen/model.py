"""The schema model: what the reader produces and the emitters consume.

Every node remembers where it was written (file and line), so that checks made
after reading can still report "file:line: message".
"""

from dataclasses import dataclass, field
from typing import List, Optional


class SchemaError(Exception):
    """An error in a schema, reported as "file:line: message"."""

    def __init__(self, path, line, message):
        super().__init__(f"{path}:{line}: {message}")
        self.path = path
        self.line = line
        self.message = message


@dataclass
class Where:
    path: str
    line: int

    def error(self, message):
        return SchemaError(self.path, self.line, message)


@dataclass
class Enumerator:
    where: Where
    name: str
    value: str
    doc: List[str] = field(default_factory=list)


@dataclass
class Enum:
    where: Where
    name: str
    underlying: str  # C++ type
    enumerators: List[Enumerator] = field(default_factory=list)
    doc: List[str] = field(default_factory=list)

    def has(self, name):
        return any(e.name == name for e in self.enumerators)


@dataclass
class Member:
    """One line of an entity or value block.

    kind: param, scalar, counter, map, set, counters, coll, child, queue, const,
    method (entities); field, bit, const, method (values).
    types: the type columns of the kind (one for scalar, key and value for map, ...).
    """

    where: Where
    kind: str
    name: str
    types: List[str] = field(default_factory=list)
    options: List[str] = field(default_factory=list)
    default: Optional[str] = None
    text: str = ""  # the declaration of a method; the field of a bit view
    doc: List[str] = field(default_factory=list)  # comment lines written above it
    numbers: dict = field(default_factory=dict)  # numbered options: {"capacity": 10}
    key_type: str = ""  # refs: the key type of the referenced entity

    def has(self, option):
        return option in self.options


@dataclass
class Value:
    where: Where
    name: str
    options: List[str]
    members: List[Member] = field(default_factory=list)
    doc: List[str] = field(default_factory=list)

    def fields(self):
        return [m for m in self.members if m.kind == "field"]


@dataclass
class Entity:
    where: Where
    name: str
    base: Optional[str] = None       # base class, as written
    base_args: Optional[str] = None  # its constructor arguments, as written
    factory: Optional[str] = None
    unnamed: bool = False  # no name: made from its parameters alone
    members: List[Member] = field(default_factory=list)
    doc: List[str] = field(default_factory=list)

    def params(self):
        return [m for m in self.members if m.kind == "param"]

    def key(self):
        for m in self.members:
            if m.kind == "param" and m.has("key"):
                return m
        return None

    def names_itself(self):
        """True when the key is the entity's own name (param `name` of Zon::Name)."""
        k = self.key()
        return k is not None and k.name == "name"

    def hand_written(self):
        """The generated parts that the .cpp defines instead: constructor, factory."""
        return {m.name for m in self.members if m.kind == "method" and m.text == m.name}

    def ctor_params(self):
        """Constructor parameters in order: a name first unless the entity is keyed or unnamed."""
        if self.key() is None and not self.unnamed:
            return [("Zon::Name", "name")] + [(p.types[0], p.name) for p in self.params()]
        return [(p.types[0], p.name) for p in self.params()]


@dataclass
class Schema:
    path: str          # as given, relative to the source root
    namespace: str = ""
    doc: List[str] = field(default_factory=list)  # the comment that opens the file
    includes: List[str] = field(default_factory=list)
    inlines: List[str] = field(default_factory=list)  # included after the classes
    imports: List["Schema"] = field(default_factory=list)
    enums: List[Enum] = field(default_factory=list)
    values: List[Value] = field(default_factory=list)
    entities: List[Entity] = field(default_factory=list)

    def stem(self):
        return self.path[:-len(".zon")] if self.path.endswith(".zon") else self.path

    def header(self):
        return self.stem() + ".h"

    def source(self):
        return self.stem() + ".gen.cpp"
