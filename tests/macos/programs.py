# SPDX-License-Identifier: MIT
"""Compiles core and app for a Mac: nothing of Linux may have crept in. What moc makes is not part of it."""

import compiling


def sources():
    folders = ("core", "app")
    return sorted(path for folder in folders for path in (compiling.ROOT / folder).rglob("*.cpp"))


def check(_build):
    # What the build names from outside.
    names = ("VERSION", "BUILD_NUMBER", "WEBSITE_URL", "UPDATE_MANIFEST_URL", "SUPPORT_ADDRESS")
    compiling.in_parallel(
        lambda source: compiling.check_types(source, [f'-DCORVANTA_{name}="x"' for name in names]), sources()
    )
    return f"{len(sources())} sources"
