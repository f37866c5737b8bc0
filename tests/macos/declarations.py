# SPDX-License-Identifier: MIT
"""Two checks with libclang: that every method of the layer's classes is declared somewhere, and that the declarations
of the SDK agree with a folder of facts about it.

A facts folder holds one folder for each description of the SDK, with one JSON file for each framework: classes,
functions, constants, as PyObjC's bridge metadata names and encodes them. It is no part of the project.
"""

import functools
import json
import pathlib
import re

import clang.cindex as ci

import compiling

Kind = ci.CursorKind
Type = ci.TypeKind
DECLARATIONS = compiling.HERE / "declarations"
METHODS = (Kind.OBJC_INSTANCE_METHOD_DECL, Kind.OBJC_CLASS_METHOD_DECL)
INTERFACES = (Kind.OBJC_INTERFACE_DECL, Kind.OBJC_PROTOCOL_DECL, Kind.OBJC_CATEGORY_DECL)

# What no facts describe. The first step of the workflow on macOS compiles against the SDK itself, which settles them.
UNDESCRIBED = {
    "AXUIElementCreateSystemWide",
    "AXUIElementGetPid",
    "AXUIElementSetMessagingTimeout",
    "NSApplication",
    "NSApplicationActivateAllWindows",
    "NSData",
    "NSMutableArray",
    "NSProcessInfo",
    "NSUserDefaults",
    "NSViewHeightSizable",
    "NSViewWidthSizable",
}
# Newer than what the program may call; the mutations use it.
MADE_UP = {"newInTwentySix", "setNewInTwentySix:"}


@functools.cache
def resource_folder():
    ci.Config.set_library_file("/usr/lib/llvm-19/lib/libclang-19.so.1")
    return compiling.run([compiling.COMPILER, "-print-resource-dir"]).strip()


def cursors_in(unit, is_wanted):
    """Everything that stands in a wanted file. What is included is most of a unit, and slow to walk."""
    for top in unit.cursor.get_children():
        file = top.location.file
        if file is not None and is_wanted(pathlib.Path(file.name).resolve()):
            yield from top.walk_preorder()


def is_of_the_layer(path):
    return path.suffix == ".mm"


def parse(source):
    """The syntax tree of a source, compiled for a Mac."""
    resources = resource_folder()
    arguments = [
        *compiling.FOR_A_MAC,
        *compiling.OBJECTIVE_C,
        *compiling.COMMON,
        f"-resource-dir={resources}",
    ]
    unit = ci.Index.create().parse(str(source), args=arguments)
    errors = [str(diagnostic) for diagnostic in unit.diagnostics if diagnostic.severity >= ci.Diagnostic.Error]
    if errors:
        raise compiling.Failure("\n".join(errors))
    return unit


def interface_name(cursor):
    if cursor.kind != Kind.OBJC_CATEGORY_DECL:
        return cursor.spelling
    return next(child.spelling for child in cursor.get_children() if child.kind == Kind.OBJC_CLASS_REF)


def undeclared_methods(source):
    """The methods of the source's classes that neither they nor what they inherit or adopt declares. The compiler takes
    a misspelt delegate method in silence, since those are optional."""
    declared, parents, implementations = {}, {}, []
    for cursor in cursors_in(parse(source), lambda path: is_of_the_layer(path) or DECLARATIONS in path.parents):
        if cursor.kind in INTERFACES:
            name = interface_name(cursor)
            for child in cursor.get_children():
                if child.kind in (Kind.OBJC_SUPER_CLASS_REF, Kind.OBJC_PROTOCOL_REF):
                    parents.setdefault(name, set()).add((child.kind, child.spelling))
                elif child.kind in METHODS:
                    declared.setdefault((cursor.kind == Kind.OBJC_PROTOCOL_DECL, name), set()).add(child.spelling)
        elif cursor.kind == Kind.OBJC_IMPLEMENTATION_DECL:
            implementations.append(cursor)

    def is_declared(name, is_protocol, method, seen):
        if (name, is_protocol) in seen:
            return False
        seen.add((name, is_protocol))
        return method in declared.get((is_protocol, name), ()) or any(
            is_declared(parent, kind == Kind.OBJC_PROTOCOL_REF, method, seen) for kind, parent in parents.get(name, ())
        )

    return [
        f"{implementation.spelling} {child.spelling}"
        for implementation in implementations
        for child in implementation.get_children()
        if child.kind in METHODS
        and child.is_definition()
        and not is_declared(implementation.spelling, False, child.spelling, set())
    ]


