"""Finds the places of a source file that can be mutated, by what the compiler makes of it.

A place is a dictionary: file, start and end (byte offsets), line, last (line), kind, label, and `pieces`: the mutated
text, made of strings and of [start, end] ranges of the file.
"""
import pathlib
import re

from clang import cindex

K = cindex.CursorKind
OPERATORS = {
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",),
    "&&": ("||",), "||": ("&&",), "+": ("-",), "-": ("+",), "*": ("+",), "/": ("*",), "%": ("*",),
    "&": ("|",), "|": ("&",), "^": ("&",), "<<": (">>",), ">>": ("<<",),
    "+=": ("-=",), "-=": ("+=",), "*=": ("+=",), "|=": ("&=",), "&=": ("|=",), "<<=": (">>=",), ">>=": ("<<=",),
}
# What the compiler evaluates cannot change at run time.
NEVER_INSIDE = {K.STATIC_ASSERT, K.ENUM_DECL, K.ENUM_CONSTANT_DECL, K.TEMPLATE_TYPE_PARAMETER,
                K.TEMPLATE_NON_TYPE_PARAMETER, K.TYPE_ALIAS_DECL, K.TYPEDEF_DECL}
DROPPED = {K.CALL_EXPR, K.BINARY_OPERATOR, K.COMPOUND_ASSIGNMENT_OPERATOR, K.UNARY_OPERATOR, K.CXX_DELETE_EXPR,
           K.BREAK_STMT, K.CONTINUE_STMT}
BODIES = {K.COMPOUND_STMT, K.IF_STMT, K.FOR_STMT, K.WHILE_STMT, K.CXX_FOR_RANGE_STMT, K.CASE_STMT, K.DEFAULT_STMT}
COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)


def places(root, file):
    """All places of the file, in the order of their offsets."""
    unit = cindex.Index.create().parse(str(root / file), args=["-std=c++20", "-xc++", f"-I{root}"])
    errors = [d for d in unit.diagnostics if d.severity >= cindex.Diagnostic.Error]
    if errors:
        raise RuntimeError(f"{file}: {errors[0].spelling}")
    finder = Finder(root, file)
    for child in unit.cursor.get_children():
        if child.location.file and child.location.file.name == str(root / file):
            finder.walk(child, None)
    return sorted(finder.found, key=lambda place: (place["start"], place["end"], place["label"]))


