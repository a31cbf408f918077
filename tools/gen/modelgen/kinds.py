"""One emitter per attribute kind.

Each emitter turns one member line of an entity into C++: the public operations
in the class, the private member that holds the attribute, out-of-line
definitions for the source file, and the Notifiee's handler with its dispatch
case. Operation names come from naming.py only.
"""

from . import naming as n

I = "   "  # one level of indentation


class Context:
    """What an emitter needs: the entity, its class name and the type table."""

    def __init__(self, entity, info):
        self.entity = entity
        self.cls = entity.name
        self.info = info

    def attr(self, m):
        return f"Attr::{m.name}"

    def p(self, cpp_type):
        return self.info.param(cpp_type)

    def r(self, cpp_type):
        return self.info.result(cpp_type)

    def make(self, element_type, args):
        """An expression that makes a new entity of `element_type` from `args`. Without
        a factory it allocates as the factories do: a failed allocation is the
        runtime's range error "null ValidPtr", never std::bad_alloc."""
        element = self.info.entity(element_type)
        if element is not None and element.factory:
            return f"Zon::validPtr({element.factory}({args}))"
        return f"Zon::validPtr(Zon::Ptr<{element_type}>(new (std::nothrow) {element_type}({args})))"


def order(m):
    return "Zon::Ordered" if m.has("ordered") else "Zon::Hashed"


def notify_if(cond, what, key=None, indent=I):
    keyarg = f", &{key}" if key else ""
    return [f"{indent}if ({cond}) {{", f"{indent}{I}notify({what}{keyarg});", f"{indent}}}"]


def short(signature, statement, indent=I, width=100):
    """A one-line function, or the usual three lines when that would be too long."""
    line = f"{indent}{signature} {{ {statement} }}"
    if len(line) <= width:
        return [line]
    return [f"{indent}{signature} {{", f"{indent}{I}{statement}", f"{indent}}}"]


def body(signature, lines, indent=I):
    return [f"{indent}{signature} {{"] + [indent + I + l if l else "" for l in lines] + [f"{indent}}}"]


class Kind:
    has_id = True
    # Reflection: the kind's name in attribute tables (None: not an attribute).
    reflect_kind = None

    def reflects(self, m):
        """Whether the member is listed among the entity's attributes."""
        return self.reflect_kind is not None

    def reflect_type(self, m):
        """The attribute's type as the schema writes it."""
        return " ".join(m.types)

    def reflect_value(self, m, c):
        """The expression whose text is the attribute's value."""
        return n.member(m.name)

    def reflect_text(self, m, c):
        """The expression that gives the attribute's text."""
        return f"Zon::attrText({self.reflect_value(m, c)})"

    def key_type(self, m):
        """The type of the key that notifications of the attribute carry, if any."""
        return None

    def public(self, m, c):
        return []

    def private_decls(self, m, c):
        return []

    def member(self, m, c):
        return []

    def source(self, m, c):
        return []

    def handler(self, m, c):
        return f"virtual void {n.handler(m.name)}() {{}}"

    def dispatch(self, m, c):
        return f"{n.handler(m.name)}();"

    def key_handler(self, m, c, key_type):
        return f"virtual void {n.handler(m.name)}({c.p(key_type)}) {{}}"

    def key_dispatch(self, m, key_type):
        return f"{n.handler(m.name)}(*static_cast<{key_type} const *>(key));"


class Param(Kind):
    """A constructor parameter: read-only after construction."""

    has_id = False
    reflect_kind = "param"

    def reflects(self, m):
        return not m.has("base")  # the base class lists what it holds

    def reflect_value(self, m, c):
        return "name()" if m.name == "name" else n.member(m.name)

    def public(self, m, c):
        if m.name == "name" or m.has("base"):  # held by Zon::Entity, by the base class
            return []
        t = m.types[0]
        return short(f"{c.r(t)} {n.getter(m.name)}() const noexcept", f"return {n.member(m.name)};")

    def member(self, m, c):
        if m.name == "name" or m.has("base"):
            return []
        return [f"{I}{m.types[0]} const {n.member(m.name)};"]

    def handler(self, m, c):
        return None


class Scalar(Kind):
    reflect_kind = "scalar"
    def public(self, m, c):
        t, x = m.types[0], n.member(m.name)
        return short(f"{c.r(t)} {n.getter(m.name)}() const noexcept", f"return {x};") + body(
            f"void {n.setter(m.name)}({c.p(t)} v)",
            [f"if ({x} == v) {{", f"{I}return;", "}", f"{x} = v;", f"notify({c.attr(m)});"])

    def member(self, m, c):
        init = m.default if m.default is not None else ""
        return [f"{I}{m.types[0]} {n.member(m.name)}{{{init}}};"]


