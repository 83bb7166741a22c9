#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What tools/lint keeps of a file holds until something changes that the findings depend on, and no longer."""

import importlib.machinery
import importlib.util
import pathlib
import sys
import tempfile

FILES = {
    "src/room/a.cpp": '#include "room/a.h"\n#include "near.h"\n#include <vector>\n',
    "src/room/a.h": '#pragma once\n  #  include "other/b.h"\n',
    "src/room/near.h": '#include "ui_a.h"\n',
    "src/other/b.h": '#include "room/a.h"\n',  # in a circle
    "src/other/unused.h": "",
    "build/generated/ui_a.h": "",
    ".clang-tidy": "Checks: a\n",
    "src/room/.clang-tidy": "Checks: b\n",
    "src/other/.clang-tidy": "Checks: c\n",
}
WITHOUT_EFFECT = {"src/other/unused.h", "src/other/.clang-tidy"}


class Flags:
    def __init__(self, root, macro=""):
        self._root, self._macro = root, macro

    def command(self, name):
        root = self._root
        return f"c++ {self._macro} -I{root}/src -I{root}/build/generated -c {root}/{name}"


def load_lint():
    sys.dont_write_bytecode = True
    path = pathlib.Path(__file__).resolve().parents[2] / "tools/lint"
    loader = importlib.machinery.SourceFileLoader("lint", str(path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("lint", loader))
    loader.exec_module(module)
    return module


def main():
    lint = load_lint()
    with tempfile.TemporaryDirectory() as folder:
        lint.ROOT = root = pathlib.Path(folder)
        for name, text in FILES.items():
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).write_text(text)

        def key(macro=""):
            return lint.Keys(Flags(root, macro), "version").key("src/room/a.cpp")

        before = key()
        assert key() == before
        assert key("-DNDEBUG") != before
        for name, text in FILES.items():
            (root / name).write_text(text + "// changed\n")
            assert (key() == before) == (name in WITHOUT_EFFECT), name
            (root / name).write_text(text)


main()
