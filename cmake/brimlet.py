#!/usr/bin/python3
"""The companion command: runs the Python package that is installed beside it."""

import pathlib
import runpy
import sys

packages = pathlib.Path(__file__).resolve().parent.parent / "lib" / "python3" / "dist-packages"
sys.path.insert(0, str(packages))
runpy.run_module("brimlet", run_name="__main__", alter_sys=True)