class Counter(Scalar):
    reflect_kind = "counter"
    def public(self, m, c):
        out = super().public(m, c)
        ops = [(n.inc(m.name), "wrapAdd")] + ([(n.dec(m.name), "wrapSub")] if m.has("dec") else [])
        t, x = m.types[0], n.member(m.name)
        for name, op in ops:
            out += body(f"{t} {name}({t} delta)",
                        [f"{t} const v = Zon::{op}({x}, delta);", f"if (v != {x}) {{",
                         f"{I}{x} = v;", f"{I}notify({c.attr(m)});", "}", "return v;"])
        return out


class CollectionKind(Kind):
    """Shared by the keyed collections: view, size, Del and DelAll."""

    def holder(self, m, c):
        raise NotImplementedError

    def key(self, m):
        return m.types[0]

    def key_type(self, m):
        return self.key(m)

    def common(self, m, c):
        return [*short(f"{self.holder(m, c)} const & {n.getter(m.name)}() const noexcept", f"return {n.member(m.name)};"),
                *short(f"std::size_t {n.count(m.name)}() const noexcept", f"return {n.member(m.name)}.size();"),
                f"{I}void {n.deleter(m.name)}({c.p(self.key(m))} key);",
                f"{I}void {n.delete_all(m.name)}();"]

    def member(self, m, c):
        return [f"{I}{self.holder(m, c)} {n.member(m.name)};"]

    def erase(self, m):
        return f"{n.member(m.name)}.erase(k)"

    def source(self, m, c):
        k, x = self.key(m), n.member(m.name)
        # The caller's key may live in the element that goes away: copy it first.
        return (body(f"void {c.cls}::{n.deleter(m.name)}({c.p(k)} key)",
                     [f"{k} const k = key;"] + notify_if(self.erase(m), c.attr(m), "k", ""), "")
                + body(f"void {c.cls}::{n.delete_all(m.name)}()",
                       ["Hold const hold(this);",
                        f"{x}.eraseEach([this]({k} const & k) {{ notify({c.attr(m)}, &k); }});"], "")
                + [""])

    def handler(self, m, c):
        return self.key_handler(m, c, self.key(m))

    def dispatch(self, m, c):
        return self.key_dispatch(m, self.key(m))


class Map(CollectionKind):
    reflect_kind = "map"
    def holder(self, m, c):
        return f"Zon::ValueMap<{m.types[0]}, {m.types[1]}, {order(m)}>"

    def public(self, m, c):
        k, v, x = m.types[0], m.types[1], n.member(m.name)
        return (short(f"{v} {n.getter(m.name)}({c.p(k)} key) const", f"return {x}.value(key);")
                + body(f"void {n.setter(m.name)}({c.p(k)} key, {c.p(v)} v)",
                       notify_if(f"{x}.set(key, v)", c.attr(m), "key", ""))
                + short(f"void {n.creator(m.name)}({c.p(k)} key, {c.p(v)} v)", f"{n.setter(m.name)}(key, v);")
                + self.common(m, c))


class Set(CollectionKind):
    reflect_kind = "set"
    def holder(self, m, c):
        return f"Zon::ValueSet<{m.types[0]}, {order(m)}>"

    def public(self, m, c):
        k, x = m.types[0], n.member(m.name)
        return (short(f"bool {n.getter(m.name)}({c.p(k)} key) const", f"return {x}.contains(key);")
                + body(f"void {n.setter(m.name)}({c.p(k)} key)",
                       notify_if(f"{x}.insert(key)", c.attr(m), "key", ""))
                + short(f"void {n.creator(m.name)}({c.p(k)} key)", f"{n.setter(m.name)}(key);")
                + self.common(m, c))


class Counters(Map):
    """Keyed counters: a missing key is created at 0 before it is stepped."""

    reflect_kind = "counters"

    def public(self, m, c):
        k, v, x = m.types[0], m.types[1], n.member(m.name)
        out = (short(f"{v} {n.getter(m.name)}({c.p(k)} key) const", f"return {x}.value(key);")
               + body(f"void {n.setter(m.name)}({c.p(k)} key, {v} v)",
                      notify_if(f"{x}.set(key, v)", c.attr(m), "key", ""))
               + short(f"void {n.creator(m.name)}({c.p(k)} key, {v} v)", f"{n.setter(m.name)}(key, v);"))
        ops = [(n.inc(m.name), "add")] + ([(n.dec(m.name), "sub")] if m.has("dec") else [])
        for name, op in ops:
            out += body(f"{v} {name}({c.p(k)} key, {v} delta)",
                        [f"auto const r = {x}.{op}(key, delta);"] + notify_if("r.changed", c.attr(m), "key", "")
                        + ["return r.value;"])
        return out + self.common(m, c)


