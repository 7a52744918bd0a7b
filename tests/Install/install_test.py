"""Uses the library from outside, dynamic and static: within a project that includes its sources, installed through CMake
and pkg-config, with the programs of the README, header by header, and by its symbols. Arguments: build folder, and
whether its library is shared or static; the other kind is built here. The environment names compiler and generator."""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

BUILD, LINKAGE = sys.argv.pop(1), sys.argv.pop(1)
HERE = Path(__file__).parent
ROOT = HERE.parents[1]
PLATE = ROOT / "examples" / "plate"
COMPILER = os.environ["CXX"]
SANITIZERS = os.environ.get("ORVALO_SANITIZE", "")
FLAGS = [f"-fsanitize={SANITIZERS}"] if SANITIZERS else []
PROGRAMS = re.findall(r"^```cpp\n(.*?)^```$", (ROOT / "README.md").read_text(), re.M | re.S)


def run(*command, **environment):
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          env={**os.environ, **environment})
    if done.returncode != 0:
        raise AssertionError(f"{command}:\n{done.stdout}")
    return done.stdout


def configure(source, build, *options):
    run("cmake", "-S", source, "-B", build, f"-DCMAKE_CXX_FLAGS={' '.join(FLAGS)}", *options)


class FromOutside(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(holder.cleanup)
        cls.folder = Path(holder.name)
        cls.prefixes = {kind: cls.folder / kind for kind in ("shared", "static")}
        outer, other = next((kind == "shared", prefix) for kind, prefix in cls.prefixes.items() if kind != LINKAGE)
        cls.outer = cls.folder / "outer"
        configure(HERE / "outer", cls.outer, f"-DBUILD_SHARED_LIBS={outer}")
        run("cmake", "--build", cls.outer, "--parallel", os.cpu_count())
        run("cmake", "--install", cls.outer, "--prefix", other)
        cls.unasked = list(cls.folder.glob(f"{other.name}/**/*"))
        configure(HERE / "outer", cls.outer, "-DORVALO_INSTALL=ON")
        run("cmake", "--install", cls.outer, "--prefix", other)
        run("cmake", "--install", BUILD, "--prefix", cls.prefixes[LINKAGE])
        cls.library = next(cls.prefixes["shared"].rglob("libOrvalo3DReader.so"))
        cls.archive = next(cls.prefixes["static"].rglob("libOrvalo3DReader.a"))

    def installed(self):
        return zip(self.prefixes.items(), (self.library, self.archive))

    def check_client(self, client):
        self.assertRegex(run(client, PLATE / "plate.model", PLATE / "plate-results.txt"),
                         r"^\d{6,} cubes, \d{5,} rows\n$")
        self.assertEqual(run(client, PLATE / "none.model", PLATE / "plate-results.txt"), "not opened\n")

    def exported(self):
        return [line.split(" ", 2)[2] for line in run("nm", "-DC", "--defined-only", self.library).splitlines()]

    def test_add_subdirectory(self):
        self.assertEqual(self.unasked, [])
        self.check_client(self.outer / "client")

    def test_find_package(self):
        for (kind, prefix), _ in self.installed():
            build = self.folder / f"cmake-{kind}"
            configure(HERE / "client", build, f"-DCMAKE_PREFIX_PATH={prefix}")
            run("cmake", "--build", build)
            self.check_client(build / "client")

    def test_programs_of_the_readme_by_pkg_config(self):
        self.assertEqual(len(PROGRAMS), 3)
        for (kind, _), library in self.installed():
            words = run("pkg-config", "--cflags", "--libs", "Orvalo3DReader",
                        PKG_CONFIG_PATH=str(library.parent / "pkgconfig")).split()
            for text, files, expected in zip(PROGRAMS, (["plate.model"], ["plate-results.mat"],
                                                        ["plate.model", self.folder / "strong.model"]),
                                             (r"^40 75 4 pzt-ceramic$", r"^15000 rows, 3 values each$", r"^$"), strict=True):
                source, program = self.folder / "program.cpp", self.folder / "program"
                source.write_text(text)
                run(COMPILER, "-std=c++17", *FLAGS, source, "-o", program, *words)
                path = str(library.parent) if kind == "shared" else ""
                self.assertTrue(re.search(expected, run(program, *(PLATE / file for file in files), LD_LIBRARY_PATH=path),
                                          re.M))
            written = (self.folder / "strong.model").read_text()
            self.assertIn('; All actuators twice as strong.\nANALYSIS\n  cellsize = 0.5\n', written)
            self.assertIn("  amplitude = 5\n", written)

    def test_every_header_compiles_alone_as_cpp17(self):
        include = self.prefixes["shared"] / "include"
        headers = sorted(include.rglob("*.h"))
        self.assertEqual({header.relative_to(include) for header in headers} - {Path("Orvalo3DReader/Export.h")},
                         {header.relative_to(ROOT / "include") for header in (ROOT / "include").rglob("*.h")})
        for header in headers:
            with self.subTest(header=header.name):
                run(COMPILER, "-std=c++17", "-Wall", "-Wextra", "-Wpedantic", "-Weffc++", "-Wold-style-cast", "-Werror",
                    "-fsyntax-only", "-x", "c++", "-I", include, "-include", header, "/dev/null")

    def test_only_the_dynamic_library_exports(self):
        for (kind, prefix), _ in self.installed():
            source = self.folder / "export.cpp"
            source.write_text("#include <Orvalo3DReader/Export.h>\nmeans ORVALO3DREADER_EXPORT")
            last = run(COMPILER, "-E", "-I", prefix / "include", source).splitlines()[-1]
            self.assertEqual("visibility" in last, kind == "shared", last)

    def test_reader_header_shows_no_grammar(self):
        include = self.prefixes["shared"] / "include"
        text = run(COMPILER, "-std=c++17", "-E", "-I", include, include / "Orvalo3DReader" / "Reader" / "Reader.h")
        self.assertFalse(re.search(r"\b(Lexer|Token|ReaderCore)\b", text))

    def test_only_the_public_classes_are_visible(self):
        names = self.exported()
        public = {path.stem for path in (ROOT / "include").rglob("*.h")} | {"Bounds", "PiezoData", "FindRule", "operator"}
        strangers = [name for name in names
                     if (found := re.search(r"\borvalo::(\w+)", name)) and found.group(1) not in public]
        self.assertEqual(strangers, [])
        self.assertTrue(any("orvalo::Reader::Execute" in name for name in names))

    def test_every_message_is_visible(self):
        header = (ROOT / "include/Orvalo3DReader/Common/ReaderMessages.h").read_text()
        messages = re.findall(r"static constexpr ExceptionMessage (\w+)", header)
        self.assertEqual(sorted(name for name in self.exported() if name.startswith("orvalo::ReaderMessages::")),
                         sorted(f"orvalo::ReaderMessages::{name}" for name in messages))
        self.assertGreater(len(messages), 100)

    def test_versioned_soname(self):
        self.assertRegex(run("readelf", "-d", self.library), r"SONAME.*\[libOrvalo3DReader\.so\.1\]")


if __name__ == "__main__":
    unittest.main()
