"""Runs `orvalo stats`, `diff` and `extract` of the tool named by ORVALO, and holds what they say against plain Python."""
import json
import math
import os
import pathlib
import random
import re
import resource
import statistics
import subprocess
import tempfile
import unittest

from tool_test import CUBES, GOOD, HEAD, TAIL

TOOL = os.environ['ORVALO']
INF, NAN = math.inf, math.nan


def results(rows, names='u w'):
    """A text of results: rows of x, y, z and values."""
    lines = ['x y z f ' + names] + [' '.join([*(str(c % 65536) for c in row[:3]), '0', *map(repr, row[3:])]) for row in rows]
    return ''.join(line.replace(' ', '\t') + '\n' for line in lines)


ROWS = [(1, 1, 1, 0.5, 1.0), (2, 1, 1, -0.25, 2.0), (-3, 2, 1, 4.0, 3.0)]
TEXT = results(ROWS)


def changed(row, column, value):
    return results([(*r[:3 + column], value, *r[4 + column:]) if i == row else r for i, r in enumerate(ROWS)])


MODEL = GOOD.replace('ACTUATOR', 'DAMPING count 1 data 7 7 7 1 0.5 END END\nSET id 3 count 2 data 1 2 3 4 5 6 END END\n'
                     'PIEZO id 1 position 1 1 1 direction 0 0 1 method force count 2 data 0 0 t 1 1 1 1 0 i END '
                     'table id 1 count 2 data 0 1 END END END\nDUMP id 1 output all filename "d" END\nACTUATOR')
WARM = MODEL.replace(CUBES, 'CUBES count 2 format 1 data 1 1 1 1 20 2 1 1 1 21.5 END END\n')