class Coll(CollectionKind):
    """An instantiating collection of entities."""

    reflect_kind = "coll"

    def element(self, m, c):
        return c.info.entity(m.types[1])

    def holder(self, m, c):
        return f"Zon::EntityMap<{m.types[0]}, {m.types[1]}, {order(m)}>"

    def signature(self, m, c):
        return ", ".join(f"{c.p(t)} {name}" for t, name in self.element(m, c).ctor_params())

    def args(self, m, c):
        return ", ".join(name for _, name in self.element(m, c).ctor_params())

    def public(self, m, c):
        k, e, x = m.types[0], m.types[1], n.member(m.name)
        sig = self.signature(m, c)
        return ([*short(f"Zon::Ptr<{e} const> {n.getter(m.name)}({c.p(k)} key) const", f"return {x}.find(key);"),
                 *short(f"Zon::Ptr<{e}> {n.getter(m.name)}({c.p(k)} key)", f"return {x}.find(key);"),
                 f"{I}Zon::Ptr<{e}> {n.setter(m.name)}({sig});",
                 f"{I}Zon::Ptr<{e}> {n.creator(m.name)}({sig});"]
                + self.common(m, c))

    def insert_name(self, m):
        return n.inserter(m.name)

    def private_decls(self, m, c):
        return [f"{I}Zon::Ptr<{m.types[1]}> {self.insert_name(m)}({self.signature(m, c)});"]

    def erase(self, m):
        return f"{n.member(m.name)}.take(k)"

    def checks(self, m, c):
        """Refuses an existing element whose constructor parameters differ, naming the
        first that differs in declaration order. Beside other parameters the key is
        compared in its place too: the element was found by it, so it is equal unless
        the key type's equality and its lookup disagree, and then the error names it as
        it would any other. An element made from its key alone is returned as it is."""
        element = self.element(m, c)
        params = element.params()
        out = []
        for p in params if len(params) > 1 else []:
            out += [f"if (!(e->{p.name}() == {p.name})) {{",
                    f'{I}Zon::nameInUse(e->name(), "{p.name}", Zon::plainText({p.name}), '
                    f"Zon::plainText(e->{p.name}()));",
                    "}"]
        return out

    def source(self, m, c):
        e, x = m.types[1], n.member(m.name)
        key = self.element(m, c).key().name
        sig, args = self.signature(m, c), self.args(m, c)
        checks = self.checks(m, c)
        out = body(f"Zon::Ptr<{e}> {c.cls}::{n.setter(m.name)}({sig})",
                   [f"if (Zon::Ptr<{e}> e = {x}.find({key})) {{"] + [I + l for l in checks]
                   + [f"{I}return e;", "}", f"return {self.insert_name(m)}({args});"], "") + [""]
        if m.has("replace"):
            # newX makes a fresh element, whatever the collection held under its key:
            # the old element is unlinked, and observers hear the key once.
            out += body(f"Zon::Ptr<{e}> {c.cls}::{n.creator(m.name)}({sig})",
                        [f"return {self.insert_name(m)}({args});"], "") + [""]
        else:
            # newX is create-or-get too: an existing element (with the same constructor
            # parameters) is returned as it is, never replaced by a fresh one.
            out += body(f"Zon::Ptr<{e}> {c.cls}::{n.creator(m.name)}({sig})",
                        [f"return {n.setter(m.name)}({args});"], "") + [""]
        # The caller's key may live in an element that the insert replaces: the
        # notification carries the new element's own.
        out += body(f"Zon::Ptr<{e}> {c.cls}::{self.insert_name(m)}({sig})",
                    [f"Zon::Ptr<{e}> e = {c.make(e, args)};", f"{x}.insert({key}, e, this);",
                     f"auto const & k = e->{key}();", f"notify({c.attr(m)}, &k);", "return e;"], "") + [""]
        return out + super().source(m, c)


