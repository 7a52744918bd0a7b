"""Runs the command-line tool named by ORVALO on small files and holds what it prints against what it should."""
import json
import os
import pathlib
import pty
import re
import subprocess
import tempfile
import threading
import time
import unittest

TOOL = os.environ["ORVALO"]
ROOT = pathlib.Path(__file__).resolve().parents[2]

HEAD = 'ANALYSIS cellsize 1 timestep 0.1 END\nMATERIALS 1 0 "a" 1 2 1  2 2 "b" 0 0 1 0 0 1 0 0 0.3 END\n'
TAIL = 'ACTUATOR shape point position 1 1 1 input wave table 5 method force END\n' \
       'TABLE id 5 count 2 data 0 1 END END\nSENSOR id 1 shape point position 1 1 1 output U filename "s" END\n'
CUBES = 'CUBES count 2 format 0 data 1 1 1 1 2 1 1 1 END END\n'
GOOD = HEAD + CUBES + TAIL
BAD = 'ANALYSIS\n\tcellsize\t-1\nEND\n'
BAD_TEXT = ('bad.model:2:11: error: Invalid proverty value provided. [119]\n'
            '    2 |         cellsize        -1\n'
            '      |                         ^\n')
RESULTS = 'x\ty\tz\tf\tux\tuy\n1\t2\t3\t0\t0.1\t-2.5e-3\n65535\t2\t3\t0\tnan\t7\n'