class Facts:
    """What one description says of the SDK."""

    def __init__(self, folder):
        definitions = [json.loads(path.read_text())["definitions"] for path in sorted(folder.glob("*.json"))]

        def merged(key):
            return {name: value for each in definitions for name, value in each.get(key, {}).items()}

        self.functions, self.constants, self.externs = merged("functions"), merged("enum"), merged("externs")
        self.classes = {}
        for each in definitions:
            for section in ("classes", "formal_protocols", "informal_protocols"):
                for name, value in each.get(section, {}).items():
                    self._add_class(name, value)

    def _add_class(self, name, value):
        entry = self.classes.setdefault(name, {"super": None, "protocols": set(), "methods": {}})
        entry["super"] = value.get("super") or entry["super"]
        entry["protocols"].update(value.get("protocols") or value.get("implements") or [])
        for method in value.get("methods", []):
            entry["methods"][("+" if method["class_method"] else "-") + method["selector"]] = method
        for prop in value.get("properties", []):
            attributes = {
                (item[0] if isinstance(item, list) else item): (item[1] if isinstance(item, list) else True)
                for item in prop.get("attributes", [])
            }
            own = prop["name"]
            read = {"typestr": prop["typestr"]}
            dates = {key: prop.get(key) for key in ("introduced", "deprecated")}
            setter = attributes.get("setter", f"set{own[0].upper()}{own[1:]}:")
            for sign in "+-":  # Older descriptions do not say which properties are the class's.
                entry["methods"].setdefault(sign + attributes.get("getter", own), {**dates, "retval": read, "args": []})
                if "readonly" not in attributes:
                    written = {**dates, "retval": {"typestr": "v"}, "args": [read]}
                    entry["methods"].setdefault(sign + setter, written)

    def method(self, name, selector):
        while name and name in self.classes:
            entry = self.classes[name]
            if selector in entry["methods"]:
                return entry["methods"][selector]
            for protocol in entry["protocols"]:
                if selector in self.classes.get(protocol, {"methods": {}})["methods"]:
                    return self.classes[protocol]["methods"][selector]
            name = entry["super"]
        return self.classes.get("NSObject", {"methods": {}})["methods"].get(selector)


def normalised(encoding):
    """An encoding without offsets, qualifiers and names of classes."""
    encoding = re.sub(r"(\{_*\w+)|\d+", lambda match: match.group(1) or "", encoding)
    encoding = re.sub(r"[rnNoORV](?=[@\^\*\{#:])", "", encoding)
    encoding = encoding.replace("^{?=Q^@^Q[Q]}", "^{NSFastEnumerationState}").replace("Z", "B")
    encoding = re.sub(r"\^\{(_*\w+)=?[^{}]*\}", r"^{\1}", encoding)
    encoding = re.sub(r"@\?<[^>]*>", "@?", encoding)
    encoding = re.sub(r'@"[^"]*"', "@", encoding)
    encoding = re.sub(r"\{_?(\w+)=", r"{\1=", encoding)
    # Anonymous structures, blocks, and bytes behind a pointer have several spellings.
    return encoding.replace("@?", "@").replace("^?", "^@").replace("?", "@").replace("^c", "*").replace("@@", "@#")


SIMPLE = {
    Type.BOOL: "B",
    Type.UCHAR: "C",
    Type.SCHAR: "c",
    Type.CHAR_S: "c",
    Type.INT: "i",
    Type.UINT: "I",
    Type.LONG: "q",
    Type.ULONG: "Q",
    Type.LONGLONG: "q",
    Type.ULONGLONG: "Q",
    Type.DOUBLE: "d",
    Type.FLOAT: "f",
    Type.VOID: "v",
    Type.OBJCOBJECTPOINTER: "@",
    Type.OBJCID: "@",
    Type.SHORT: "s",
    Type.USHORT: "S",
}


def encoded(type_):
    """The encoding of a C type."""
    type_ = type_.get_canonical()
    if type_.kind in SIMPLE:
        return SIMPLE[type_.kind]
    if type_.kind == Type.ENUM:
        return encoded(type_.get_declaration().enum_type)
    if type_.kind == Type.POINTER:
        pointee = type_.get_pointee()
        is_record = pointee.get_canonical().kind == Type.RECORD
        return f"^{{{pointee.get_declaration().spelling}}}" if is_record else "^" + encoded(pointee)
    if type_.kind == Type.RECORD:
        fields = "".join(encoded(field.type) for field in type_.get_fields())
        return f"{{{type_.get_declaration().spelling}={fields}}}"
    return "?"


def loosely(encoding):
    """For functions: the descriptions write CFTypeRef as an object, and Boolean in three ways."""
    return re.sub(r"[BCZ]", "b", normalised(encoding).replace("^v", "@").replace("^@", "@")).strip()