class Child(Kind):
    """A named single child, created by name (and the element's other constructor
    parameters, if it has any)."""

    reflect_kind = "child"

    def params(self, m, c):
        """The element's constructor parameters after its name."""
        element = c.info.entity(m.types[0])
        return element.ctor_params()[1:] if element is not None else []

    def signature(self, m, c):
        return ", ".join(["Zon::Name const & name"] + [f"{c.p(t)} {p}" for t, p in self.params(m, c)])

    def public(self, m, c):
        e, x = m.types[0], n.member(m.name)
        sig = self.signature(m, c)
        return [*short(f"Zon::Ptr<{e} const> {n.getter(m.name)}() const noexcept", f"return {x}.get();"),
                *short(f"Zon::Ptr<{e}> {n.getter(m.name)}() noexcept", f"return {x}.get();"),
                f"{I}Zon::Ptr<{e}> {n.setter(m.name)}({sig});",
                f"{I}Zon::Ptr<{e}> {n.creator(m.name)}({sig});"] + body(
            f"void {n.deleter(m.name)}()", notify_if(f"{x}.reset()", c.attr(m), None, ""))

    def member(self, m, c):
        return [f"{I}Zon::Child<{m.types[0]}> {n.member(m.name)};"]

    def source(self, m, c):
        e, x = m.types[0], n.member(m.name)
        sig = self.signature(m, c)
        params = [p for _, p in self.params(m, c)]
        # With `byname` only the name is compared: a child of that name is kept
        # whatever its other parameters.
        compared = [] if m.has("byname") else params
        same = " && ".join([f"{x}.ptr()->name() == name"] + [f"{x}.ptr()->{p}() == {p}" for p in compared])
        args = ", ".join(["name"] + params)
        # xIs keeps a child of that name (and those parameters); anything else is
        # replaced by a fresh child.
        return (body(f"Zon::Ptr<{e}> {c.cls}::{n.setter(m.name)}({sig})",
                     [f"if ({x} && {same}) {{", f"{I}return {x}.get();", "}",
                      f"return {n.creator(m.name)}({args});"], "") + [""]
                + body(f"Zon::Ptr<{e}> {c.cls}::{n.creator(m.name)}({sig})",
                       [f"Zon::Ptr<{e}> e = {c.make(e, args)};", f"{x}.set(e, this);",
                        f"notify({c.attr(m)});", "return e;"], "") + [""])


class Queue(Kind):
    """A FIFO queue keyed by increasing 32-bit numbers: a link queue, or with
    `capacity n` a ring of at most n elements that refuses an enqueue when full."""

    reflect_kind = "queue"

    def key_type(self, m):
        return "std::uint32_t"

    def holder(self, m):
        cls = "BoundedQueue" if "capacity" in m.numbers else "LinkQueue"
        return f"Zon::{cls}<{m.types[0]}>"

    def reflect_type(self, m):
        cap = m.numbers.get("capacity")
        return m.types[0] + (f" capacity {cap}" if cap else "")

    def enqueue_lines(self, m, c):
        return [f"std::uint32_t const key = {n.member(m.name)}.enqueue(v);", f"notify({c.attr(m)}, &key);",
                "return key;"]

    def public(self, m, c):
        v, x, a = m.types[0], n.member(m.name), c.attr(m)
        enq = f"std::uint32_t {n.enqueue(m.name)}({c.p(v)} v)"
        if "capacity" in m.numbers:
            # A ring's enqueue and drop are a few instructions: inline, so that an
            # owner that turns the ring over per entry pays no calls.
            enq_drop = (body(enq, self.enqueue_lines(m, c))
                        + [f"{I}// Removes the oldest element without handing it out (observers hear its key)."]
                        + body(f"void {n.drop(m.name)}()",
                               [f"if (auto const oldest = {x}.dropOldest()) {{", f"{I}notify({a}, &*oldest);", "}"]))
        else:
            enq_drop = [f"{I}{enq};"]
        return [*short(f"{self.holder(m)} const & {n.getter(m.name)}() const noexcept", f"return {x};"),
                *short(f"{v} {n.getter(m.name)}(std::uint32_t key) const", f"return {x}.value(key);"),
                *short(f"std::size_t {n.count(m.name)}() const noexcept", f"return {x}.size();"),
                *enq_drop,
                f"{I}{v} {n.dequeue(m.name)}();",
                f"{I}void {n.deleter(m.name)}(std::uint32_t key);",
                f"{I}void {n.delete_all(m.name)}();"]

    def member(self, m, c):
        cap = m.numbers.get("capacity")
        return [f"{I}{self.holder(m)} {n.member(m.name)}{{{cap}}};" if cap else f"{I}{self.holder(m)} {n.member(m.name)};"]

    def source(self, m, c):
        v, x, a = m.types[0], n.member(m.name), c.attr(m)
        # A full ring refuses an enqueue (the runtime's range error, nothing
        # changed): the owner decides what to drop, nothing is lost silently. Its
        # enqueue and drop are inline in the class.
        enq = [] if "capacity" in m.numbers else (
            body(f"std::uint32_t {c.cls}::{n.enqueue(m.name)}({c.p(v)} v)", self.enqueue_lines(m, c), "") + [""])
        return (enq
                + body(f"{v} {c.cls}::{n.dequeue(m.name)}()",
                       [f"auto head = {x}.dequeue();", "if (!head) {", f"{I}return {v}{{}};", "}",
                        f"notify({a}, &head->first);", "return std::move(head->second);"], "")
                + [""]
                + body(f"void {c.cls}::{n.deleter(m.name)}(std::uint32_t key)",
                       notify_if(f"{x}.erase(key)", a, "key", ""), "")
                + [""]
                + body(f"void {c.cls}::{n.delete_all(m.name)}()",
                       ["Hold const hold(this);",
                        f"{x}.eraseEach([this](std::uint32_t const & k) {{ notify({a}, &k); }});"], "")
                + [""])

    def handler(self, m, c):
        return f"virtual void {n.handler(m.name)}(std::uint32_t) {{}}"

    def dispatch(self, m, c):
        return self.key_dispatch(m, "std::uint32_t")


