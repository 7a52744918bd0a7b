"""Holds what `orvalo export` and `orvalo extract -o` write, read by VTK, NumPy and SciPy, against the same files read by
plain Python. Skipped where these modules are missing, unless ORVALO_STRICT is set."""
import importlib.util
import json
import math
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

MODULES = ('numpy', 'scipy', 'vtkmodules')
missing = [name for name in MODULES if not importlib.util.find_spec(name)]
if missing and os.access('/usr/bin/python3', os.X_OK) and 'ORVALO_DEBIAN' not in os.environ:
    # Debian brings them for its own Python.
    os.execve('/usr/bin/python3', ['/usr/bin/python3', *sys.argv], {**os.environ, 'ORVALO_DEBIAN': '1'})
if missing:
    print('Skipped for want of', *missing)
    sys.exit(1 if os.environ.get('ORVALO_STRICT') else 77)

import numpy
import scipy.io
from vtkmodules.util.numpy_support import vtk_to_numpy
from vtkmodules.vtkCommonDataModel import VTK_VOXEL
from vtkmodules.vtkIOXML import (vtkXMLImageDataReader, vtkXMLPImageDataReader, vtkXMLPolyDataReader,
                                 vtkXMLUnstructuredGridReader)

TOOL = os.environ['ORVALO']
WINDOWS = os.environ.get('ORVALO_SYSTEM') == 'Windows'
ROOT = pathlib.Path(__file__).resolve().parents[2]
PLATE = ROOT / 'examples/plate'
READERS = {'.vti': vtkXMLImageDataReader, '.pvti': vtkXMLPImageDataReader, '.vtu': vtkXMLUnstructuredGridReader,
           '.vtp': vtkXMLPolyDataReader}
# A grid with a hole, a cube twice, a damping cube of its own and one on a cube, and materials that are not in order.
MODEL = '''ANALYSIS cellsize 0.5 timestep 0.1 END
MATERIALS 200 0 "a" 1 2 1  7 0 "b" 1 2 1 END
CUBES count 5 format 1 data 3 2 1 7 20  1 2 1 200 -5  2 3 4 7 1e3  1 2 4 200 0  3 2 1 200 21 END END
DAMPING count 2 data 1 2 1 7 0.5  9 2 1 7 0.25 END END
ACTUATOR shape point position 1 2 1 direction U W input wave table 5 method force END
TABLE id 5 count 2 data 0 1 END END
SENSOR id 4 shape point position 3 2 1 output U filename "s+.txt" END
PIEZO id 1 position 5 6 7 direction 0 1 0 method force count 2 data 0 0 t 1 1 1  1 2 i END table id 1 count 2 data 0 1.5 END END END
SET id 3 count 2 data 1 2 3  4 5 6 END END
'''
CELLS = {(3, 2, 1): (200, 1, 21, math.nan), (1, 2, 1): (200, 1, -5, 0.5), (2, 3, 4): (7, 1, 1000, math.nan),
         (1, 2, 4): (200, 1, 0, math.nan), (9, 2, 1): (7, 2, math.nan, 0.25)}
FIELDS = ('material', 'exists', 'temperature', 'damping')
NONE = (0, 0, math.nan, math.nan)
RESULTS = 'x\ty\tz\tf\tu\tu\té<&>,"\n65534\t0\t2\t0\t1.5\t2\t1e-300\n1\t65535\t2\t3\tnan\t4\t5\n65534\t0\t2\t0\t0.1\t-inf\t7\n'
ROWS = [(-2, 0, 2, 0, 1.5, 2, 1e-300), (1, -1, 2, 3, math.nan, 4, 5), (-2, 0, 2, 0, 0.1, -math.inf, 7)]


def values(data, name):
    return vtk_to_numpy(data.GetArray(name))


