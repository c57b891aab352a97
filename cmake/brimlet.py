#!/usr/bin/python3
"""The companion command: runs the Python package that is installed beside it, with the library beside it."""

import os
import pathlib
import runpy
import sys

prefix = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(prefix / "lib" / "python3" / "dist-packages"))
for folder in ("lib", "lib64"):
    library = prefix / folder / "libbrimlet.so.0"
    if library.exists():  # otherwise the system's loader finds it
        os.environ.setdefault("BRIMLET_LIBRARY", str(library))
runpy.run_module("brimlet", run_name="__main__", alter_sys=True)