class Refs(CollectionKind):
    """Counted, read-only references to entities owned elsewhere, keyed by each
    entity's own key. Storing one never touches the entity's parent; a null
    argument is refused with the text the schema gives."""

    reflect_kind = "refs"

    def reflect_text(self, m, c):
        return f"Zon::keysText({n.member(m.name)})"

    def element(self, m, c):
        return c.info.entity(m.types[0])

    def key(self, m):
        return m.key_type

    def holder(self, m, c):
        return f"Zon::ValueMap<{m.key_type}, Zon::Ptr<{m.types[0]} const>, {order(m)}>"

    def public(self, m, c):
        e, k, x = m.types[0], m.key_type, n.member(m.name)
        return ([*short(f"Zon::Ptr<{e} const> {n.getter(m.name)}({c.p(k)} key) const", f"return {x}.value(key);"),
                 f"{I}void {n.setter(m.name)}(Zon::Ptr<{e} const> const & e);",
                 *short(f"void {n.creator(m.name)}(Zon::Ptr<{e} const> const & e)", f"{n.setter(m.name)}(e);")]
                + self.common(m, c))

    def source(self, m, c):
        e, x = m.types[0], n.member(m.name)
        key = self.element(m, c).key().name
        out = body(f"void {c.cls}::{n.setter(m.name)}(Zon::Ptr<{e} const> const & e)",
                   ["if (!e) {", f"{I}throw Zon::RangeException({m.default});", "}",
                    f"auto const & key = e->{key}();"] + notify_if(f"{x}.set(key, e)", c.attr(m), "key", ""), "")
        return out + [""] + super().source(m, c)


class Const(Kind):
    """A constant of the class: readable by name, never stored."""

    has_id = False
    reflect_kind = "const"

    def reflect_value(self, m, c):
        return f"{c.cls}::{m.name}()" if m.has("getter") else f"{c.cls}::{m.name}"

    def public(self, m, c):
        t = m.types[0]
        if not m.has("getter"):
            return [f"{I}static constexpr {t} {m.name}{{{m.default}}};"]
        if c.info.by_value(t):
            return [f"{I}static constexpr {t} {m.name}() noexcept {{ return {t}{{{m.default}}}; }}"]
        return [f"{I}static {t} {m.name}() {{ return {t}{{{m.default}}}; }}"]

    def handler(self, m, c):
        return None


class Method(Kind):
    """Hand-written behaviour: declared here, defined in the .cpp beside the schema."""

    has_id = False

    def public(self, m, c):
        if m.text == m.name:  # the constructor, the factory, the hook: declared where they belong
            return []
        return [f"{I}{m.text};"]

    def private_decls(self, m, c):
        if m.text == "constructed":
            return [f"{I}// Written by hand; the constructor calls it last (children made at birth,",
                    f"{I}// an initial member, a check of the key).", f"{I}void constructed();"]
        return []

    def handler(self, m, c):
        return None


EMITTERS = {
    "param": Param(),
    "scalar": Scalar(),
    "counter": Counter(),
    "map": Map(),
    "set": Set(),
    "counters": Counters(),
    "coll": Coll(),
    "child": Child(),
    "queue": Queue(),
    "refs": Refs(),
    "const": Const(),
    "method": Method(),
}