class Comparison:
    """Compares the declarations with the facts of two versions of the SDK."""

    def __init__(self, folder):
        self.descriptions = [Facts(path) for path in sorted(pathlib.Path(folder).iterdir()) if path.is_dir()]
        if not self.descriptions:
            raise compiling.Failure(f"{folder} holds no description of the SDK")
        self.problems, self.undescribed = [], set()
        self.counts = {"methods": 0, "functions": 0, "constants": 0}

    def problem(self, *parts):
        self.problems.append(" ".join(str(part) for part in parts))

    def known(self, name, found, what):
        """The first description that knows the name; a problem when none does and none needs to."""
        if found:
            return found[0]
        if name in UNDESCRIBED:
            self.undescribed.add(name)
        elif what not in MADE_UP:
            self.problem("the facts know nothing of", name, what)
        return None

    def check_dates(self, what, found):
        for fact in found:
            if fact.get("deprecated") and float(str(fact["deprecated"]).split(".")[0]) <= 15:
                self.problem(what, "is deprecated since", fact["deprecated"])
            introduced = tuple(int(part) for part in str(fact.get("introduced") or "0").split(".")[:2])
            if introduced > (15, 9):
                self.problem(what, "came with", fact["introduced"])

    def method(self, cursor):
        owner = cursor.semantic_parent.spelling
        if owner == "NSObject":
            return  # Declared by the runtime.
        sign = "+" if cursor.kind == Kind.OBJC_CLASS_METHOD_DECL else "-"
        found = [fact for each in self.descriptions if (fact := each.method(owner, sign + cursor.spelling))]
        self.counts["methods"] += 1
        fact = self.known(owner, found, cursor.spelling)
        if fact is None:
            return
        self.check_dates(f"{owner} {sign}{cursor.spelling}", found)
        arguments = "".join(argument["typestr"] for argument in fact["args"])
        ours = normalised(cursor.objc_type_encoding)
        theirs = normalised(fact["retval"]["typestr"] + "@:" + arguments)
        if ours != theirs:
            self.problem(f"{owner} {sign}{cursor.spelling} is declared as {ours}, the SDK has {theirs}")

    def function(self, cursor):
        found = [fact for each in self.descriptions if (fact := each.functions.get(cursor.spelling))]
        self.counts["functions"] += 1
        fact = self.known(cursor.spelling, found, "")
        if fact is None:
            return
        self.check_dates(cursor.spelling, found)
        ours = loosely(" ".join(map(encoded, [cursor.result_type, *(item.type for item in cursor.get_arguments())])))
        arguments = [argument["typestr"] for argument in fact.get("args", []) if argument["typestr"] != "v"]
        theirs = loosely(" ".join([fact["retval"]["typestr"], *arguments]))
        if ours != theirs:
            self.problem(f"{cursor.spelling} is declared as {ours}, the SDK has {theirs}")

    def constant(self, cursor):
        self.counts["constants"] += 1
        found = [each.constants[cursor.spelling] for each in self.descriptions if cursor.spelling in each.constants]
        fact = self.known(cursor.spelling, found, "")
        value = fact.get("value") if isinstance(fact, dict) else fact
        if value is not None and value != cursor.enum_value:
            self.problem(f"{cursor.spelling} is {cursor.enum_value}, in the SDK {value}")

    def extern(self, cursor):
        self.counts["constants"] += 1
        self.known(cursor.spelling, [True for each in self.descriptions if cursor.spelling in each.externs], "")

    def visit(self, unit):
        for cursor in cursors_in(unit, lambda path: DECLARATIONS in path.parents and path.name != "xlocale.h"):
            if cursor.kind in METHODS:
                self.method(cursor)
            elif cursor.kind == Kind.FUNCTION_DECL and not cursor.is_definition():
                self.function(cursor)
            elif cursor.kind == Kind.ENUM_CONSTANT_DECL:
                self.constant(cursor)
            elif cursor.kind == Kind.VAR_DECL and cursor.semantic_parent.kind in (
                Kind.TRANSLATION_UNIT,
                Kind.LINKAGE_SPEC,
            ):
                self.extern(cursor)
        for name in sorted(UNDESCRIBED - self.undescribed):
            self.problem(name, "is described by the facts, or is declared no more")


def compare_with_facts(folder, scratch):
    """Raises what disagrees; returns a line that says how much was compared."""
    source = pathlib.Path(scratch) / "Everything.mm"
    source.parent.mkdir(parents=True, exist_ok=True)
    frameworks = ("AppKit/AppKit", "ApplicationServices/ApplicationServices", "MapKit/MapKit")
    source.write_text("".join(f"#import <{name}.h>\n" for name in frameworks))
    comparison = Comparison(folder)
    comparison.visit(parse(source))
    if comparison.problems:
        raise compiling.Failure("\n".join(comparison.problems))
    counts = ", ".join(f"{count} {what}" for what, count in comparison.counts.items())
    return f"{counts} compared; not described: {', '.join(sorted(comparison.undescribed))}"