# What is asked of the tool: name, files, arguments, exit status, standard output and error. A compiled pattern is
# searched for, a text must match whole.
CASES = [
    ('nothing to say about good files', {'good.model': GOOD, 'r.txt': RESULTS}, 'check good.model r.txt', 0, '', ''),
    ('caret below tabs', {'bad.model': BAD}, 'check bad.model', 1, '', BAD_TEXT),
    ('long lines are cut on both sides', {'bad.model': 'ANALYSIS ' + 'cellsize 1 ' * 300 + 'bogus ' + 'timestep 1 ' * 300},
     'check bad.model', 1, '', 'bad.model:1:3310: error: Unknown keyword. [178]\n'
     '    1 | ...ize 1 cellsize 1 cellsize 1 cellsize 1 cellsize 1 bogus timestep 1 timestep 1 timestep 1 timestep 1 ...\n'
     '      | ' + ' ' * 53 + '^\n'),
    ('bytes that are no text, carriage returns', {'bad.model': b'ANALYSIS cellsize 1 \x1b[2J\xff\xc3\xa9\r\n'},
     'check bad.model', 1, '', 'bad.model:1:21: error: Invalid character. [105]\n'
     '    1 | ANALYSIS cellsize 1 <1B>[2J<FF>é\n      | ' + ' ' * 20 + '^\n'),
    ('row of an included file', {'d/main.model': HEAD + 'include "part.cubes"\n' + TAIL,
                                 'd/part.cubes': 'CUBES count 2 format 0 data\n1 1 1 1\n2 1 1 7\nEND END\n'},
     'check d/main.model', 1, '', 'd/part.cubes:3:7: error: Material no.7 is not defined. [151]\n'
     '    3 | 2 1 1 7\n      |       ^\nd/part.cubes:3:7: note: in row 2 of the data\n'),
    ('temperatures that are missing', {'w.model': HEAD + CUBES.replace('2 1 1 1', '2 1 1 2') + TAIL}, 'check w.model', 0, '',
     'w.model: warning: Missing temperatures for temperature-dependent definition of material #2. '
     'Room temperature (25.0 deg C) assumed.\n'),
    ('a missing file outranks a bad one', {'bad.model': BAD, 'good.model': GOOD}, 'check no.model bad.model good.model', 3, '',
     re.compile(r"^no\.model: error: Unable to open '.*no\.model' input file\. \[103\]\n" + re.escape(BAD_TEXT) + '$')),
    ('a directory', {'d/x': ''}, 'check d', 3, '', re.compile(r'^d:1:1: error: Unable to read .* \[104\]\n$')),
    ('results cut short', {'r.txt': RESULTS + '1\t2\t3\n'}, 'check r.txt', 1, '',
     'r.txt: error: Not enough columns provided (3 columns missing in line 4). [308]\n'),
    ('header of results without a line end', {'r.txt': 'x\ty\tz\tf\tu'}, 'check r.txt', 1, '',
     re.compile(r"^r\.txt: error: Unable to read '.*' results file\. \[201\]\n$")),
    ('neither model nor results', {'x': 'hello world\n'}, 'info x', 1, '', re.compile(r'^x:1:1: error: Section name')),
    ('summary', {'good.model': GOOD}, 'info good.model', 0,
     re.compile(r'^good\.model: model, .*2 x 1 x 1 cubes .*#1 +a +2 cubes +vp 2 +vs 1\n.*2 samples, 0\.2 us, from 0 us\n.*\(1, 1, 1\): u to s',
                re.S), ''),
    ('grid alone of a file that is no whole model', {'g.model': 'nothing else\n' + CUBES}, 'info --cubes-only g.model', 0,
     re.compile(r'^g\.model: cubes of a model, .*2 x 1 x 1 cubes .*#1 +2 cubes\n$', re.S), ''),
    ('value by row', {'r.txt': RESULTS}, 'value r.txt --column 1 --row 0', 0, '-0.0025\n', ''),
    ('value of a cube at negative coordinates, column by name', {'r.txt': RESULTS}, 'value r.txt --column uy --at -1 2 3', 0,
     '7\n', ''),
    ('value of no number', {'r.txt': RESULTS}, 'value r.txt --column 0 --row 1', 0, 'nan\n', ''),
    ('value of a cube without one', {'r.txt': RESULTS}, 'value r.txt --column 0 --at 0 2 3', 1, '',
     'r.txt: error: No data found for specified cube. [305]\n'),
    ('value of a negative row', {'r.txt': RESULTS}, 'value r.txt --column 0 --row -1', 1, '',
     'r.txt: error: Invalid row number provided. [300]\n'),
    ('value far beyond every cube, file last', {'r.txt': RESULTS}, 'value --column 0 --at 1 -99999999999 3 r.txt', 1, '',
     'r.txt: error: Y coordinate out of range. [303]\n'),
    ('results with the names of sections, without rows, with a bad row',
     {'a': 'table\tset\n1\t2\n', 'b': 'ux\tuy\n', 'c': 'ux\tuy\nabc\t2\n'}, 'check a b c', 1, '',
     'c: error: Too many columns provided (line 2). [307]\n'),
    ('models with a first word that is none', {'a': 'ANALYSES cellsize\n 1 timestep 0.1 END\n', 'b': '#A b\n1\n2 END\n'},
     'check a b', 1, '', re.compile(r'^a:1:1: error: .*\^\nb:1:1: error: .*\^\n$', re.S)),
    ('value of an unknown column', {'r.txt': RESULTS}, 'value r.txt --column uz --row 0', 1, '',
     "r.txt: error: No value column is named 'uz'.\n"),
    ('value from a missing file', {}, 'value no.txt --column 0 --row 0', 3, '',
     re.compile(r"^no\.txt: error: Unable to open '.*no\.txt' results file\. \[200\]\n$")),
    ('no command', {}, '', 2, '', re.compile('.')),
    ('no file', {}, 'check', 2, '', re.compile('.')),
    ('unknown option', {}, 'info --bogus x', 2, '', re.compile('.')),
    ('unknown format', {}, 'check --format=xml x', 2, '', re.compile('.')),
    ('value of nowhere', {}, 'value x --column 0', 2, '', re.compile('.')),
    ('value of two places', {}, 'value x --column 0 --row 1 --at 1 2 3', 2, '', re.compile('.')),
    ('help', {}, '--help', 0, re.compile('Exit status'), ''),
    ('version', {}, '--version', 0, re.compile(r'^orvalo \d+\.\d+\.\d+\n$'), ''),
]


