"""Installs the built library and uses it as an outside project would: through CMake, through pkg-config, header by
header, and by its symbols. Arguments: build folder, source folder, C++ compiler."""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

BUILD, SOURCE, COMPILER = (sys.argv.pop(1) for _ in range(3))
CLIENT = Path(__file__).parent / "client"
PLATE = Path(SOURCE) / "examples" / "plate"
SANITIZERS = os.environ.get("ORVALO_SANITIZE", "")
FLAGS = [f"-fsanitize={SANITIZERS}"] if SANITIZERS else []


def run(*command, **options):
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          **options)
    if done.returncode != 0:
        raise AssertionError(f"{command}:\n{done.stdout}")
    return done.stdout


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.prefix = Path(cls.folder.name) / "prefix"
        run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        cls.library = next(cls.prefix.rglob("libOrvalo3DReader.so"))

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def check_client(self, client):
        env = {**os.environ, "LD_LIBRARY_PATH": str(self.library.parent)}
        self.assertRegex(run(client, PLATE / "plate.model", PLATE / "plate-results.txt", env=env),
                         r"^\d{6,} cubes, \d{5,} rows\n$")
        self.assertEqual(run(client, PLATE / "none.model", PLATE / "plate-results.txt", env=env), "not opened\n")

    def exported(self):
        return [line.split(" ", 2)[2] for line in run("nm", "-DC", "--defined-only", self.library).splitlines()]

    def test_find_package(self):
        build = Path(self.folder.name) / "cmake-client"
        run("cmake", "-S", CLIENT, "-B", build, f"-DCMAKE_PREFIX_PATH={self.prefix}",
            f"-DCMAKE_CXX_COMPILER={COMPILER}", f"-DCMAKE_CXX_FLAGS={' '.join(FLAGS)}")
        run("cmake", "--build", build)
        self.check_client(build / "client")

    def test_pkg_config(self):
        env = {**os.environ, "PKG_CONFIG_PATH": str(self.library.parent / "pkgconfig")}
        words = run("pkg-config", "--cflags", "--libs", "Orvalo3DReader", env=env).split()
        client = Path(self.folder.name) / "pkg-client"
        run(COMPILER, "-std=c++17", *FLAGS, CLIENT / "client.cpp", "-o", client, *words)
        self.check_client(client)

    def test_every_header_compiles_alone_as_cpp17(self):
        include = self.prefix / "include"
        for header in sorted(include.rglob("*.h")):
            with self.subTest(header=header.name):
                run(COMPILER, "-std=c++17", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only", "-x", "c++",
                    "-I", include, "-include", header, "/dev/null")

    def test_reader_header_shows_no_grammar(self):
        text = run(COMPILER, "-std=c++17", "-E", "-I", self.prefix / "include",
                   self.prefix / "include" / "Orvalo3DReader" / "Reader" / "Reader.h")
        self.assertFalse(re.search(r"\b(Lexer|Token|ReaderCore)\b", text))

    def test_only_the_public_classes_are_visible(self):
        names = self.exported()
        public = {path.stem for path in (self.prefix / "include").rglob("*.h")} | {"operator"}
        strangers = [name for name in names
                     if (found := re.search(r"\borvalo::(\w+)", name)) and found.group(1) not in public]
        self.assertEqual(strangers, [])
        self.assertTrue(any("orvalo::Reader::Execute" in name for name in names))

    def test_every_message_is_visible(self):
        header = (self.prefix / "include" / "Orvalo3DReader" / "Common" / "ReaderMessages.h").read_text()
        messages = re.findall(r"static constexpr ExceptionMessage (\w+)", header)
        self.assertEqual(sorted(name for name in self.exported() if name.startswith("orvalo::ReaderMessages::")),
                         sorted(f"orvalo::ReaderMessages::{name}" for name in messages))
        self.assertGreater(len(messages), 100)

    def test_versioned_soname(self):
        self.assertRegex(run("readelf", "-d", self.library), r"SONAME.*\[libOrvalo3DReader\.so\.1\]")


if __name__ == "__main__":
    unittest.main()
