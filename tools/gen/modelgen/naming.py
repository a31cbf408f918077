"""Naming rules of generated code: the one place that turns an attribute name
into the names of its operations.

    x          getter (and, with a key, lookup)
    xIs        setter; insert-or-replace; create-or-get
    newX       create
    xDel       delete (by key for collections)
    xDelAll    empty a collection
    xs         number of elements of a collection
    xInc/xDec  counter steps
    xEnq/xDeq  queue ends (xDrop: a bounded queue's oldest, not handed out)
    x_         the member that holds it
    onX        the Notifiee's handler
"""

import re


def cap(name):
    return name[:1].upper() + name[1:]


def getter(name):
    return name


def setter(name):
    return name + "Is"


def creator(name):
    return "new" + cap(name)


def deleter(name):
    return name + "Del"


def delete_all(name):
    return name + "DelAll"


def count(name):
    return name + "s"


def inc(name):
    return name + "Inc"


def dec(name):
    return name + "Dec"


def enqueue(name):
    return name + "Enq"


def dequeue(name):
    return name + "Deq"


def drop(name):
    return name + "Drop"


def member(name):
    return name + "_"


def inserter(name):
    """The private helper of an instantiating collection that makes and stores."""
    return "insert" + cap(name) + "_"


def handler(name):
    return "on" + cap(name)


def bit_constant(view):
    return "bit" + cap(view)


def enum_list_macro(enum_name):
    """LdpLabelDistCtrl -> LDP_LABEL_DIST_CTRL_VALUES (the enumeration's X-macro list)."""
    snake = re.sub(r"(?<=[a-z0-9])(?=[A-Z])", "_", enum_name).upper()
    return snake + "_VALUES"


def operations(name, kind):
    """Every public name that an attribute of this kind generates."""
    table = {
        "param": [getter],
        "scalar": [getter, setter],
        "counter": [getter, setter, inc, dec],
        "map": [getter, count, setter, creator, deleter, delete_all],
        "set": [getter, count, setter, creator, deleter, delete_all],
        "counters": [getter, count, setter, creator, inc, dec, deleter, delete_all],
        "coll": [getter, count, setter, creator, deleter, delete_all],
        "child": [getter, setter, creator, deleter],
        "queue": [getter, count, enqueue, dequeue, drop, deleter, delete_all],
        "refs": [getter, count, setter, creator, deleter, delete_all],
        "const": [getter],
        "field": [getter, setter],
        "bit": [getter, setter, bit_constant],
    }
    return [f(name) for f in table.get(kind, [getter])]


IDENTIFIER = re.compile(r"^[A-Za-z_][A-Za-z0-9_]*$")
QUALIFIED = re.compile(r"^(::)?[A-Za-z_][A-Za-z0-9_]*(::[A-Za-z_][A-Za-z0-9_]*)*$")

# Names that generated classes inherit from the runtime, or that C++ reserves.
RESERVED = {
    "name", "parent", "parentIs", "observers", "notify", "ref", "unref", "references",
    "Attr", "attrCount", "Notifiee", "Hold", "stringValue", "fromString", "hash",
    "attrsVisit", "attrInfo", "attrKeyText",
    "class", "struct", "enum", "namespace", "new", "delete", "default", "this", "const",
    "int", "bool", "void", "return", "template", "typename", "operator", "public", "private",
    "protected", "virtual", "static", "switch", "case", "if", "else", "for", "while", "do",
    "true", "false", "nullptr", "auto", "register", "union", "using", "friend", "inline",
}
