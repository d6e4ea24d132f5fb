"""Finds what can be switched off in a source: statements, conditions and constants."""
import json
import re
import shlex
from dataclasses import dataclass
from pathlib import Path

from clang.cindex import Config, CursorKind, Index, StorageClass, TranslationUnit, TypeKind

if not Config.loaded:
    libraries = sorted(Path("/usr/lib").glob("llvm-*/lib/libclang*.so*"))
    if libraries:
        Config.set_library_file(str(libraries[-1]))

STATEMENTS = {
    CursorKind.CALL_EXPR, CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR,
    CursorKind.UNARY_OPERATOR, CursorKind.UNEXPOSED_EXPR, CursorKind.CXX_DELETE_EXPR,
    CursorKind.BREAK_STMT, CursorKind.CONTINUE_STMT, CursorKind.CXX_FOR_RANGE_STMT,
    CursorKind.FOR_STMT, CursorKind.WHILE_STMT, CursorKind.PAREN_EXPR,
}
BODIES = {
    CursorKind.IF_STMT, CursorKind.FOR_STMT, CursorKind.WHILE_STMT, CursorKind.DO_STMT,
    CursorKind.CXX_FOR_RANGE_STMT,
}
LITERALS = {
    CursorKind.INTEGER_LITERAL, CursorKind.CXX_BOOL_LITERAL_EXPR, CursorKind.STRING_LITERAL,
    CursorKind.CHARACTER_LITERAL, CursorKind.FLOATING_LITERAL,
}
FUNCTIONS = {
    CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR,
    CursorKind.FUNCTION_TEMPLATE, CursorKind.CONVERSION_FUNCTION,
}
INTEGERS = {
    TypeKind.BOOL, TypeKind.CHAR_U, TypeKind.UCHAR, TypeKind.USHORT, TypeKind.UINT, TypeKind.ULONG,
    TypeKind.ULONGLONG, TypeKind.CHAR_S, TypeKind.SCHAR, TypeKind.SHORT, TypeKind.INT, TypeKind.LONG,
    TypeKind.LONGLONG, TypeKind.DOUBLE,
}
# They say what holds anyway; a release build leaves the first out.
CLAIMS = {"Q_ASSERT", "Q_UNUSED", "Q_OBJECT", "Q_ASSERT_X"}


@dataclass
class Site:
    """A place in a source and what is put around it; offsets count bytes."""
    path: str
    line: int
    kind: str
    function: str
    text: str
    start: int
    end: int
    before: str  # with {} for the switch's number
    after: str
    for_compiler: bool  # may be worked out by the compiler alone
    number: int = -1

    def key(self):
        return f"{self.path}: {self.function}: {self.kind}: {self.text}"


