"""Chooses mutants from the syntax tree: which small bugs a source file could have."""

import functools
import os
import re
from dataclasses import dataclass
from typing import NamedTuple

from clang.cindex import CursorKind, Index, TranslationUnit, TypeKind

SYMMETRIC = {'min', 'max'}  # functions whose arguments can change places
OPERATORS = {
    '<': ['<=', '>='], '<=': ['<', '>'], '>': ['>=', '<='], '>=': ['>', '<'], '==': ['!='], '!=': ['=='],
    '&&': ['||'], '||': ['&&'], '+': ['-'], '-': ['+'], '*': ['/'], '/': ['*'], '%': ['*'],
    '&': ['|'], '|': ['&'], '^': ['|'], '<<': ['>>'], '>>': ['<<'],
    '+=': ['-='], '-=': ['+='], '*=': ['/='], '/=': ['*='], '|=': ['&='], '&=': ['|='], '^=': ['|='],
    '<<=': ['>>='], '>>=': ['<<='], '++': ['--'], '--': ['++'],
}

FUNCTIONS = {CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR,
             CursorKind.CONVERSION_FUNCTION, CursorKind.FUNCTION_TEMPLATE}
VARIABLES = {CursorKind.VAR_DECL, CursorKind.FIELD_DECL, CursorKind.PARM_DECL}
LOOPS = {CursorKind.WHILE_STMT, CursorKind.FOR_STMT, CursorKind.DO_STMT}
CHOICES = {CursorKind.IF_STMT, CursorKind.CONDITIONAL_OPERATOR}
JUMPS = {CursorKind.BREAK_STMT, CursorKind.CONTINUE_STMT, CursorKind.RETURN_STMT}
CASTS = {CursorKind.CSTYLE_CAST_EXPR, CursorKind.CXX_STATIC_CAST_EXPR}
UNEVALUATED = {CursorKind.STATIC_ASSERT, CursorKind.ENUM_DECL, CursorKind.CXX_UNARY_EXPR, CursorKind.TYPE_REF}
ARITHMETIC = {TypeKind.BOOL, TypeKind.CHAR_S, TypeKind.UCHAR, TypeKind.SCHAR, TypeKind.SHORT, TypeKind.USHORT,
              TypeKind.INT, TypeKind.UINT, TypeKind.LONG, TypeKind.ULONG, TypeKind.LONGLONG, TypeKind.ULONGLONG,
              TypeKind.FLOAT, TypeKind.DOUBLE}


@dataclass(frozen=True)
class Edit:
    """Bytes of a file that another text takes the place of; a statement includes its semicolon."""
    begin: int
    end: int
    text: str
    statement: bool = False


@dataclass(frozen=True)
class Mutant:
    """A bug that could be planted."""
    file: str  # from the root of the tree
    function: str
    constexpr: bool  # whether the function is
    edits: tuple

    def described(self, source):
        """How people see it: without offsets, which change with other lines."""
        begin = source.rfind(b'\n', 0, self.edits[0].begin) + 1
        end = source.find(b'\n', self.edits[-1].end)
        after = source[begin:end]
        for edit in reversed(self.edits):
            after = after[:edit.begin - begin] + edit.text.encode() + after[edit.end - begin:]
        return Description(self.file, self.function, stripped_lines(source[begin:end]), stripped_lines(after))


class Description(NamedTuple):
    """A mutant by the lines that it changes."""
    file: str
    function: str
    before: tuple
    after: tuple

    def __str__(self):
        return '\n'.join([f'{self.file}: {self.function}', *(f'- {line}' for line in self.before),
                          *(f'+ {line}' for line in self.after)])


def stripped_lines(text):
    return tuple(line.strip() for line in text.decode().splitlines() if line.strip())


def mutants_of(translation_unit, arguments, files, root):
    """The mutants of those of the files that the translation unit contains, with their descriptions."""
    options = TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD
    unit = Index.create().parse(translation_unit, args=arguments, options=options)
    errors = [str(message) for message in unit.diagnostics if message.severity >= message.Error]
    if errors:
        raise SystemExit('\n'.join(errors))
    found = {}
    for file in files:
        walk = FileMutants(unit, os.path.join(root, file), file)
        found.update((mutant, mutant.described(walk.source)) for mutant in walk.found())
    return found