class Export(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.directory = pathlib.Path(holder.name)
        (self.directory / 'm.model').write_text(MODEL)
        (self.directory / 'r.txt').write_text(RESULTS)

    def run_tool(self, *arguments, status=0, told='^$', **more):
        done = subprocess.run([TOOL, *map(str, arguments)], cwd=self.directory, capture_output=True, text=True, timeout=120,
                              check=False, **more)
        self.assertEqual(done.returncode, status, done.stderr)
        self.assertRegex(done.stderr, told)
        return done

    def export(self, source, target, *options):
        self.run_tool('export', source, target, *options)
        return self.directory / target

    def read(self, path):
        reader = READERS[path.suffix]()
        self.assertTrue(reader.CanReadFile(str(path)))
        reader.SetFileName(str(path))
        reader.Update()
        self.assertEqual(reader.GetErrorCode(), 0)
        return reader.GetOutput()

    def image(self, path, fields):
        """Extent, spacing and, of every cell by its coordinates, the fields."""
        image = self.read(path)
        x0, x1, y0, y1, z0, z1 = image.GetExtent()
        cells = [(x, y, z) for z in range(z0, z1) for y in range(y0, y1) for x in range(x0, x1)]
        columns = [values(image.GetCellData(), name) for name in fields]
        for column in columns:
            self.assertEqual(len(column), len(cells))
        return image, dict(zip(cells, zip(*columns)))

    def assert_same(self, found, expected):
        numpy.testing.assert_array_equal(numpy.array(found, float), numpy.array(expected, float))

    def test_image_of_a_model(self):
        for options in ((), ('--compress',), ('--compress', '--threads', 3)):
            image, cells = self.image(self.export('m.model', 'a.vti', '--force', *options), FIELDS)
            self.assertEqual((image.GetExtent(), image.GetSpacing(), image.GetOrigin()),
                             ((1, 10, 2, 4, 1, 5), (0.5,) * 3, (0,) * 3))
            self.assertEqual(image.GetBounds(), (0.5, 5, 1, 2, 0.5, 2.5))
            for cell, found in cells.items():
                self.assert_same(found, CELLS.get(cell, NONE))
            self.assertEqual(values(image.GetCellData(), 'material').dtype, numpy.uint8)

    def test_pieces(self):
        """Of any number they are the same as one file."""
        _, whole = self.image(self.export('m.model', 'a.vti'), FIELDS)
        for pieces, count in (('1', 1), ('2x1x3', 6), ('100x1x2', 18), ('6', 6), ('5', 5)):
            path = self.export('m.model', f'p{pieces}.pvti', '--pieces', pieces, '--threads', 2)
            self.assertEqual(len(list(self.directory.glob(f'p{pieces}_*.vti'))), count)
            _, cells = self.image(path, FIELDS)
            self.assert_same(list(cells.values()), list(whole.values()))
        # So many threads leave little memory to each, which then writes a few rows at a time.
        _, parts = self.image(self.export(PLATE / 'plate.model', 'parts.pvti', '--pieces', 1, '--threads', 4096), FIELDS)
        _, whole = self.image(self.export(PLATE / 'plate.model', 'whole.vti'), FIELDS)
        self.assert_same(list(parts.values()), list(whole.values()))
        self.assertEqual(list(self.directory.glob('.*')), [])

    def test_cells(self):
        for options in ((), ('--compress',)):
            grid = self.read(self.export('m.model', 'a.vtu', '--force', *options))
            data = grid.GetCellData()
            self.assertEqual(grid.GetNumberOfCells(), len(CELLS))
            points = set()
            for i in range(grid.GetNumberOfCells()):
                bounds = grid.GetCell(i).GetBounds()
                cell = tuple(round(bounds[axis] / 0.5) for axis in (0, 2, 4))
                self.assertEqual(bounds, tuple(0.5 * (cell[axis // 2] + axis % 2) for axis in range(6)))
                self.assertEqual(grid.GetCellType(i), VTK_VOXEL)
                self.assert_same([values(data, name)[i] for name in FIELDS], CELLS[cell])
                points |= {(x, y, z) for x in bounds[:2] for y in bounds[2:4] for z in bounds[4:]}
            self.assertEqual(grid.GetNumberOfPoints(), len(points))

    def test_the_plate(self):
        grid = self.read(self.export(PLATE / 'plate.model', 'a.vtu'))
        image, cells = self.image(self.export(PLATE / 'plate.model', 'a.vti'), ('exists', 'material', 'temperature'))
        there = {cell: found for cell, found in cells.items() if found[0]}
        self.assertEqual((grid.GetNumberOfCells(), len(there)), (124800, 124800))
        corners = {(x + i, y + j, z + k) for x, y, z in there for i in (0, 1) for j in (0, 1) for k in (0, 1)}
        self.assertEqual(grid.GetNumberOfPoints(), len(corners))
        materials = numpy.unique(values(image.GetCellData(), 'material'), return_counts=True)
        expected = {}
        rows = re.search(r'data\n(.*?)END', (PLATE / 'plate-grid.cubes').read_text(), re.S)[1]
        for line in rows.strip().splitlines():
            x, y, z, material, temperature = line.split()
            self.assertEqual(there[int(x), int(y), int(z)], (1, int(material), float(temperature)))
            expected[int(material)] = expected.get(int(material), 0) + 1
        self.assertEqual(sum(expected.values()), 120000)
        self.assertEqual(dict(zip(*map(list, materials)))[7], expected[7])

    def test_results_in_cells(self):
        path = self.export('r.txt', 'a.vti', '--cell-size', 0.25)
        names = ('exists', 'u', 'u_2', 'é<&>,"')
        image, cells = self.image(path, names)
        self.assertEqual((image.GetExtent(), image.GetSpacing()), ((-2, 2, -1, 1, 2, 3), (0.25,) * 3))
        for cell, found in cells.items():
            self.assert_same(found, {(-2, 0, 2): (1, 0.1, -math.inf, 7), (1, -1, 2): (1, math.nan, 4, 5)}.get(
                cell, (0, math.nan, math.nan, math.nan)))
        self.assertEqual(self.read(self.export('r.txt', 'a.vtu', '--columns', '2')).GetCellData().GetNumberOfArrays(), 2)
        points = self.read(self.export('r.txt', 'a.vtp'))
        self.assertEqual([points.GetPoint(i) for i in range(3)], [(x + .5, y + .5, z + .5) for x, y, z, *_ in ROWS])
        self.assertEqual(points.GetNumberOfVerts(), 3)
        self.assert_same(values(points.GetPointData(), 'u_2'), [2, 4, -math.inf])

    def test_marks(self):
        marks = self.read(self.export('m.model', 'a.vtp'))
        names = marks.GetPointData().GetAbstractArray('name')
        found = [(names.GetValue(i), int(values(marks.GetPointData(), 'kind')[i]), marks.GetPoint(i)) for i in range(4)]
        self.assertEqual(found, [('actuator 1: force along UW', 0, (.75, 1.25, .75)),
                                 ('piezo 1 point (0, 0): tables 1 1 1', 1, (2.75, 3.25, 3.75)),
                                 ('piezo 1 point (1, 2): interpolated', 1, (3.25, 3.25, 4.75)),
                                 ('sensor 4: u to s+.txt', 2, (1.75, 1.25, .75))])

    def test_numpy(self):
        for options in ((), ('--compress',)):
            archive = numpy.load(self.export('r.txt', 'a.npz', '--force', *options))
            self.assertEqual(list(archive['columns']), ['u', 'u', 'é<&>,"'])
            self.assert_same(archive['indices'], [row[:4] for row in ROWS])
            self.assert_same(archive['values'], [row[4:] for row in ROWS])
            self.assertEqual((archive['indices'].dtype, archive['values'].dtype), (numpy.int16, numpy.float64))
        records = numpy.load(self.export('r.txt', 'a.npy'))
        self.assertEqual(records.dtype.names, ('x', 'y', 'z', 'f', 'u', 'u_2', 'é<&>,"'))
        self.assert_same([list(record) for record in records.tolist()], ROWS)
        for extension, load in (('npz', lambda path: numpy.load(path)['values']), ('npy', numpy.load)):
            for kind in 'mat', 'txt':
                found = load(self.export(PLATE / f'plate-results.{kind}', f'{kind}.{extension}'))
                text = numpy.loadtxt(PLATE / 'plate-results.txt', skiprows=1)
                if extension == 'npy':
                    found = numpy.array([list(record) for record in found.tolist()])[:, -3:]
                numpy.testing.assert_array_equal(found, text[:, 4:])

    def test_csv(self):
        path = self.export('r.txt', 'a.csv')
        self.assertEqual(path.read_text(), 'x,y,z,f,u,u,"é<&>,"""\n-2,0,2,0,1.5,2,1e-300\n1,-1,2,3,nan,4,5\n-2,0,2,0,0.1,-inf,7\n')
        found = numpy.loadtxt(self.export(PLATE / 'plate-results.txt', 'b.csv'), delimiter=',', skiprows=1)
        numpy.testing.assert_array_equal(found, numpy.loadtxt(PLATE / 'plate-results.txt', skiprows=1))

    def test_text_and_mat(self):
        """Each becomes the other and comes back the same to the last bit, for SciPy and Octave too."""
        def bits(path):
            archive = numpy.load(self.export(path, 'bits.npz', '--force', '--as', 'results'))
            return archive['indices'][:, :3].tolist(), archive['values'].view(numpy.uint64).tolist()

        done = 0
        for source in [*PLATE.glob('plate-results.*'), *(ROOT / 'fuzz/seeds').glob('results-*/*'), *(ROOT / 'tests/data/results').glob('*.mat'),
                       self.directory / 'r.txt']:
            if subprocess.run([TOOL, 'export', source, 'a.mat', '--force', '--as', 'results'], cwd=self.directory, capture_output=True, check=False).returncode:
                continue
            done += 1
            expected = bits(source)
            self.export('a.mat', 'a.txt', '--force')
            self.export('a.txt', 'b.mat', '--force')
            for path in ('a.mat', 'a.txt', 'b.mat'):
                self.assertEqual(bits(path), expected, (source, path))
            loaded = scipy.io.loadmat(self.directory / 'b.mat')
            self.assertEqual((loaded['idx'][:, :3].tolist(), loaded['val'].view(numpy.uint64).tolist()), expected, source)
            if octave := shutil.which('octave-cli'):
                told = subprocess.run([octave, '--eval', "s = load('b.mat'); printf('%d ', s.idx(:, 1:3)'); printf('%s', num2hex(s.val'(:))');"],
                                      cwd=self.directory, check=True, capture_output=True, text=True).stdout
                self.assertEqual(told.split(), [str(i) for row in expected[0] for i in row] +
                                 [''.join(f'{v:016x}' for row in expected[1] for v in row)])
            self.assertTrue(octave or not os.environ.get('ORVALO_STRICT'))
        self.assertGreater(done, 3)
        self.run_tool('extract', 'r.txt', '--columns', '2,0', '--box', '1,:,:', '-o', 'part.txt')
        self.assertEqual((self.directory / 'part.txt').read_text(), RESULTS.split('\n')[0].replace('u\tu\té<&>,"', 'é<&>,"\tu') +
                         '\n1\t65535\t2\t3\t5\tnan\n')
        many = 'x\ty\tz\tf' + ''.join(f'\tc{i}' for i in range(10)) + '\n' + '\t'.join('1' * 14) + '\n'
        (self.directory / 'many').write_text(many)
        self.run_tool('export', 'many', 'many.mat', status=1, told='10')

    def test_tidy_model(self):
        for source in PLATE / 'plate.model', 'm.model':
            self.run_tool('diff', source, self.export(source, 'tidy.model', '--force'))
            self.run_tool('format', 'tidy.model', '--check')

    def test_json(self):
        document, cubes = (json.loads(self.export('m.model', name, *options).read_text(), parse_constant=self.fail)
                           for name, options in (('a.json', ()), ('b.json', ('--cubes',))))
        self.assertNotIn('cubes', document)
        self.assertEqual(cubes['cubes'], [[3, 2, 1, 7, 20], [1, 2, 1, 200, -5], [2, 3, 4, 7, 1000], [1, 2, 4, 200, 0], [3, 2, 1, 200, 21]])
        self.assertEqual(cubes['dampingCubes'], [[1, 2, 1, 7, 0.5], [9, 2, 1, 7, 0.25]])
        del cubes['cubes'], cubes['dampingCubes']
        self.assertEqual(cubes, document)
        self.assertEqual(document['tables'], [{'id': 5, 'samples': 2, 'data': [0, 1]}])
        self.assertEqual(document['sets'], [{'id': 3, 'points': [[1, 2, 3], [4, 5, 6]]}])
        piezo, = document['piezos']
        self.assertEqual((piezo['points'], piezo['tables'][0]['data']), ([{'x': 0, 'y': 0, 'tables': [1, 1, 1]}, {'x': 1, 'y': 2, 'tables': None}], [0, 1.5]))

    def test_extract(self):
        (self.directory / 'list').write_text('# a\nx y z\n1,-1,2\n -2 0 2 7 8\n\n-2\t0\t2\n')
        (self.directory / 'far').write_text('9 9 9\n1 -1 2')
        (self.directory / 'bad').write_text('1 2 3\n1 2\n')
        (self.directory / 'plain').write_text('u\n1\n')
        first, second, third = (','.join(map(repr, row)) + '\n' for row in [tuple(
            int(v) if v == v and abs(v) < 1e9 and v == int(v) else v for v in row) for row in ROWS])
        head = 'x,y,z,f,u,u,"é<&>,"""\n'
        for arguments, status, out in (
                ('--box=-2:1,:,2', 0, head + first + second + third), ('--box -2,0:,:', 0, head + first + third),
                ('--box 2:,:,:', 0, head), ('--box 1,-1,2', 0, head + second),
                ('--cubes list', 0, head + second + third + third), ('--cubes far', 1, head + second),
                ('--columns 1 --box 1,-1,2', 0, 'x,y,z,f,u\n1,-1,2,3,4\n'), ('--cubes bad', 1, ''), ('--cubes no', 1, ''),
                ('--set m.model:4', 1, ''), ('--set m.model', 2, ''), ('--box 1,2', 2, ''), ('--box 1,2,3:x', 2, ''),
                ('--box 1,2,3 --cubes list', 2, ''), ('--set m.model:3', 1, head), ('--columns 9', 1, '')):
            done = self.run_tool('extract', 'r.txt', '--csv', *arguments.split(), status=status, told='.' if status else '^$')
            self.assertEqual(done.stdout, out, arguments)
        self.run_tool('extract', 'plain', '--box', '1,1,1', status=1, told='no coordinates')
        # What goes to standard output is results again.
        text = self.run_tool('extract', 'r.txt').stdout
        again = self.run_tool('diff', 'r.txt', '-', input=text)
        self.assertRegex(again.stdout, 'are equal')
        self.assertEqual(text.splitlines()[1], '65534\t0\t2\t0\t1.5\t2\t1e-300')
        self.run_tool('extract', PLATE / 'plate-results.txt', '--set', f'{PLATE}/plate.model:1', '--columns', 'w', '-o', 'a.npy')
        taken = numpy.load(self.directory / 'a.npy')
        self.assertEqual(([tuple(r)[:3] for r in taken.tolist()], taken.dtype.names),
                         ([(x, 75, 4) for x in range(60, 200, 10)], ('x', 'y', 'z', 'f', 'w')))
        self.assertEqual(dict((tuple(r)[0], r[4]) for r in taken.tolist())[100], 0.1487396138)

    def test_failures(self):
        """Leave nothing, and what was there."""
        (self.directory / 'there.csv').write_text('precious')
        (self.directory / 'locked').mkdir(mode=0o500)
        (self.directory / 'd.csv').mkdir()
        (self.directory / 'plain').write_text('u\n1\n')
        (self.directory / 'wide').write_text(MODEL.replace('3 2 1 7 20 ', '32767 32767 32767 7 20 '))

        def little_disk():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (100000, 100000))

        before = sorted(self.directory.rglob('*'))
        cases = [('r.txt there.csv', '--force'), ('r.txt d.csv --force', 'directory'), ('r.txt no/x.csv', 'No such'),
                 ('plain x.vti', 'no coordinates'), ('wide x.vti', 'GiB are free'), ('wide x.pvti', 'GiB are free')]
        if os.geteuid() != 0 and not WINDOWS:
            cases.append(('r.txt locked/x.csv', 'Permission'))
        for arguments, told in cases:
            self.run_tool('export', *arguments.split(), status=3, told=told)
        for arguments, told in (('r.txt x.bmp', 'can be written as'), ('m.model x.npy', 'can be written as'), ('r.txt x.json', 'can be'),
                                ('r.txt x.vti --pieces 2', '--pieces'), ('r.txt x.pvti --pieces 0', '--pieces'), ('r.txt', 'OUT')):
            self.run_tool('export', *arguments.split(), status=2, told=told)
        self.run_tool('export', 'no', 'x.csv', status=3, told='no')
        self.assertEqual(sorted(self.directory.rglob('*')), before)
        self.assertEqual((self.directory / 'there.csv').read_text(), 'precious')
        if WINDOWS:
            # No disk that is full, no limit of what a process may write, no mode of files.
            return
        plate = PLATE / 'plate-results.txt'
        for target in ('x.csv', 'x.txt', 'x.mat', 'x.npy', 'x.npz', 'x.vti', 'x.vtu', 'x.vtp', 'x.pvti', 'there.csv'):
            self.run_tool('export', plate, target, '--force', status=3, told='File too large', preexec_fn=little_disk)
        self.run_tool('export', 'm.model', '/dev/full', status=2, told='.')
        for target in 'full.csv', 'full.txt':
            os.symlink('/dev/full', self.directory / target)
            self.run_tool('export', 'r.txt', target, '--force', status=3, told='no regular file')
            (self.directory / target).unlink()
        with open('/dev/full', 'w') as full:
            done = subprocess.run([TOOL, 'extract', str(plate)], stdout=full, stderr=subprocess.PIPE, text=True, check=False)
        self.assertEqual((done.returncode, 'No space' in done.stderr), (3, True), done.stderr)
        self.assertEqual(sorted(self.directory.rglob('*')), before)
        self.assertEqual((self.directory / 'there.csv').read_text(), 'precious')
        (self.directory / 'there.csv').chmod(0o640)
        self.run_tool('export', 'r.txt', 'there.csv', '--force')
        self.assertEqual((self.directory / 'there.csv').stat().st_mode & 0o777, 0o640)
        self.assertNotEqual((self.directory / 'there.csv').read_text(), 'precious')


if __name__ == '__main__':
    unittest.main()