class Source:
    """One file, walked once."""

    def __init__(self, path, relative, macros):
        self.path = relative
        self.bytes = path.read_bytes()
        self.macros = macros
        self.sites = []
        self.function = ""
        self.is_constexpr = False

    def text(self, start, end):
        return self.bytes[start:end].decode()

    def is_in_macro(self, start, end):
        return any(m_start <= start and end <= m_end for m_start, m_end, _ in self.macros)

    def macro_at(self, start):
        return next((name for m_start, _, name in self.macros if m_start == start), None)

    def add(self, node, kind, before, after=""):
        start, end = node.extent.start.offset, node.extent.end.offset
        if end <= start or node.extent.start.file is None:
            return  # nothing that was written
        text = re.sub(r"\s+", " ", self.text(start, end))[:90]
        self.sites.append(Site(self.path, node.extent.start.line, kind, self.function, text, start, end,
                               before, after, self.is_constexpr))

    # What is switched off

    def add_statement(self, node):
        start, end = node.extent.start.offset, node.extent.end.offset
        macro = self.macro_at(start)
        if macro in CLAIMS or (macro is None and self.is_in_macro(start, end)):
            return
        if node.kind in {CursorKind.FOR_STMT, CursorKind.WHILE_STMT} and macro is None:
            return  # its condition says it
        self.add(node, "statement off", "if (mutation::is({})) {{}} else ")

    def add_condition(self, node, values=("false", "true")):
        start, end = node.extent.start.offset, node.extent.end.offset
        if self.is_in_macro(start, end) or start == end:
            return
        for value in values:
            self.add(node, f"always {value}",
                     f"(mutation::is({{}}) ? {value} : static_cast<bool>(", "))")

    def is_template_argument(self, start, end):
        """Between angle brackets, where only the compiler reads it."""
        line_start = self.bytes.rfind(b"\n", 0, start) + 1
        return (re.search(r"\w<[^<>;()]*$", self.text(line_start, start)) is not None
                and self.bytes[end:end + 1] == b">")

    def add_constant(self, node):
        start, end = node.extent.start.offset, node.extent.end.offset
        if not self.is_in_macro(start, end) and not self.is_template_argument(start, end):
            self.add(node, "another constant", "mutation::changed({}, ", ")")

    # The walk

    def walk(self, node):
        if node.kind in FUNCTIONS:
            self.walk_function(node)
            return
        if node.kind in {CursorKind.ENUM_DECL, CursorKind.STATIC_ASSERT} or is_named_constant(node):
            return
        if node.kind == CursorKind.CXX_UNARY_EXPR:
            return  # sizeof
        if node.kind == CursorKind.UNEXPOSED_DECL and self.starts_constexpr(node):
            return  # a variable that is a template
        if node.kind == CursorKind.CASE_STMT:
            self.walk_case(node)
            return
        self.add_sites_of(node)
        outer = self.is_constexpr
        if node.kind == CursorKind.VAR_DECL and node.storage_class == StorageClass.STATIC:
            self.is_constexpr = True  # its first value may stand in the program as it is
        self.walk_children(node)
        self.is_constexpr = outer

    def walk_function(self, node):
        outer = self.function, self.is_constexpr
        self.function, self.is_constexpr = node.spelling, self.starts_constexpr(node)
        self.walk_children(node)
        self.function, self.is_constexpr = outer

    def starts_constexpr(self, node):
        head = re.split(r"[({=]", self.text(node.extent.start.offset, node.extent.end.offset), 1)[0]
        return "constexpr" in head

    def walk_children(self, node):
        children = list(node.get_children())
        if node.kind == CursorKind.IF_STMT and self.is_constexpr_if(node):
            children = children[1:]
        for child in children:
            self.walk(child)

    def is_constexpr_if(self, node):
        start = node.extent.start.offset
        return bool(re.match(r"if\s+constexpr", self.text(start, start + 20)))

    def walk_case(self, node):
        children = list(node.get_children())
        if children[-1].kind in STATEMENTS:
            self.add_statement(children[-1])
        self.walk(children[-1])

    def add_sites_of(self, node):
        children = list(node.get_children())
        if node.kind in LITERALS:
            self.add_constant(node)
        elif node.kind == CursorKind.DECL_REF_EXPR and node.referenced is not None:
            if is_named_constant(node.referenced):
                self.add_constant(node)
        elif node.kind == CursorKind.COMPOUND_STMT:
            for child in children:
                if child.kind in STATEMENTS or is_bare_return(child):
                    self.add_statement(child)
        elif node.kind == CursorKind.RETURN_STMT and children:
            if children[0].type.get_canonical().kind == TypeKind.BOOL and children[0].kind not in LITERALS:
                self.add_condition(children[0])
        elif node.kind == CursorKind.CONDITIONAL_OPERATOR:
            self.add_condition(children[0])
        elif node.kind == CursorKind.BINARY_OPERATOR:
            self.add_operands(children)
        if node.kind in BODIES:
            self.add_body(node, children)

    def add_operands(self, children):
        if len(children) != 2:
            return
        between = self.text(children[0].extent.end.offset, children[1].extent.start.offset)
        off = {"&&": "true", "||": "false"}.get(re.sub(r"[\s()]|//.*", "", between))
        if off:
            for operand in children:
                self.add_condition(operand, (off,))

    def add_body(self, node, children):
        condition = self.condition_of(node, children)
        if condition is not None:
            self.add_condition(condition, ("false", "true") if node.kind == CursorKind.IF_STMT
                               else ("false",))
        for child in self.bodies_of(node, children, condition):
            if child.kind in STATEMENTS or is_bare_return(child):
                self.add_statement(child)

    @staticmethod
    def bodies_of(node, children, condition):
        if node.kind == CursorKind.DO_STMT:
            return children[:1]
        if node.kind != CursorKind.IF_STMT:
            return children[-1:]
        return children[children.index(condition) + 1:] if condition is not None else children[2:]

    def condition_of(self, node, children):
        if node.kind == CursorKind.DO_STMT:
            return children[-1]
        if node.kind == CursorKind.CXX_FOR_RANGE_STMT:
            return None
        if node.kind == CursorKind.FOR_STMT:
            return self.for_condition(node, children)
        if self.is_constexpr_if(node):
            return None
        if children[0].kind.is_expression():
            return children[0]
        ends_in_semicolon = self.bytes[children[0].extent.end.offset - 1:][:1] == b";"
        return children[1] if ends_in_semicolon else None

    def for_condition(self, node, children):
        """What stands between the two semicolons of the head."""
        depth, semicolons = 0, []
        for token in node.get_tokens():
            depth += (token.spelling in "([{") - (token.spelling in ")]}")
            if token.spelling == ";" and depth == 1:
                semicolons.append(token.extent.start.offset)
            if depth == 0 and token.spelling == ")":
                break
        if len(semicolons) != 2:
            return None
        return next((child for child in children if child.kind.is_expression()
                     and semicolons[0] <= child.extent.start.offset
                     and child.extent.end.offset <= semicolons[1]), None)