class ToolTest(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.directory = pathlib.Path(holder.name)

    def write(self, files):
        for name, content in files.items():
            path = self.directory / name
            path.parent.mkdir(exist_ok=True)
            path.write_bytes(content if isinstance(content, bytes) else content.encode())

    def run_tool(self, arguments):
        return subprocess.run([TOOL] + arguments.split(), cwd=self.directory, capture_output=True, timeout=60, check=False)

    def run_json(self, arguments, status):
        done = self.run_tool(arguments + ' --format=json')
        self.assertEqual((done.returncode, done.stderr), (status, b''))
        return json.loads(done.stdout, parse_constant=self.fail)

    def run_on_terminal(self, arguments, **environment):
        """Standard error as a terminal received it."""
        master, slave = pty.openpty()
        process = subprocess.Popen([TOOL] + arguments.split(), cwd=self.directory, stdout=subprocess.DEVNULL, stderr=slave,
                                   env={**os.environ, 'TERM': 'xterm', 'NO_COLOR': '', **environment})
        os.close(slave)
        received = b''
        while True:
            try:
                part = os.read(master, 4096)
            except OSError:
                break
            if not part:
                break
            received += part
        os.close(master)
        self.assertLess(process.wait(timeout=60), 2)
        return received.decode().replace('\r\n', '\n')

    def assert_text(self, actual, expected):
        if isinstance(expected, str):
            self.assertEqual(actual, expected)
        else:
            self.assertRegex(actual, expected)

    def test_cases(self):
        for name, files, arguments, status, out, err in CASES:
            with self.subTest(name):
                self.setUp()
                self.write(files)
                done = self.run_tool(arguments)
                self.assert_text(done.stderr.decode(), err)
                self.assert_text(done.stdout.decode(), out)
                self.assertEqual(done.returncode, status)

    def test_every_section_begins_a_model(self):
        sections = re.findall(r'^    \{"(\w+)", "', (ROOT / 'src/Reader/Sections.h').read_text(), re.M)
        self.assertGreater(len(sections), 9)
        for word in sections + ['include']:
            (self.directory / 'file').write_text(word + '\tid\t1\n')
            self.assertEqual(self.run_json('check file', 1)[0]['kind'], 'model', word)

    def test_check_as_json(self):
        self.write({'bad.model': HEAD + 'CUBES count 2 format 0 data\n1 1 1 1\n1 1 70000', 'w.model': HEAD +
                    'CUBES count 1 format 1 data 1 1 1 1 20 END END\n' + TAIL, b'\xff.txt'.decode(errors='surrogateescape'): RESULTS})
        bad, warned, results, missing = self.run_json('check bad.model w.model \udcff.txt no.model', 3)
        offset = len(HEAD) + len('CUBES count 2 format 0 data\n1 1 1 1\n1 1 ')
        self.assertEqual(bad, {'path': 'bad.model', 'kind': 'model', 'ok': False, 'problems': [
            {'severity': 'error', 'code': 122, 'message': 'Invalid Z coordinate value (or out of range).',
             'path': 'bad.model', 'line': 5, 'column': 5, 'offset': offset, 'row': 2}]})
        self.assertTrue(warned['ok'])
        self.assertEqual(warned['problems'], [
            {'severity': 'warning', 'code': None, 'message': 'Temperatures of cells made of material #1 were ignored, because '
             'material is defined as non-temperature dependent.', 'path': None, 'line': None, 'column': None, 'offset': None,
             'row': None}])
        self.assertEqual((results['kind'], results['ok'], results['problems']), ('results', True, []))
        self.assertEqual((missing['ok'], missing['problems'][0]['code']), (False, 103))

    def test_info_as_json(self):
        self.write({'good.model': GOOD, 'r.txt': RESULTS, 'bad.model': BAD})
        model, results, bad = self.run_json('info good.model r.txt bad.model', 1)
        self.assertEqual(model['grid']['x'], {'min': 1, 'max': 2, 'cubes': 2, 'length': 2.0})
        self.assertEqual([(m['number'], m['cubes'], m['vp']) for m in model['materials']], [(1, 2, 2.0)])
        self.assertEqual(model['sensors'][0]['position'], [1, 1, 1])
        self.assertEqual((model['actuators'][0]['samples'], round(model['actuators'][0]['duration'], 9)), (2, 0.2))
        self.assertEqual(results['box'], {'x': {'min': -1, 'max': 1}, 'y': {'min': 2, 'max': 2}, 'z': {'min': 3, 'max': 3},
                                          'cells': 3, 'covered': 2, 'fill': 2 / 3})
        self.assertEqual(results['columns'][0], {'name': 'ux', 'min': 0.1, 'max': 0.1, 'mean': 0.1, 'notNumbers': 1})
        self.assertEqual((bad['ok'], bad['problems'][0]['line']), (False, 2))

    def test_example(self):
        plate = ROOT / 'examples' / 'plate'
        model, text, mat = self.run_json(f'info {plate}/plate.model {plate}/plate-results.txt {plate}/plate-results.mat', 0)
        self.assertEqual(model['grid']['cubes'], 120000)
        self.assertEqual([problem['severity'] for problem in model['problems']], ['warning'] * 3)
        self.assertEqual([actuator['samples'] for actuator in model['actuators']], [625, 625])
        self.assertEqual((text['format'], mat['format'], text['rows']), ('text', 'mat', 15000))
        self.assertEqual(text['box'], mat['box'])
        for in_text, in_mat in zip(text['columns'], mat['columns'], strict=True):
            self.assertEqual({**in_text, 'name': None}, in_mat)

    def test_colour_only_where_welcome(self):
        self.write({'bad.model': BAD})
        self.assertIn('\033[', self.run_on_terminal('check bad.model'))
        self.assertEqual(self.run_on_terminal('check bad.model', NO_COLOR='1'), BAD_TEXT)

    def test_progress_bar_comes_and_goes(self):
        """The grid is half read while a slow include keeps the tool waiting."""
        self.write({'slow.model': HEAD + CUBES.replace('count 2', 'count 0.4e1') + 'include "rest"\n'})
        os.mkfifo(self.directory / 'rest')

        def feed():
            with open(self.directory / 'rest', 'w', encoding='ascii') as pipe:
                time.sleep(0.7)
                pipe.write(TAIL)

        feeder = threading.Thread(target=feed, daemon=True)
        feeder.start()
        received = self.run_on_terminal('check slow.model')
        feeder.join()
        self.assertRegex(received, r'\r\033\[K\[#+\.+\]  50%  slow\.model')
        self.assertTrue(received.endswith('slow.model\r\033[K'), received)

    def test_pipes_are_read_once(self):
        for arguments, content, message in (('check pipe', BAD, 'pipe:2:11: error: Invalid proverty value'),
                                            ('value pipe --column 0 --row 0', 'u', 'pipe: error: Unable to read')):
            os.mkfifo(self.directory / 'pipe')
            feeder = threading.Thread(target=(self.directory / 'pipe').write_text, args=[content], daemon=True)
            feeder.start()
            done = self.run_tool(arguments)
            feeder.join()
            self.assertEqual((done.returncode, done.stderr.decode().startswith(message)), (1, True), done.stderr)
            (self.directory / 'pipe').unlink()

    def test_short_reads_draw_nothing(self):
        self.write({'good.model': GOOD})
        self.assertEqual(self.run_on_terminal('check good.model'), '')


if __name__ == '__main__':
    unittest.main()
