#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Checks the macOS layer without a Mac. See docs/macos.md.

usage: check.py [--build FOLDER] VERB

  types       every source of the layer compiles for arm64-apple-macos15 with libc++, ARC and warnings as errors
  headers     every header without a source of its own compiles by itself
  analyse     the static analyser finds nothing
  delegates   every method of the layer's classes is declared somewhere
  thin        the layer is a small part of the program, and decides by no text and no geometry
  facts       the declarations of the SDK agree with the folder that CORVANTA_MACOS_FACTS names
  run         the layer runs on doubles of the system, under AddressSanitizer
  all         all of these
  programs    every source of core and app compiles for arm64-apple-macos15 too; takes minutes
  mutations   plants faults, one at a time, and counts those that one of the checks catches; takes minutes
"""

import os
import pathlib
import re
import sys
import time

sys.dont_write_bytecode = True

import compiling  # noqa: E402
from compiling import Failure, say  # noqa: E402

SKIPPED = 77  # What CTest takes for a test that was skipped.


def objective_c():
    return [path for path in compiling.layer_sources() if compiling.is_objective_c(path)]


def types(_build):
    sources = compiling.layer_sources()
    compiling.in_parallel(compiling.check_types, sources)
    return f"{len(sources)} sources"


def headers(_build):
    # The others are the first thing that a source includes.
    names = sorted(path for path in compiling.LAYER.glob("*.h") if not list(compiling.LAYER.glob(f"{path.stem}.[mc]*")))
    compiling.in_parallel(compiling.check_header, names)
    return f"{len(names)} headers"


def unity(build):
    """All Objective-C++ in one source: the analyser spends most of its time on what each of them includes."""
    source = pathlib.Path(build) / "Layer.mm"
    source.parent.mkdir(parents=True, exist_ok=True)
    source.write_text("".join(f'#include "{path}"\n' for path in objective_c()))
    return source


def analyse(build):
    compiling.analyse(unity(build))
    return f"{len(objective_c())} sources"


def delegates(build):
    import declarations

    undeclared = declarations.undeclared_methods(unity(build))
    if undeclared:
        raise Failure("implemented but declared nowhere: " + ", ".join(undeclared))
    return f"{len(objective_c())} sources"


def thin(build):
    import thinness

    layer, application, share = thinness.share()
    if share >= thinness.LIMIT:
        raise Failure(f"{layer} lines beside {application} of app/ are {share:.1%}, not under {thinness.LIMIT:.0%}")
    found = thinness.decisions(unity(build))
    if found:
        raise Failure("\n".join(found))
    return f"{layer} lines beside {application} of app/: {share:.1%}"


def facts(build):
    folder = os.environ.get("CORVANTA_MACOS_FACTS", "")
    if not folder:
        say("facts       skipped: CORVANTA_MACOS_FACTS names no folder")
        return None
    import declarations

    return declarations.compare_with_facts(folder, build)


def run(build):
    said = compiling.run_program(compiling.build_program(build))
    return re.findall(r"\[  PASSED  \] (.*)", said)[-1].rstrip(".")


def programs(build):
    import programs as sources

    return sources.check(build)


def mutations(build):
    import mutations as faults

    return faults.check(build)


CHECKS = [types, headers, analyse, delegates, thin, facts, run]
SLOW = [programs, mutations]


def perform(check, build):
    start = time.monotonic()
    try:
        result = check(build)
    except Failure as failure:
        compiling.fail(f"{failure}\n{check.__name__:11} FAILED")
    if result is not None:
        say(f"{check.__name__:11} ok: {result} ({time.monotonic() - start:.0f} s)")
    return result


def main(arguments):
    build = compiling.ROOT / "build/macos-check"
    if arguments[:1] == ["--build"]:
        build = pathlib.Path(arguments[1])
        arguments = arguments[2:]
    known = {check.__name__: check for check in CHECKS + SLOW}
    if len(arguments) != 1 or arguments[0] not in [*known, "all"]:
        compiling.fail(__doc__.strip())
    if arguments[0] == "all":
        for check in CHECKS:
            perform(check, build)
        return 0
    return 0 if perform(known[arguments[0]], build) is not None else SKIPPED


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