class Finder:
    def __init__(self, root, file):
        self.file = file
        self.text = (pathlib.Path(root) / file).read_bytes().decode("latin-1")
        self.found = []
        self.seen = set()

    def span(self, cursor):
        return [cursor.extent.start.offset, cursor.extent.end.offset]

    def source(self, span):
        return self.text[span[0]:span[1]]

    def add(self, span, kind, after, pieces):
        before = " ".join(COMMENT.sub("", self.source(span)).split())
        key = (*span, kind, after)
        if key in self.seen or not before:
            return
        self.seen.add(key)
        line = self.text.count("\n", 0, span[0]) + 1
        self.found.append({
            "file": self.file, "start": span[0], "end": span[1], "line": line,
            "last": line + self.source(span).count("\n"), "kind": kind,
            "label": f"{before} => {after}" if after else f"{before} => (dropped)", "pieces": pieces})

    def walk(self, cursor, parent):
        if cursor.kind in NEVER_INSIDE or self.is_constant(cursor):
            return
        self.look(cursor, parent)
        children = list(cursor.get_children())
        if cursor.kind == K.CASE_STMT:
            children = children[1:]
        if cursor.kind in (K.VAR_DECL, K.FIELD_DECL, K.PARM_DECL):
            if cursor.type.kind == cindex.TypeKind.CONSTANTARRAY:
                return
            children = [c for c in children if c.extent.start.offset > cursor.location.offset]  # not its type
        for child in children:
            self.walk(child, cursor)

    def is_constant(self, cursor):
        if cursor.kind == K.FUNCTION_DECL:
            return re.match(r"(static |inline )*consteval ", self.source(self.span(cursor))) is not None
        if cursor.kind != K.VAR_DECL:
            return False
        return re.search(r"\bconst(expr|init)\b", self.source(self.span(cursor))) is not None

    def look(self, cursor, parent):
        kind, span = cursor.kind, self.span(cursor)
        if kind in (K.BINARY_OPERATOR, K.COMPOUND_ASSIGNMENT_OPERATOR):
            self.operator(span, [self.span(c) for c in cursor.get_children()])
        elif kind == K.CALL_EXPR and re.fullmatch(r"operator[=!<>]=?", cursor.spelling):
            self.operator(span, [self.span(c) for c in cursor.get_arguments()])
        elif kind == K.UNARY_OPERATOR:
            self.unary(cursor, span)
        elif kind == K.INTEGER_LITERAL and re.fullmatch(r"[0-9][\w']*", self.source(span)) and \
                not self.text[:span[0]].rstrip().endswith("<"):
            self.add(span, "constant", f"{self.source(span)} + 1", ["(", span, " + 1)"])
        elif kind == K.CXX_BOOL_LITERAL_EXPR and self.source(span) in ("true", "false"):
            other = "false" if self.source(span) == "true" else "true"
            self.add(span, "constant", other, [other])
        elif kind == K.CHARACTER_LITERAL and self.source(span).startswith("'"):
            self.add(span, "constant", f"{self.source(span)} + 1", ["static_cast<char>(", span, " + 1)"])
        if kind == K.IF_STMT:
            self.condition(cursor)
        if parent is not None and parent.kind in BODIES:
            self.statement(cursor, parent, span)

    def operator(self, span, operands):
        if len(operands) != 2 or operands[0][1] >= operands[1][0]:
            return
        between = COMMENT.sub("", self.text[operands[0][1]:operands[1][0]]).strip()
        for other in OPERATORS.get(between, ()):
            left, right = (" ".join(COMMENT.sub("", self.source(o)).split()) for o in operands)
            self.add(span, "operator", f"{left} {other} {right}", [operands[0], f" {other} ", operands[1]])

    def unary(self, cursor, span):
        operand = [self.span(c) for c in cursor.get_children()]
        text = self.source(span)
        if len(operand) != 1:
            return
        inner = " ".join(self.source(operand[0]).split())
        if text.startswith("!"):
            self.add(span, "operator", inner, ["static_cast<bool>(", operand[0], ")"])
        elif text.startswith("-") and not text.startswith("--"):
            self.add(span, "operator", inner, ["(", operand[0], ")"])
        for sign, other in (("++", "--"), ("--", "++")):
            if text.startswith(sign):
                self.add(span, "operator", other + inner, [other, operand[0]])
            elif text.endswith(sign):
                self.add(span, "operator", inner + other, [operand[0], other])

    def condition(self, cursor):
        """Negates a condition that is no operator by itself (those have mutants of their own)."""
        head = next(cursor.get_children(), None)
        if head is None or not head.kind.is_expression():
            return
        span = self.span(head)
        while head.kind in (K.UNEXPOSED_EXPR, K.PAREN_EXPR) and len(list(head.get_children())) == 1:
            head = next(head.get_children())
        if head.kind not in (K.BINARY_OPERATOR, K.UNARY_OPERATOR):
            self.add(span, "operator", f"!({' '.join(self.source(span).split())})", ["!(", span, ")"])

    def statement(self, cursor, parent, span):
        children = list(parent.get_children())
        place = next((i for i, child in enumerate(children) if child == cursor), 0)
        is_body = parent.kind == K.COMPOUND_STMT or place == len(children) - 1 or (
            parent.kind == K.IF_STMT and place > 0)
        end = re.compile(r"\s*;").match(self.text, span[1])
        if not is_body or not end:
            return
        inner = cursor
        while inner.kind == K.UNEXPOSED_EXPR and len(list(inner.get_children())) == 1:
            inner = next(inner.get_children())
        returns = cursor.kind == K.RETURN_STMT and parent.kind == K.IF_STMT
        if inner.kind in DROPPED or returns:
            self.add([span[0], end.end()], "statement", "", [])
