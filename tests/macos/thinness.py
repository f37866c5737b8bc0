# SPDX-License-Identifier: MIT
"""The layer stays thin: it is a small part of the program, and no Objective-C++ of it decides by a text or a geometry."""

import pathlib
import re

import clang.cindex as ci

import compiling
import declarations

Kind = ci.CursorKind
LIMIT = 0.20
SOURCES = (".h", ".cpp", ".mm")
TEXTS = re.compile(r"\b(QString|QStringView|QLatin1String\w*|NSString|CFStringRef|basic_string\w*)\b|\bchar \*")
GEOMETRIES = re.compile(
    r"\b(Rect|Point|Size|Screen|QPointF|QRectF|QSizeF|CG(Point|Size|Rect|Float)|NS(Point|Size|Rect)|Coordinate|"
    r"CLLocationCoordinate2D|MKCoordinate(Region|Span)|MapRegion|MapSpan)\b"
)
CONDITIONALS = (Kind.IF_STMT, Kind.WHILE_STMT, Kind.DO_STMT, Kind.SWITCH_STMT, Kind.CONDITIONAL_OPERATOR)
COMPARISON = re.compile(r"operator(==|!=|<|>|<=|>=|<=>)$")


def count_lines(folder):
    files = [path for path in (compiling.ROOT / folder).rglob("*") if path.suffix in SOURCES]
    return sum(len(path.read_text().splitlines()) for path in files)


def share():
    """The part of the program's lines that is the layer's."""
    layer, application = count_lines("platform/macos"), count_lines("app")
    return layer, application, layer / (layer + application)


def kind_of_value(type_):
    """What a value of the type would be to a decision: a text, a geometry, or nothing to mind."""
    spelling = type_.spelling + " " + type_.get_canonical().spelling
    if type_.get_canonical().kind in (ci.TypeKind.DOUBLE, ci.TypeKind.FLOAT) or GEOMETRIES.search(spelling):
        return "geometry"
    return "text" if TEXTS.search(spelling) else None


def is_native_pointer(type_):
    return type_.get_canonical().kind in (ci.TypeKind.OBJCOBJECTPOINTER, ci.TypeKind.NULLPTR)


def values_in(cursor):
    """The expressions that a condition is made of; a reference to an object is asked no more than whether it is there."""
    is_address = cursor.kind == Kind.UNARY_OPERATOR and cursor.type.get_canonical().kind == ci.TypeKind.POINTER
    if cursor.kind == Kind.LAMBDA_EXPR or is_address:
        return
    if cursor.kind == Kind.STRING_LITERAL or cursor.kind == Kind.OBJC_STRING_LITERAL:
        yield cursor, "text"
    elif cursor.kind.is_expression() and cursor.kind != Kind.OBJC_MESSAGE_EXPR and not is_native_pointer(cursor.type):
        kind = kind_of_value(cursor.type) if "optional" not in cursor.type.spelling else None
        if kind is not None:
            yield cursor, kind
    if cursor.kind == Kind.OBJC_MESSAGE_EXPR:
        receiver = next(cursor.get_children(), None)
        if receiver is not None and kind_of_value(receiver.type) == "text":
            yield cursor, "text"
        return
    # What a call is given decides nothing here; what it answers was looked at above.
    if cursor.kind == Kind.CALL_EXPR and not COMPARISON.search(cursor.spelling or ""):
        return
    for child in cursor.get_children():
        yield from values_in(child)


def conditions(cursor):
    children = list(cursor.get_children())
    if cursor.kind in CONDITIONALS and children:
        yield children[-1] if cursor.kind == Kind.DO_STMT else children[0]
    elif cursor.kind == Kind.FOR_STMT and len(children) > 1:
        yield from (child for child in children[:-1] if child.kind == Kind.BINARY_OPERATOR)
    elif cursor.kind == Kind.CALL_EXPR and COMPARISON.search(cursor.spelling or ""):
        yield cursor
    elif cursor.kind == Kind.BINARY_OPERATOR and cursor.type.get_canonical().kind == ci.TypeKind.BOOL:
        yield cursor


def decisions(source):
    """The places where a source, or one of the layer that it includes, decides by a text or a geometry."""
    found = {}
    for cursor in declarations.cursors_in(declarations.parse(source), declarations.is_of_the_layer):
        for condition in conditions(cursor):
            for value, kind in values_in(condition):
                found[f"{pathlib.Path(value.location.file.name).name}:{value.location.line}: decides by a {kind}"] = None
    return list(found)