# Two files, options, exit status and what the text must hold (a pattern).
DIFFS = [
    ('equal', TEXT, TEXT, '', 0, r'^a and b are equal\n  compared +3 cubes\n  u +0 differ, RMS of the differences 0\n'),
    ('other order', TEXT, results(ROWS[::-1]), '', 0, 'equal'),
    ('of several rows for a cube the last', TEXT, results([(1, 1, 1, 9.0, 9.0), *ROWS]), '', 0, 'equal'),
    ('a value', TEXT, changed(1, 0, -0.5), '', 1,
     r'u +1 differ, RMS .* 0\.144338\n +largest absolute 0\.25 +at \(2, 1, 1\): -0\.25 and -0\.5\n +largest relative 0\.5 '),
    ('absolutely tolerated', TEXT, changed(1, 0, -0.5), '--abs 0.25', 0, 'equal(.*\n)*.*largest absolute 0.25'),
    ('absolutely not', TEXT, changed(1, 0, -0.5), '--abs 0.249', 1, ''),
    ('relatively tolerated', TEXT, changed(1, 0, -0.5), '--rel 0.5', 0, ''),
    ('relatively not', TEXT, changed(1, 0, -0.5), '--rel 0.49', 1, ''),
    ('no number and itself', changed(0, 0, NAN), changed(0, 0, NAN), '', 0, ''),
    ('no number and itself, told apart', changed(0, 0, NAN), changed(0, 0, NAN), '--nan-differ', 1, '1 differ, 1 of them not finite'),
    ('no number and a number', changed(0, 0, NAN), TEXT, '--abs 1e9 --rel 1', 1, '1 of them not finite'),
    ('infinity and itself', changed(0, 0, INF), changed(0, 0, INF), '', 0, ''),
    ('infinities', changed(0, 0, INF), changed(0, 0, -INF), '--abs 1e308 --rel 1', 1, ''),
    ('infinity and a number', changed(0, 0, INF), TEXT, '--rel 1', 1, ''),
    ('rows in one only', TEXT, results([ROWS[2], (4, 4, 4, 0.0, 0.0)]), '', 1,
     r'compared +1 cubes\n  only in A +2 cubes: \(1, 1, 1\), \(2, 1, 1\)\n  only in B +1 cubes: \(4, 4, 4\)\n'),
    ('columns by name', TEXT, results([(*r[:3], r[4], r[3]) for r in ROWS], 'w u'), '', 0, ''),
    ('columns in one only', TEXT, results([r[:4] for r in ROWS], 'u'), '', 1, 'only in A +columns w'),
    ('without cubes', 'u\n1\n2\n', 'u\n1\n3\n4\n', '', 1, r'2 rows\n  only in B +1 rows: row 2\n +u +1 differ.*\n.*at row 1: 2 and 3'),
    ('coordinates in one only', 'u\n1\n', 'x\ty\tz\tf\tu\n1\t1\t1\t0\t1\n', '', 1, 'only one of them has any'),
    ('index columns', TEXT, TEXT.replace('\t0\t', '\t1\t', 1), '', 1, '1 rows differ after the coordinates'),
    ('quiet', TEXT, changed(0, 0, 7.0), '-q', 1, '^$'),
    ('models', MODEL, MODEL, '', 0, r'^a and b are equal\n$'),
    ('a result and a model', MODEL, TEXT, '', 2, '^$'),
    ('a bad model', MODEL, MODEL.replace('method', 'mthod'), '', 3, '^$'),
    ('a missing file', MODEL, None, '', 3, '^$'),
    *[('model: ' + told, MODEL, MODEL.replace(old, new, 1), '', 1, r'^a and b differ\n  ' + told + r'\n$') for old, new, told in (
        ('timestep 0.1', 'timestep 0.2', r'ANALYSIS +timeStep 0\.1 -> 0\.2\n  ACTUATOR +no. 1: duration 0\.2 -> 0\.4\n  PIEZO +#1: duration 0\.2 -> 0\.4'),
        ('cellsize 1', 'cellsize 2', r'ANALYSIS +cellSize 1 -> 2'),
        ('"a" 1 2 1', '"b" 1 2 1', r'MATERIALS +#1: name a -> b'),
        ('"a" 1 2 1', '"a" 1 2 1 2 0 "b" 1 2 1', r'MATERIALS +#2 added'),
        ('2 1 1 1 END', '3 1 1 1 END', r'CUBES +0 changed, 1 added, 1 removed, in x 2\.\.3, y 1\.\.1, z 1\.\.1\n +\(2, 1, 1\): #1 -> none\n +\(3, 1, 1\): none -> #1'),
        ('7 7 7 1 0.5', '7 7 7 1 0.75', r'DAMPING +1 changed, 0 added, 0 removed, in .*\n +\(7, 7, 7\): #1 0\.5 -> #1 0\.75'),
        ('direction U input', 'direction V input', r'ACTUATOR +no. 1: direction U -> V'),
        ('ACTUATOR', 'ACTUATOR shape point position 2 1 1 direction U input wave table 5 method force END ACTUATOR', 'ACTUATOR +no. 1 added'),
        ('t 1 1 1', 'i', r'PIEZO +#1: points: 1 entry differs, first \(0, 0\): t 1 1 1 -> i'),
        ('id 1 count 2 data 0 1', 'id 1 count 2 data 0 2', 'PIEZO +#1: table 1: 1 entry differs, first sample 1: 1 -> 2'),
        ('filename "s"', 'filename "s2"', 'SENSOR +#1: file s -> s2'),
        ('DUMP id 1', 'DUMP id 2', 'DUMP +#1 removed\n +#2 added'),
        ('id 5 count 2 data 0 1', 'id 5 count 2 data 1 1', 'TABLE +#5: data: 1 entry differs, first sample 0: 0 -> 1'),
        ('1 2 3 4 5 6', '1 2 3 4 5 7', r'SET +#3: data: 1 entry differs, first point 1: \(4, 5, 6\) -> \(4, 5, 7\)'))],
    ('order of cubes', MODEL, MODEL.replace('1 1 1 1 2 1 1 1', '2 1 1 1 1 1 1 1'), '', 0, ''),
    ('numbers of materials, not their order', MODEL.replace('"a" 1 2 1', '"a" 1 2 1 2 0 "b" 1 1 1'),
     MODEL.replace('1 0 "a" 1 2 1', '2 0 "b" 1 1 1 1 0 "a" 1 2 1'), '', 0, ''),
    ('a temperature', WARM, WARM.replace('21.5', '22'), '', 1, r'\(2, 1, 1\): #1 21\.5 -> #1 22'),
    ('a temperature, tolerated', WARM, WARM.replace('21.5', '22'), '--abs 0.5', 0, ''),
    ('temperatures in one only', WARM, MODEL, '', 1, r'CUBES +2 changed(.*\n)+ +\(1, 1, 1\): #1 20 -> #1\n'),
    ('no tolerance for positions', MODEL, MODEL.replace('position 1 1 1 output', 'position 1 1 2 output'), '--abs 5', 1, 'SENSOR'),
]


