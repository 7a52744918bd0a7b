"""Has the test program named on the command line write results, and reads them with NumPy, SciPy and Octave, with each of
them that is there: every number must be the one that was written, to the bit."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM = sys.argv.pop(1)
ROWS, INDICES, VALUES = (0, 1, 2, 3, 4, 1001), (3, 4), 3
NAMES = [(f'r{rows}x{indices}', rows, indices) for rows in ROWS for indices in INDICES]

IN_PYTHON = '''
import sys
import numpy
import scipy.io
name, rows, indices, values = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4])
numbers = open(name + ".numbers", "rb").read()
value = numpy.frombuffer(numbers, "<f8", rows * values).reshape((rows, values), order="F")
index = numpy.frombuffer(numbers, "<i2", offset=rows * values * 8).reshape((rows, indices), order="F")
mat = scipy.io.loadmat(name + ".mat")
assert mat["val"].astype("<f8").tobytes("F") == value.tobytes("F"), "values"
assert numpy.array_equal(mat["idx"], index), "indices"
if rows:
    text = numpy.loadtxt(name + ".txt", skiprows=1, delimiter="\\t", ndmin=2)
    assert text[:, 4:].astype("<f8").tobytes("F") == value.tobytes("F"), "values of the text"
    assert numpy.array_equal(text[:, :indices], index), "indices of the text"
'''

IN_OCTAVE = '''
names = argv();
for i = 1:numel(names)
  n = sscanf(names{i}(strfind(names{i}, "/")(end) + 1:end), "r%dx%d");
  file = fopen([names{i} ".numbers"], "r", "ieee-le");
  value = fread(file, [n(1), 3], "double");
  index = fread(file, [n(1), n(2)], "int16");
  fclose(file);
  read = load([names{i} ".mat"]);
  assert(isequal(typecast(read.val(:), "uint64"), typecast(value(:), "uint64")));
  assert(isequal(double(read.idx), index));
end
disp(numel(names));
'''


def python_with_scipy():
    for python in (sys.executable, '/usr/bin/python3'):
        if subprocess.run([python, '-c', 'import scipy.io'], capture_output=True, check=False).returncode == 0:
            return python
    return None


class ForeignReaders(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(holder.cleanup)
        cls.folder = pathlib.Path(holder.name)
        subprocess.run([PROGRAM, '--gtest_filter=WriteResults.ForOtherPrograms'], check=True, stdout=subprocess.DEVNULL,
                       env={**os.environ, 'ORVALO_FOREIGN': holder.name})

    def run_reader(self, *command):
        done = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def test_scipy_and_numpy(self):
        python = python_with_scipy()
        if python is None:
            self.skipTest('no SciPy')
        for name, rows, indices in NAMES:
            with self.subTest(name=name):
                self.run_reader(python, '-c', IN_PYTHON, self.folder / name, rows, indices, VALUES)

    def test_octave(self):
        if shutil.which('octave-cli') is None:
            self.skipTest('no Octave')
        script = self.folder / 'script.m'
        script.write_text(IN_OCTAVE)
        # Without rows Octave has matrices of another shape.
        names = [self.folder / name for name, rows, _ in NAMES if rows]
        self.assertEqual(self.run_reader('octave-cli', '--norc', script, *names), f'{len(names)}\n')


if __name__ == '__main__':
    unittest.main()
