# SPDX-License-Identifier: MIT
"""How the sources of the macOS layer are compiled on Linux: for a Mac without making anything, and for running here."""

import concurrent.futures
import functools
import hashlib
import os
import pathlib
import platform
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
HERE = ROOT / "tests/macos"
LAYER = ROOT / "platform/macos"
COMPILER = os.environ.get("CORVANTA_MACOS_CLANG", "clang++-19")
QT = pathlib.Path(os.environ.get("CORVANTA_MACOS_QT", f"/usr/include/{platform.machine()}-linux-gnu/qt6"))
QCORO = pathlib.Path(os.environ.get("CORVANTA_MACOS_QCORO", "/usr/include/qcoro6"))
LIBCXX = pathlib.Path("/usr/lib/llvm-19/include/c++/v1")
# The C library's headers for another arm64 system, which stand in for those of macOS.
ARM64_HEADERS = pathlib.Path("/usr/aarch64-linux-gnu/include")
JOBS = os.cpu_count() or 1

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wshadow", "-Wconversion", "-Werror"]
# What Apple's compiler could say and does not by itself.
STRICT = [
    "-Wundeclared-selector",
    "-Wnullable-to-nonnull-conversion",
    "-Wunguarded-availability",
    "-Wobjc-signed-char-bool",
    "-Wstrict-selector-match",
    "-Wselector-type-mismatch",
    "-Wmethod-signatures",
    "-Wimplicit-retain-self",
]
COMMON = (
    [
        "-std=c++23",
        "-fblocks",
        "-DQT_NO_KEYWORDS",
        "-DQT_NO_CAST_FROM_ASCII",
        "-DQT_NO_CAST_TO_ASCII",
        "-DQT_NO_URL_CAST_FROM_STRING",
        "-DQT_NO_FOREACH",
    ]
    + [
        f"-isystem{folder}"
        for folder in [QT]
        + [QT / part for part in ("QtCore", "QtGui", "QtWidgets", "QtNetwork", "QtSvg")]
        + [QCORO, QCORO / "qcoro", QCORO / "QCoro"]
    ]
    + [f"-isystem{HERE / 'declarations'}"]
    + [f"-I{ROOT / folder}" for folder in ("platform/macos", "platform/seam", "core", "app")]
)
FOR_A_MAC = [
    "--target=arm64-apple-macos15",
    "-nostdlibinc",
    "-nostdinc++",
    f"-isystem{LIBCXX}",
    f"-isystem{ARM64_HEADERS}",
    # Names that mean something else in the headers of the C library here.
    "-U__nonnull",
    "-D_GNU_SOURCE",
    "-D__NO_CTYPE",
    # QCoro 0.8 relies on libstdc++ for this one; later versions include it.
    "-includeexception",
]
OBJECTIVE_C = ["-xobjective-c++", "-fobjc-arc"]

RUN_FLAGS = [
    f"--target={platform.machine()}-unknown-linux-gnu",
    "-fobjc-runtime=macosx-15",
    "-fPIC",
    "-fexceptions",
    "-g1",
    "-O0",
    "-fsanitize=address,undefined",
    # Messages are calls through a pointer of another type.
    "-fno-sanitize=function",
    "-fno-sanitize-recover=undefined",
    f"-I{HERE / 'runtime'}",
    f"-I{HERE / 'layer'}",
    f"-I{ROOT / 'tests/support'}",
]
# What the layer stands on, beside itself.
SUPPORT = [
    "core/support/Cancellation.cpp",
    "core/support/LocalizedError.cpp",
    "core/support/URL.cpp",
    "app/safari/AXSupport.cpp",
    "tests/support/TaskWaiting.cpp",
    "tests/support/TestMessages.cpp",
]
LINKED = ["-lgtest", "-lQt6Widgets", "-lQt6Gui", "-lQt6Core", "-lQCoro6Core", "-ldl", "-lpthread"]


class Failure(Exception):
    """What a compiler or a program said."""


def run(command, **options):
    done = subprocess.run([str(part) for part in command], capture_output=True, text=True, **options)
    if done.returncode != 0:
        raise Failure((done.stdout + done.stderr).strip() or f"exit status {done.returncode}")
    return done.stdout + done.stderr


def in_parallel(work, items):
    """Does the work for each item, and raises everything that went wrong at once."""
    failures = []
    with concurrent.futures.ThreadPoolExecutor(JOBS) as pool:
        for future in [pool.submit(work, item) for item in items]:
            try:
                future.result()
            except Failure as failure:
                failures.append(str(failure))
    if failures:
        raise Failure("\n".join(failures))


def is_objective_c(source):
    return pathlib.Path(source).suffix == ".mm"