def is_bare_return(node):
    return node.kind == CursorKind.RETURN_STMT and not list(node.get_children())


def is_named_constant(node):
    """Whether the compiler knows its value, so that only its uses can be changed."""
    if node.kind != CursorKind.VAR_DECL:
        return False
    if node.type.get_canonical().kind not in INTEGERS:
        return any(token.spelling == "constexpr" for token in node.get_tokens())
    if any(token.spelling == "constexpr" for token in node.get_tokens()):
        return True
    initial = list(node.get_children())[-1:]
    return node.type.is_const_qualified() and bool(initial) and initial[0].kind in LITERALS


def clang_arguments(command):
    """What the parser needs of a compiler's command line."""
    words = shlex.split(command)
    kept, take_next = [], False
    for word in words:
        if take_next or word.startswith(("-I", "-D", "-std=")):
            kept.append(word)
            take_next = False
        elif word == "-isystem":
            kept.append(word)
            take_next = True
    return kept


def sites_of_room(root, build, room):
    """All sites of a room's sources and headers, in the order of their files and places."""
    commands = json.loads((build / "compile_commands.json").read_text())
    sources = {}
    for entry in commands:
        path = Path(entry["file"])
        if not path.is_relative_to(root / room):
            continue
        unit = Index.create().parse(str(path), clang_arguments(entry["command"]),
                                    options=TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
        severe = [d for d in unit.diagnostics if d.severity >= 3]
        if severe:
            raise SystemExit(f"{path} does not parse: {severe[0]}")
        walk_unit(unit, root, room, sources)
    sites = [site for name in sorted(sources) for site in sources[name].sites]
    for number, site in enumerate(sites):
        site.number = number
    return sites


def walk_unit(unit, root, room, sources):
    macros, new = {}, {}
    for node in unit.cursor.get_children():
        file = node.location.file and Path(node.location.file.name)
        if not file or not file.is_relative_to(root / room):
            continue
        name = str(file.relative_to(root))
        if node.kind == CursorKind.MACRO_INSTANTIATION:
            macros.setdefault(name, []).append(
                (node.extent.start.offset, node.extent.end.offset, node.spelling))
        if name in sources or node.kind.is_preprocessing():
            continue
        if name not in new:
            new[name] = Source(file, name, macros.get(name, []))
        new[name].walk(node)
    for name, source in new.items():
        add_literal_macros(source)
        source.sites = sorted(unique(source.sites), key=lambda site: (site.start, -site.end))
    sources.update(new)


def unique(sites):
    """Each site once; the parser shows some places again for each use of a template."""
    return {(site.start, site.end, site.before): site for site in sites}.values()


def add_literal_macros(source):
    """Texts in the toolkit's own macro for them."""
    for start, end, name in source.macros:
        if name == "QStringLiteral":
            line = source.bytes.count(b"\n", 0, start) + 1
            source.sites.append(Site(source.path, line, "another constant", "", source.text(start, end),
                                     start, end, "mutation::changedText({}, ", ")", False))


def rewritten(text, sites):
    """The bytes of a source with the switches of these sites built in; outer ones stand first."""
    insertions = []
    for order, site in enumerate(sites):
        length = site.end - site.start
        insertions.append((site.start, 1, -length, order, site.before.format(site.number)))
        if site.after:
            insertions.append((site.end, 0, length, -order, site.after))
    for place, *_, piece in sorted(insertions, reverse=True):
        text = text[:place] + piece.encode() + text[place:]
    return text
