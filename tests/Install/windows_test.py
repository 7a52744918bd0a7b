"""Uses the archive for Windows, the argument, from outside: what it holds and needs, a client of the library, and the
tool on its own, under Wine, whose home the environment names."""

import json
import os
import pty
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

ARCHIVE = Path(sys.argv.pop(1)).resolve()
HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[1]
PLATE = ROOT / "examples" / "plate"
WINE = ROOT / "script" / "wine"
OF_WINDOWS = {"kernel32.dll", "msvcrt.dll", "shell32.dll"}


def run(*command, **environment):
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, cwd=ROOT,
                          env={**os.environ, **environment}, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{command}:\n{done.stdout}{done.stderr}")
    return done.stdout


class Archive(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(holder.cleanup)
        cls.folder = Path(holder.name)
        zipfile.ZipFile(ARCHIVE).extractall(cls.folder)
        cls.prefix = cls.folder / ARCHIVE.stem

    def test_holds_what_is_needed_and_nothing_else(self):
        names = {path.relative_to(self.prefix).as_posix() for path in self.prefix.rglob("*") if path.is_file()}
        needed = """bin/Orvalo3DReader.dll bin/orvalo.exe lib/libOrvalo3DReader.dll.a lib/Orvalo3DReader.lib
            lib/Orvalo3DReader.def lib/cmake/Orvalo3DReader/Orvalo3DReaderConfig.cmake lib/pkgconfig/Orvalo3DReader.pc
            include/Orvalo3DReader/Export.h include/Orvalo3DReader/Orvalo3DReader.h share/doc/Orvalo3DReader/README.md
            share/doc/Orvalo3DReader/docs/platforms.md""".split()
        self.assertLessEqual(set(needed), names)
        others = re.compile(r"lib/cmake/Orvalo3DReader/\S+\.cmake|include/Orvalo3DReader/\S+\.h|"
                            r"share/doc/Orvalo3DReader/(\S+\.(md|json|png)|licences/\S+\.txt)")
        self.assertEqual([name for name in names - set(needed) if not others.fullmatch(name)], [])

    def test_needs_nothing_but_windows(self):
        for name in ("Orvalo3DReader.dll", "orvalo.exe"):
            text = run("x86_64-w64-mingw32-objdump", "-p", self.prefix / "bin" / name)
            needed = {found.lower() for found in re.findall(r"DLL Name: (\S+)", text)}
            self.assertLessEqual(needed, OF_WINDOWS, name)
            self.assertIn("kernel32.dll", needed)

    def test_exports_the_public_classes_alone(self):
        names = re.findall(r"^ +(_Z\w+)", (self.prefix / "lib/Orvalo3DReader.def").read_text(), re.M)
        shown = run("x86_64-w64-mingw32-c++filt", *names).splitlines()
        public = {path.stem for path in (ROOT / "include").rglob("*.h")}
        public |= {"Bounds", "PiezoData", "FindRule", "operator"}
        strangers = [name for name in shown
                     if (found := re.search(r"\borvalo::(\w+)", name)) and found.group(1) not in public]
        self.assertEqual(strangers, [])
        self.assertTrue(any("orvalo::Reader::Execute" in name for name in shown))

    def test_client_catches_what_the_library_throws(self):
        for linkage in ("-static", "-shared-libgcc"):
            build = self.folder / f"client{linkage}"
            toolchain = ROOT / "cmake" / "windows-x64.cmake"
            run("cmake", "-S", HERE / "client", "-B", build, f"-DCMAKE_TOOLCHAIN_FILE={toolchain}",
                f"-DCMAKE_EXE_LINKER_FLAGS={linkage}",
                f"-DOrvalo3DReader_DIR={self.prefix}/lib/cmake/Orvalo3DReader")
            run("cmake", "--build", build)
            runtime = {Path(run("x86_64-w64-mingw32-g++-posix", f"-print-file-name={name}").strip()).resolve().parent
                       for name in ("libstdc++-6.dll", "libwinpthread-1.dll")}
            path = ";".join("Z:" + str(folder) for folder in {self.prefix / "bin", *runtime})
            client = [WINE, build / "client.exe"]
            self.assertRegex(run(*client, PLATE / "plate.model", PLATE / "plate-results.txt", WINEPATH=path),
                             r"^\d{6,} cubes, \d{5,} rows\r?\n$")
            missing = run(*client, PLATE / "none.model", PLATE / "plate-results.txt", WINEPATH=path)
            self.assertEqual(missing.strip(), "not opened")

    def test_tool_runs_alone(self):
        alone = self.folder / "alone" / "orvalo.exe"
        alone.parent.mkdir()
        shutil.copy(self.prefix / "bin" / "orvalo.exe", alone)
        summary = json.loads(run(WINE, alone, "info", "--format=json", PLATE / "plate.model"))
        self.assertEqual(summary[0]["grid"]["cubes"], 120000)
        named = shutil.copy(PLATE / "plate-results.txt", alone.with_name("ä地震波.txt"))
        self.assertRegex(run(WINE, alone, "info", named), r"ä(<\w\w>){9}\.txt: text results")
        exported = alone.with_name("地震波.npz")
        run(WINE, alone, "export", "--compress", named, exported)
        with zipfile.ZipFile(exported) as archive:
            self.assertIsNone(archive.testzip())
        with self.assertRaisesRegex(AssertionError, "error: Unable to open"):
            run(WINE, alone, "check", PLATE / "none.model")

    def test_tool_ends_in_order_on_a_console(self):
        interrupt = self.folder / "interrupt.exe"
        temporary = tempfile.mkdtemp(dir=self.folder)
        run("x86_64-w64-mingw32-g++-posix", "-std=c++17", "-static", HERE / "interrupt" / "interrupt.cpp", "-o", interrupt)
        # Wine makes a console of a terminal.
        terminal, end = pty.openpty()
        done = subprocess.run([WINE, interrupt, self.prefix / "bin" / "orvalo.exe", f"Z:{temporary}"], stdin=end,
                              stdout=subprocess.PIPE, stderr=end, text=True, timeout=120, check=False)
        os.close(end)
        os.close(terminal)
        self.assertEqual(done.stdout.split(), ["437", "65001", "1", "c000013a", "437", "0"])


if __name__ == "__main__":
    unittest.main()