class FileMutants:
    """Walks over the syntax tree of one file."""

    def __init__(self, unit, path, name):
        self.unit = unit
        self.path = path
        self.name = name
        with open(path, 'rb') as file:
            self.source = file.read()
        self.macros = []
        self.mutants = {}

    def found(self):
        tops = [cursor for cursor in self.unit.cursor.get_children()
                if cursor.location.file and real_path(cursor.location.file.name) == self.path]
        self.macros = [self.extent(cursor) for cursor in tops if cursor.kind == CursorKind.MACRO_INSTANTIATION]
        for cursor in tops:
            self.visit(cursor, None, '', False)
        return sorted(self.mutants.values(), key=lambda mutant: (mutant.edits[0].begin, str(mutant)))

    def visit(self, cursor, parent, function, constexpr):
        begin, end = self.extent(cursor)
        if cursor.kind in UNEVALUATED or (end > begin and self.in_macro(begin, end)):
            return
        if cursor.kind in FUNCTIONS:
            constexpr = 'constexpr' in self.words_before_name(cursor)
        if cursor.kind in FUNCTIONS or (cursor.kind in VARIABLES and not function):
            function = name_of(cursor)
        if cursor.kind == CursorKind.VAR_DECL and 'constexpr' in self.words_before_name(cursor):
            return  # each use of it is mutated
        for edits in self.edits_at(cursor, parent):
            mutant = Mutant(self.name, function, constexpr, tuple(edits))
            if not any(self.in_macro(edit.begin, edit.end, strictly=True) for edit in edits):
                self.mutants.setdefault(mutant.edits, mutant)
        for child in cursor.get_children():
            if not self.is_constant(child, cursor):
                self.visit(child, cursor, function, constexpr)

    def is_constant(self, child, parent):
        """Whether the language wants a constant there: the value of a case, an argument of a template."""
        if parent.kind == CursorKind.CASE_STMT or self.text(parent).startswith('if constexpr'):
            return child == first(parent)
        if parent.kind in VARIABLES and child.kind.is_expression():
            is_bound = parent.type.kind == TypeKind.CONSTANTARRAY and child.kind == CursorKind.INTEGER_LITERAL
            return is_bound or self.extent(child)[0] < parent.location.offset
        return False

    def edits_at(self, cursor, parent):
        """Each list is what one mutant changes."""
        begin, end = self.extent(cursor)
        kind = cursor.kind
        if end <= begin:
            return
        if kind in LOOPS | CHOICES:
            yield from self.ignored_conditions(cursor)
        if kind == CursorKind.CALL_EXPR and not cursor.spelling.startswith('operator'):
            yield from self.swapped_arguments(cursor)
        elif kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR, CursorKind.CALL_EXPR):
            yield from self.other_operators(cursor)
        if kind == CursorKind.UNARY_OPERATOR:
            yield from self.other_unary(cursor)
        if kind in (CursorKind.DECL_REF_EXPR, CursorKind.MEMBER_REF_EXPR) and self.names_constant(cursor):
            yield [Edit(begin, end, f'({self.text(cursor)} + 1)')]
            yield [Edit(begin, end, f'({self.text(cursor)} - 1)')]
        for text in other_literals(kind, self.text(cursor)):
            yield [Edit(begin, end, text)]
        if kind == CursorKind.RETURN_STMT:
            yield from self.negated_result(cursor)
        if parent is not None:
            yield from self.dropped_statement(cursor, parent)

    def ignored_conditions(self, cursor):
        """The condition is evaluated, but what comes of it does not matter."""
        condition = self.condition_of(cursor)
        if condition is None or peeled(condition).kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            return
        for result in ['false'] if cursor.kind in LOOPS else ['true', 'false']:
            yield [Edit(*self.extent(condition), f'({self.text(condition)}, {result})')]

    def condition_of(self, cursor):
        if cursor.kind == CursorKind.CONDITIONAL_OPERATOR:
            return first(cursor)
        opening, closing = (';', ';') if cursor.kind == CursorKind.FOR_STMT else (('(', ';'), ')')
        for child in cursor.get_children():
            begin, end = self.extent(child)
            if (child.kind.is_expression() and begin < end and self.before(begin).endswith(opening)
                    and self.after(end).startswith(closing) and not self.is_constant(child, cursor)):
                return child
        return None

    def swapped_arguments(self, call):
        if call.spelling in SYMMETRIC:
            return
        arguments = [argument for argument in call.get_arguments() if argument is not None]
        for left, right in zip(arguments, arguments[1:]):
            extents = self.extent(left), self.extent(right)
            if any(end <= begin for begin, end in extents) or extents[0][1] > extents[1][0]:
                continue
            if plain_type(left) == plain_type(right) and self.text(left) != self.text(right):
                yield [Edit(*extents[0], self.text(right)), Edit(*extents[1], self.text(left))]

    def other_operators(self, cursor):
        operands = list(cursor.get_children())
        if len(operands) < 2:
            return
        left, right = self.extent(operands[0]), self.extent(operands[-1])
        operator = self.source[left[1]:right[0]].decode().strip()
        begin, end = self.extent(cursor)
        if left[0] != begin or right[1] != end:
            return
        for other in OPERATORS.get(operator, []):
            middle = self.source[left[1]:right[0]].decode().replace(operator, other)
            yield [Edit(begin, end, self.text(operands[0]) + middle + self.text(operands[-1]))]

    def other_unary(self, cursor):
        text = self.text(cursor)
        begin, end = self.extent(cursor)
        if text[:2] in ('++', '--'):
            yield [Edit(begin, end, OPERATORS[text[:2]][0] + text[2:])]
        elif text[-2:] in ('++', '--'):
            yield [Edit(begin, end, text[:-2] + OPERATORS[text[-2:]][0])]
        elif text[0] == '-' or text[0] == '~' or text[0] == '!' and is_bool(first(cursor)):
            yield [Edit(begin, end, text[1:])]

    def negated_result(self, cursor):
        value = first(cursor)
        if value is None or not is_bool(value):
            return
        if peeled(value).kind in (CursorKind.CALL_EXPR, CursorKind.DECL_REF_EXPR, CursorKind.MEMBER_REF_EXPR):
            yield [Edit(*self.extent(value), f'!({self.text(value)})')]

    def dropped_statement(self, cursor, parent):
        begin, end = self.extent(cursor)
        if not self.after(end).startswith(';') or cursor.kind in CASTS:
            return
        if parent.kind == CursorKind.COMPOUND_STMT:
            is_last = cursor == list(parent.get_children())[-1]
        elif parent.kind.is_statement() and self.before(begin).endswith((')', 'else', 'do', ':')):
            is_last = False
        else:
            return
        if cursor.kind.is_expression() or (cursor.kind in JUMPS
                                           and not (cursor.kind == CursorKind.RETURN_STMT and is_last)):
            yield [Edit(begin, self.source.index(b';', end) + 1, '', statement=True)]

    def names_constant(self, cursor):
        named = cursor.referenced
        if named is None or named.kind != CursorKind.VAR_DECL or named.type.get_canonical().kind not in ARITHMETIC:
            return False
        return any(token.spelling == 'constexpr' for token in named.get_tokens())

    def extent(self, cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def text(self, cursor):
        begin, end = self.extent(cursor)
        return self.source[begin:end].decode()

    def before(self, offset):
        return self.source[max(0, offset - 200):offset].decode(errors='ignore').rstrip()

    def after(self, offset):
        return self.source[offset:offset + 200].decode(errors='ignore').lstrip()

    def words_before_name(self, cursor):
        begin = cursor.extent.start.offset
        return self.source[begin:max(begin, cursor.location.offset)].decode().split()

    def in_macro(self, begin, end, strictly=False):
        """Whether a macro makes these bytes; a condition may be one as a whole."""
        return any(first <= begin and end <= last and not (strictly and (first, last) == (begin, end))
                   for first, last in self.macros)


@functools.lru_cache(maxsize=None)
def real_path(name):
    """A header is found by links, too."""
    return os.path.realpath(name)


def other_literals(kind, text):
    if kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
        return ['false' if text == 'true' else 'true']
    if kind == CursorKind.INTEGER_LITERAL:
        number = re.fullmatch(r"(0[xX][\da-fA-F']+|0[bB][01']+|[\d']+)(\w*)", text)
        if number is None:  # of the loop that the compiler makes of a shorter one
            return []
        value = int(number[1].replace("'", ''), 0) if number[1].strip('0') else 0
        return [f'{other}{number[2]}' for other in (value + 1, value - 1) if other >= 0]
    if kind == CursorKind.FLOATING_LITERAL:
        return [f'({text} + 1)']
    if kind == CursorKind.CHARACTER_LITERAL:
        return [f'({text} + 1)']
    return []


def first(cursor):
    return next(cursor.get_children(), None)


def peeled(cursor):
    """What is below the nodes that the tree has for conversions."""
    while cursor.kind == CursorKind.UNEXPOSED_EXPR and first(cursor) is not None:
        cursor = first(cursor)
    return cursor


def is_bool(cursor):
    return cursor is not None and peeled(cursor).type.get_canonical().kind == TypeKind.BOOL


def plain_type(cursor):
    return cursor.type.get_canonical().spelling.replace('const ', '').rstrip(' &')


def name_of(function):
    """The name with those of its classes and named spaces."""
    names = []
    while function is not None and function.kind != CursorKind.TRANSLATION_UNIT:
        if function.spelling:
            names.insert(0, function.spelling)
        function = function.semantic_parent
    return '::'.join(names)