class ResultsTools(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.directory = pathlib.Path(holder.name)

    def write(self, **files):
        for name, text in files.items():
            (self.directory / name).unlink(missing_ok=True)
            if text is not None:
                (self.directory / name).write_text(text)

    def run_tool(self, arguments, status=0, given=''):
        done = subprocess.run([TOOL, *arguments.split()], cwd=self.directory, capture_output=True, text=True, timeout=60,
                              check=False, input=given)
        self.assertEqual(done.returncode, status, (arguments, done.stderr))
        return done

    def test_diff(self):
        for name, a, b, options, status, told in DIFFS:
            with self.subTest(name):
                self.write(a=a, b=b)
                done = self.run_tool('diff a b ' + options, status)
                self.assertRegex(done.stdout, told or ('differ\\n' if status else 'equal\\n'))
                self.assertEqual(status < 2, done.stderr == '')
                if status < 2:
                    document = json.loads(self.run_tool('diff a b --format=json ' + options, status).stdout)
                    self.assertEqual(document['equal'], status == 0)

    def test_diff_of_many_cells(self):
        """Against dictionaries: shuffled, with cells twice and cells missing."""
        chance = random.Random(3)
        cells = [(x, y, z) for x in range(-4, 5) for y in range(12) for z in range(15)]
        lists = []
        for _ in range(2):
            rows = [(*chance.choice(cells), chance.choice([0.0, 1.0, 1.5, NAN])) for _ in range(3000)]
            lists.append(rows)
        self.write(a=results(lists[0], 'u'), b=results(lists[1], 'u'))
        document = json.loads(self.run_tool('diff a b --format=json', 1).stdout)
        a, b = ({row[:3]: row[3] for row in rows} for rows in lists)
        both = a.keys() & b.keys()
        self.assertEqual(document['common'], len(both))
        for one, other, key in ((a, b, 'onlyA'), (b, a, 'onlyB')):
            self.assertEqual(document[key]['count'], len(one.keys() - other.keys()))
            self.assertTrue({tuple(lone['cube']) for lone in document[key]['first']} <= one.keys() - other.keys())
        column = document['columns'][0]
        self.assertEqual(column['differing'], sum(a[c] != b[c] and not (math.isnan(a[c]) and math.isnan(b[c])) for c in both))
        finite = [a[c] - b[c] for c in both if not math.isnan(a[c] - b[c])]
        self.assertAlmostEqual(column['rms'], math.sqrt(sum(d * d for d in finite) / len(finite)))
        largest = column['largestAbsolute']
        self.assertEqual((largest['difference'], abs(a[tuple(largest['cube'])] - b[tuple(largest['cube'])])), (1.5, 1.5))

    def test_diff_of_many_cubes(self):
        first = [(x, y, z) for z in range(3) for y in range(4) for x in range(5)]
        grids = [CUBES.replace('2', str(len(cells)), 1).replace('1 1 1 1 2 1 1 1', ' '.join(f'{x} {y} {z} 1' for x, y, z in cells))
                 for cells in (first, [(x + 1, y, z) for x, y, z in reversed(first)])]
        self.write(**{name: HEAD + grid + TAIL for name, grid in zip('ab', grids)})
        cubes = json.loads(self.run_tool('diff a b --format=json', 1).stdout)['cubes']
        self.assertEqual([cubes[key] for key in ('onlyA', 'onlyB', 'differing')], [12, 12, 0])
        self.assertEqual(cubes['box'], {'x': {'min': 0, 'max': 5}, 'y': {'min': 0, 'max': 3}, 'z': {'min': 0, 'max': 2}})
        self.assertEqual([change['cube'] for change in cubes['first'][:3]], [[0, 0, 0], [5, 0, 0], [0, 1, 0]])

    def test_stats(self):
        chance = random.Random(5)
        values = [chance.gauss(1, 3) for _ in range(999)] + [NAN, INF, -INF, NAN]
        self.write(a=results([(i, 7, -2, value, 1e200 * (i + 1)) for i, value in enumerate(values)]))
        arguments = 'stats a --percentiles 90,10 --bins 7'
        file, = json.loads(self.run_tool(arguments + ' --format=json').stdout)
        finite = values[:999]
        column, huge = file['columns']
        self.assertEqual([column[key] for key in ('name', 'finite', 'notNumbers', 'infinite')], ['u', 999, 2, 2])
        for key, best in (('min', min(finite)), ('max', max(finite))):
            self.assertEqual(column[key], {'value': best, 'row': finite.index(best), 'cube': [finite.index(best), 7, -2]})
        expected = {'mean': statistics.fmean(finite), 'standardDeviation': statistics.pstdev(finite),
                    'rms': math.sqrt(statistics.fmean(value * value for value in finite))}
        for key, value in expected.items():
            self.assertAlmostEqual(column[key], value, 12, key)
        deciles = statistics.quantiles(finite, n=10, method='inclusive')
        for found, (percent, value) in zip(column['percentiles'], ((10, deciles[0]), (90, deciles[8])), strict=True):
            self.assertEqual(found['percent'], percent)
            self.assertAlmostEqual(found['value'], value, 12)
        width = (max(finite) - min(finite)) / 7
        bins = [0] * 7
        for value in finite:
            bins[min(int((value - min(finite)) / width), 6)] += 1
        self.assertEqual(column['histogram'], bins)
        self.assertAlmostEqual(huge['rms'] / 1e200, math.sqrt(sum(i * i for i in range(1, 1004)) / 1003))
        text = self.run_tool(arguments).stdout
        self.assertRegex(text, rf'^a: 1003 rows\n  column 0 u: 999 finite, 2 not a number, 2 infinite\n    min {min(finite):.6g} +at \(')
        self.assertEqual([int(n) for n in re.findall(r'\| (\d+)$', text, re.M)][:7], bins)

    def test_stats_with_fewer_threads_than_asked(self):
        """Addresses for the stacks of 200 are not to be had."""
        self.write(a=results([(1, 1, 1, *map(float, range(200)))], ' '.join(f'u{i}' for i in range(200))))

        def run_limited(*arguments):
            return subprocess.run([TOOL, *arguments], cwd=self.directory, capture_output=True, text=True, check=False,
                                  preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (1 << 29, 1 << 29)))

        if run_limited('--version').returncode != 0:
            self.skipTest('a sanitizer or an emulator needs more itself')
        done = run_limited('stats', 'a', '--threads', '200')
        self.assertEqual((done.stderr, done.stdout), ('', self.run_tool('stats a --threads 1').stdout))

    def test_stats_of_odd_columns(self):
        self.write(a='u\tw\nnan\t5\n', b='no results', c='u\n')
        file, = json.loads(self.run_tool('stats a --columns w,u --format=json').stdout)
        self.assertEqual([(c['name'], c['min']['value'], c['max'], c['histogram'][-1]) for c in file['columns']],
                         [('w', 5, {'value': 5, 'row': 0}, 0), ('u', None, {'value': None, 'row': None}, 0)])
        self.assertIn('0 finite', self.run_tool('stats c').stdout)
        for arguments, status, told in (('a --columns ww', 1, "No value column is named 'ww'. Did you mean 'w'?"),
                                        ('b', 1, 'b'), ('no', 3, 'no'), ('a --bins 0', 2, 'bins')):
            self.assertIn(told, self.run_tool('stats ' + arguments, status).stderr)


if __name__ == '__main__':
    unittest.main()