def check_types(source, extra=()):
    """Compiles a source for a Mac, as far as its object would be written."""
    language = [*OBJECTIVE_C, *STRICT] if is_objective_c(source) else []
    run([COMPILER, *FOR_A_MAC, *language, *WARNINGS, *COMMON, *extra, "-fsyntax-only", source])


def check_header(header):
    """A header of the layer compiles by itself."""
    run(
        [COMPILER, *FOR_A_MAC, *OBJECTIVE_C, *WARNINGS, *COMMON, "-fsyntax-only", "-include", header]
        + ["-Wno-unused-function", "-"],
        input="",
    )


def analyse(source):
    """Clang's static analyser: reference counts, nullability, the core checks."""
    checkers = ["-Xclang", "-analyzer-checker=osx,core,nullability", "-Xclang", "-analyzer-disable-checker=cplusplus"]
    said = run(
        [COMPILER, *FOR_A_MAC, *OBJECTIVE_C, *COMMON, "--analyze", "-Xclang", "-analyzer-output=text"]
        + ["-Xclang", "-analyzer-werror", *checkers, source]
    )
    if "error:" in said or "warning:" in said:
        raise Failure(said)


def run_sources(layer, precompiled):
    """The sources of the program that runs the layer, each with the flags that are its own."""
    # All of them as Objective-C++, so that they share what is precompiled.
    shared = [*OBJECTIVE_C, "-include-pch", precompiled]
    doubles = [*(HERE / "runtime").glob("*.mm"), *(HERE / "layer").glob("*.mm")]
    return (
        [(source, [*shared, *WARNINGS]) for source in [*layer, *(ROOT / path for path in SUPPORT)]]
        + [(source, [*shared, "-w"]) for source in sorted(doubles) if source.name != "Foundation.mm"]
        + [(HERE / "runtime/Foundation.mm", ["-xobjective-c++", "-fno-objc-arc", "-w"])]
        + [(HERE / "runtime/ObjectiveCRuntime.cpp", ["-w"])]
    )


@functools.cache
def newest_change():
    """When one of the files changed last that the program is made of; what changes later is not part of this run."""
    folders = [HERE, LAYER, ROOT / "platform/seam", ROOT / "core", ROOT / "app/safari", ROOT / "tests/support"]
    files = (path for folder in folders for path in folder.rglob("*") if path.suffix in (".h", ".cpp", ".mm"))
    return max(path.stat().st_mtime for path in files)


def build_program(folder, layer=None, name="CorvantaMacLayerTests"):
    """Builds the program that runs the layer on the doubles, and returns its path. What is not changed is kept."""
    if platform.machine() != "x86_64":
        raise Failure("the runtime of the check runs on x86-64 alone")
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    # The one function that makes the platform runs nothing of its own.
    layer = [path for path in layer or layer_sources() if path.name != "MacPlatform.cpp"]
    newest = newest_change()

    def object_of(source):
        digest = hashlib.sha256(str(source).encode()).hexdigest()[:8]
        return folder / f"{source.stem}-{digest}.o"

    def compile_one(item):
        source, flags = item
        made = object_of(source)
        if made.exists() and made.stat().st_mtime > max(newest, source.stat().st_mtime):
            return
        run([COMPILER, *flags, *RUN_FLAGS, *COMMON, "-c", source, "-o", made])

    precompiled = folder / "Precompiled.pch"
    if not precompiled.exists() or precompiled.stat().st_mtime < newest:
        header = ["-xobjective-c++-header", "-fobjc-arc", HERE / "runtime/Precompiled.h"]
        run([COMPILER, *RUN_FLAGS, *COMMON, *header, "-o", precompiled])
    sources = run_sources(layer, precompiled)
    in_parallel(compile_one, sources)
    program = folder / name
    link = [COMPILER, "-fsanitize=address,undefined", "-fuse-ld=lld-19", *(object_of(source) for source, _ in sources)]
    run([*link, *LINKED, "-o", program])
    return program


def runtime_folder(parent):
    folder = parent / "runtime"
    folder.mkdir(mode=0o700, exist_ok=True)
    return folder


def run_program(program, arguments=()):
    environment = {
        **os.environ,
        "XDG_RUNTIME_DIR": str(runtime_folder(program.parent)),
        "ASAN_OPTIONS": "detect_stack_use_after_return=1",
        "LSAN_OPTIONS": f"suppressions={ROOT / 'tools/leaks.supp'}:print_suppressions=0",
        "UBSAN_OPTIONS": "print_stacktrace=1",
    }
    return run([program, *arguments], env=environment, timeout=120)


def layer_sources():
    return sorted(LAYER.glob("*.mm")) + sorted(LAYER.glob("*.cpp"))


def say(text):
    print(text, flush=True)


def fail(text):
    print(text, file=sys.stderr)
    sys.exit(1)
