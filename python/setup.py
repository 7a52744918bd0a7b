"""Builds the extension module, with the library inside, and the command-line tool by CMake, from the folder above."""
import contextlib
import os
import pathlib
import re
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).resolve().parent.parent
if not (ROOT / "src" / "CMakeLists.txt").exists():
    raise SystemExit("The package is built where the library's sources are, in a clone of the repository.")


class BuildByCMake(build_ext):
    def build_extension(self, ext):
        build = pathlib.Path(self.build_temp).resolve()
        options = {
            "CMAKE_BUILD_TYPE": "Release",
            "BUILD_SHARED_LIBS": "OFF",
            "ORVALO_BUILD_PYTHON": "ON",
            "ORVALO_BUILD_TOOL": "ON",
            "ORVALO_INSTALL": "OFF",
            "Python_EXECUTABLE": sys.executable,
        }
        with contextlib.suppress(ImportError):
            # Installed for this build; else CMake looks for the system's.
            import pybind11

            options["pybind11_DIR"] = pybind11.get_cmake_dir()
        subprocess.run(
            ["cmake", "-S", ROOT, "-B", build, *(f"-D{name}={value}" for name, value in options.items())], check=True
        )
        jobs = str(os.cpu_count() or 1)
        subprocess.run(["cmake", "--build", build, "-j", jobs, "--target", "orvalo_python", "orvalo"], check=True)
        package = pathlib.Path(self.get_ext_fullpath(ext.name)).resolve().parent
        subprocess.run(
            ["cmake", "--install", build, "--component", "python", "--strip", "--prefix", package.parent], check=True
        )


version = re.search(r"VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text().split("project(")[1])
setup(
    version=version.group(1),
    ext_modules=[Extension("orvalo._orvalo", [])],
    cmdclass={"build_ext": BuildByCMake},
)
