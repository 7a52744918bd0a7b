"""Runs the command-line tool named by ORVALO on small files and holds what it prints against what it should."""
import contextlib
import fcntl
import json
import os
import pathlib
import pty
import re
import signal
import struct
import subprocess
import tempfile
import termios
import threading
import time
import unittest

import jsonschema

TOOL = os.environ["ORVALO"]
# Under Wine there are no terminals and no pipes with a name, and names of files are text.
WINDOWS = os.environ.get("ORVALO_SYSTEM") == "Windows"
ODD_NAME = 'ä.txt' if WINDOWS else '\udcff.txt'
ROOT = pathlib.Path(__file__).resolve().parents[2]

HEAD = 'ANALYSIS cellsize 1 timestep 0.1 END\nMATERIALS 1 0 "a" 1 2 1 END\n'
TAIL = 'ACTUATOR shape point position 1 1 1 direction U input wave table 5 method force END\n' \
       'TABLE id 5 count 2 data 0 1 END END\nSENSOR id 1 shape point position 1 1 1 output U filename "s" END\n'
CUBES = 'CUBES count 2 format 0 data 1 1 1 1 2 1 1 1 END END\n'
GOOD = HEAD + CUBES + TAIL
WARM = GOOD.replace('2 1 END', '2 1  2 2 "b" 0 0 1 0 0 1 0 0 0.3 END').replace('2 1 1 1 END', '2 1 1 2 END')
BAD = GOOD.replace(' cellsize 1', '\n\tcellsize\t-1\n')
BAD_TEXT = ('bad.model:2:11: error: Invalid proverty value provided. [119]\n'
            '    2 |         cellsize        -1\n'
            '      |                         ^~\n'
            "bad.model:2:11: note: The value of 'cellsize' must be above 0.\n")
ONE = '1 error in 1 file\n'
WARNING = """w.model:2:26: warning: Missing temperatures for temperature-dependent definition of material #2. Room temperature \
(25.0 deg C) assumed. [missing-temperatures]
    2 | MATERIALS 1 0 "a" 1 2 1  2 2 "b" 0 0 1 0 0 1 0 0 0.3 END
      |                          ^
w.model:3:22: note: With 'format 1' each row ends with a temperature.
    3 | CUBES count 2 format 0 data 1 1 1 1 2 1 1 2 END END
      |                      ^
"""
RESULTS = 'x\ty\tz\tf\tux\tuy\n1\t2\t3\t0\t0.1\t-2.5e-3\n65535\t2\t3\t0\tnan\t7\n'

TIDY = """ANALYSIS
  cellsize = 1
  timestep = 0.1
END

MATERIALS
  1 0 "a" 1 2 1
  2 2 "b" 0 0 1 0 0 1 0 0 0.3
END

CUBES
  count = 2
  format = 0
  data
1 1 1 1
2 1 1 2
  END
END

ACTUATOR
  shape = point
  position = 1 1 1
  input = wave
  table = 5
  method = force
  direction = u
END

TABLE
  id = 5
  count = 2
  data
0
1
  END
END

SENSOR
  id = 1
  shape = point
  position = 1 1 1
  output = u
  filename = "s"
END
"""

# What is asked of the tool: name, files, arguments, exit status, standard output and error. A compiled pattern is
# searched for, a text must match whole.
CASES = [
    ('nothing to say about good files', {'good.model': GOOD, 'r.txt': RESULTS}, 'check good.model r.txt', 0, '', ''),
    ('a warning, by its rule', {'w.model': WARM}, 'check w.model', 0, '', WARNING + '1 warning in 1 file\n'),
    ('warnings that are not wanted', {'w.model': WARM}, 'check --no-warnings w.model', 0, '', ''),
    ('a warning that is not wanted', {'w.model': WARM}, 'check --disable missing-temperatures w.model', 0, '', ''),
    ('a warning that is an error', {'w.model': WARM}, 'check --warnings=error w.model', 1, '',
     WARNING.replace('warning:', 'error:') + ONE),
    ('an error that is not wanted', {'w.model': WARM}, 'check --disable unknown-keyword w.model', 2, '', re.compile('is an error')),
    ('mark below tabs', {'bad.model': BAD}, 'check bad.model', 1, '', BAD_TEXT + ONE),
    ('long lines are cut on both sides', {'bad.model': HEAD + 'CUBES' + ' ' * 300 + 'bogus ' + 'count 1 ' * 300},
     'check --first bad.model', 1, '', re.compile(r'\n    3 \| \.\.\. {50}bogus (count 1 ){6}co\.\.\.\n      \| {54}\^~~~~\n')),
    ('bytes that are no text, carriage returns', {'bad.model': b'ANALYSIS cellsize 1 \x1b[2J\xff\xc3\xa9\xe2\x80\x9d\r\n'},
     'check --first bad.model', 1, '', re.compile(re.escape('bad.model:1:21: error: Invalid character. [105]\n'
     '    1 | ANALYSIS cellsize 1 <1B>[2J<FF>é”\n      | ' + ' ' * 20 + '^'))),
    ('row of an included file', {'d/main.model': HEAD + ' include "part.cubes"\n' + TAIL,
                                 'd/part.cubes': 'CUBES count 2 format 0 data\n1 1 1 1\n2 1 1 7\nEND END\n'},
     'check d/main.model', 1, '', re.compile(r"""^d/part\.cubes:3:7: error: Material no\.7 is not defined\. \[151\]
    3 \| 2 1 1 7
      \|       \^
(.*\n)*d/part\.cubes:3:7: note: in row 2 of the data
d/main\.model:3:10: note: included from here
1 error in 1 file
$""")),
    ('the mended line, several errors, several files',
     {'a': 'ANALYSIS celsize 1 timestep .1 END\n' + HEAD.split('\n', 1)[1] + CUBES + TAIL.replace('input', 'inptu'),
      'b': BAD}, 'check a b', 1, '', re.compile(r"""^a:1:10: error: Unknown keyword\. \[178\]
    1 \| ANALYSIS celsize 1 timestep \.1 END
      \|          \^~~~~~~
  fix \| ANALYSIS cellsize 1 timestep \.1 END
      \|          ~~~~~~~~
(.*\n)*a:4:49: error:(.*\n)*  fix \| .* input (.*\n)*b:2:11: error:(.*\n)*3 errors in 2 files
$""")),
    *[('one mistake, one error: ' + text, {'a': text, 'other.cubes': CUBES}, 'check --as model a', 1, '', re.compile(
        rf'^a:{place}: error: .*\[{code}\]\n(.*\n)*{told}(.*\n)*{ONE}$')) for text, place, code, told in (
            (GOOD.replace('force END', 'force').replace('TABLE', 'TABLE\n'), '6:2', 160, 'a:4:1: note: ACTUATOR begins here and has no END.\n(.*\n)*  fix \\| END\n'),
            (GOOD.replace('wave table 5 method force END', 'wave method force'), '5:7', 113, 'a:4:1: note: ACTUATOR begins'),
            (GOOD.replace('size 1', 'size 0,5'), '1:19', 119, '  fix \\| .* 0\\.5 '),
            (GOOD.replace('"a" 1 2 1', 'a" 1 2 1\n'), '2:15', 148, '  fix \\| MATERIALS 1 0 "a" 1 2 1\n'),
            (HEAD + 'include other.cubes\n' + TAIL, '3:9', 110, '  fix \\| include "other.cubes"\n'),
            (HEAD + 'include "d/x"\n' + TAIL, '3:9', 106, ''),
            ('MATLAB 5.0 MAT-file', '1:1', 132, 'a:1:1: note: This looks like .*results'), (RESULTS, '1:1', 132, 'a:1:1: note: This looks like'))],
    ('only the first of several errors', {'a': BAD.replace('END', 'bogus')}, 'check --first a', 1, '',
     re.compile(r'^a:2:11: (.*\n)*1 error in 1 file\n$')),
    ('what is put in is marked by plus signs', {'a': GOOD.replace('"s"', '"s')}, 'check --first a', 1, '',
     re.compile(r'  fix \| .*"s.*\n      \| +\+\n')),
    ('what would mend another line stands below it', {'a': GOOD.replace('table 5', 'table 6')}, 'info a', 1, '', re.compile(
        r'^a:\d:1: error: .* \[177\]\n +\d \| \(end of the file\)\n +\| \^\na:4:\d+: note: .*\n    4 \| .* table 6 .*\n'
        r'      \| +\^\n  fix \| .* table 5 .*\n      \| +~\n(?!.*mended here)')),
    ('what an include that is missing would have held', {'a': HEAD + 'include "no.cubes"\n' + TAIL}, 'check a', 3, '',
     re.compile(r'^a:3:9: error: .* \[103\]\n    3 \| include "no.cubes"\n      \|         \^~{9}\n(a:3:9: note: .*\n)*' + ONE + '$')),
    ('a missing file outranks a bad one', {'bad.model': BAD, 'good.model': GOOD}, 'check no.model bad.model good.model', 3, '',
     re.compile(r"^no\.model: error: Unable to open '.*no\.model' input file\. \[103\]\n(.*\n)*" +
                re.escape(BAD_TEXT + '2 errors in 2 files\n') + '$')),
    ('a directory', {'d/x': ''}, 'check d', 3, '', re.compile(r"^d: error: This is a directory\..* \[104\]\n" + ONE)),
    ('the models in a directory', {'d/a.model': BAD, 'd/e/b.model': GOOD, 'd/x': BAD}, 'check -r d', 1, '',
     BAD_TEXT.replace('bad.model', 'd/a.model') + ONE),
    ('a directory without models', {'d/x': BAD}, 'check -r d', 3, '', re.compile(r'^d: error: There is no \*\.model ')),
    ('no summary of a directory', {'d/x': ''}, 'info d', 3, '', re.compile('^d: error: This is a directory')),
    ('a kind that is told', {'r.txt': RESULTS}, 'check --as model r.txt', 1, '', re.compile(r'^r\.txt:1:1: error: .* \[\d+\]')),
    ('colour where it is asked for', {'a': BAD}, 'check --color always a', 1, '', re.compile(r'\033\[.*error:.*\033\[0m')),
    ('a file alone', {'good.model': GOOD}, 'good.model', 0, re.compile(r'^good\.model: model, read in [0-9.]+ ms\n'), ''),
    ('options alone', {'good.model': GOOD}, '--no-timing good.model', 0, re.compile(r'^good\.model: model\n'), ''),
    ('an unknown command', {}, 'chekc x', 2, '', "orvalo: 'chekc' is neither a command nor a file. Did you mean 'check'?\n"),
    ('a rule', {}, 'check --explain unknown-keyword', 0, re.compile(r'^unknown-keyword \(error 178\)\n\n(.*\n)*Bad:\n    (.*\n)*Good:\n    '), ''),
    ('the rules of a code', {}, 'check --explain 151', 0, re.compile(r' \(error 151\)\n'), ''),
    ('an unknown rule', {}, 'check --explain bogus', 2, '', re.compile("^orvalo: there is no rule 'bogus'")),
    ('an unknown rule to disable', {'a': GOOD}, 'check --disable unused-materials a', 2, '', re.compile('did you mean unused-material\\?')),
    ('markdown of files', {'a': GOOD}, 'check --format=markdown a', 2, '', re.compile('markdown is for --explain')),
    ('standard input forever', {}, 'check --watch -', 2, '', re.compile('cannot be watched')),
    *[(f'{command} of results that are not right', {'r.txt': RESULTS + '1\t2\t3\n1\t2\t3\t0\t0,5\t1\n'}, command + ' r.txt' + more, 1, '',
       re.compile(r'^r\.txt:4:6: error: Not enough columns provided \(3 columns missing in line 4\)\. \[308\]\n(.*\n)*r\.txt:5:9: error: '
                  r'.*\n    5 \| 1 .* 0,5 +1\n      \| +\^~~\n  fix \| 1 .* 0\.5 ')) for command, more in (
                      ('check', ''), ('info', ''), ('value', ' --column 0 --row 0'))],
    ('no excerpt of what is no text', {'r.mat': b'\x89HDF\r\n\x1a\n' + 99 * b'0'}, 'check r.mat', 1, '', re.compile(r'^[^|]*HDF5[^|]*$')),
    ('header of results without a line end', {'r.txt': 'x\ty\tz\tf\tu'}, 'check r.txt', 1, '',
     re.compile(r"^r\.txt.*: error: Unable to read '.*' results file\. \[201\]\n")),
    ('neither model nor results', {'x': 'hello world\n'}, 'info x', 1, '', re.compile(r'^x:1:1: error: Section name')),
    ('summary', {'good.model': GOOD}, 'info good.model', 0,
     re.compile(r'^good\.model: model, .*2 x 1 x 1 cubes .*#1 +a +2 cubes +vp 2 +vs 1\n.*2 samples, 0\.2 us, from 0 us\n.*\(1, 1, 1\): u to s',
                re.S), ''),
    ('a grid with damping cells around', {'a': HEAD + CUBES + 'DAMPING count 1 data 9 1 1 1 .5 END END ' + TAIL}, 'a', 0,
     re.compile(r'grid +9 x 1 x 1 cells, damping included \(x 1\.\.9,'), ''),
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
    ('results with the names of sections, without rows, with a bad row, with blanks, with a BOM',
     {'a': 'table\tset\n1\t2\n', 'b': 'ux\tuy\n', 'c': 'ux\tuy\nabc\t2\n', 'd': 'X Y Z F ux\n1 2 3 0 5\n', 'e': '\ufeff' + RESULTS},
     'check --format=json a b c d e', 1, re.compile('(?s)^(?!.*"model")'), ''),
    ('models with a first word that is none, a byte order mark, tabs in the first comment or after a misspelt word',
     {'a': 'ANALYSES cellsize\n 1 timestep 0.1 END\n', 'b': '#A b\n1\n2 END\n', 'c': '\ufeff' + GOOD, 'd': ';\tby\tX\n' + GOOD,
      'e': 'ANALYSYS\tcellsize\t=\none\n', 'f': ('\ufeff' + GOOD).encode('utf-16-le')},
     'check --format=json a b c d e f', 1, re.compile('(?s)^(?!.*"results")'), ''),
    ('value of an unknown column', {'r.txt': RESULTS}, 'value r.txt --column uz --row 0', 1, '',
     "r.txt: error: No value column is named 'uz'.\n"),
    ('value from a missing file', {}, 'value no.txt --column 0 --row 0', 3, '',
     re.compile(r"^no\.txt: error: Unable to open '.*no\.txt' results file\. \[200\]\n")),
    ('tidy form, printed', {'m.model': '; gone\n' + WARM}, 'format m.model', 0, TIDY, ''),
    ('tidy form, in the place of another file', {'m.model': GOOD, 'o': 'old'}, 'format m.model -o o', 0, '', ''),
    ('tidy already', {'m.model': TIDY}, 'format --check m.model', 0, '', ''),
    ('not tidy yet', {'m.model': GOOD}, 'format --check m.model', 1, '', 'm.model: would change\n'),
    ('tidy but for the cubes', {'m.model': TIDY, 'x.cubes': ''}, 'format --check --cubes-file x.cubes m.model', 1, '',
     'm.model: would change\nx.cubes: would change\n'),
    ('format of a bad model', {'bad.model': BAD}, 'format bad.model', 1, '', BAD_TEXT),
    ('format of results', {'r.txt': RESULTS}, 'format r.txt', 1, '', 'r.txt: error: These are results, and no model.\n'),
    ('format to nowhere', {'m.model': GOOD}, 'format m.model -o no/where', 3, '',
     "m.model: error: Unable to write 'no/where': No such file or directory\n"),
    ('format with a name that cannot be included', {'m.model': GOOD}, 'format m.model -o o --cubes-file A.b', 1, '',
     "m.model: error: The file for cubes: the name 'A.b' would be read back in lower case\n"),
    ('cubes of a printed model', {'m.model': GOOD}, 'format m.model --cubes-file a.b', 2, '', re.compile('needs --output')),
    ('no command', {}, '', 2, '', re.compile('.')),
    ('no file', {}, 'check', 2, '', re.compile('.')),
    ('unknown option', {}, 'info --bog\x1bus x', 2, '', re.compile('--bog<1B>us')),
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

    def run_tool(self, arguments, given=b''):
        done = subprocess.run([TOOL] + arguments.split(), cwd=self.directory, capture_output=True, timeout=60, check=False,
                              input=given)
        if WINDOWS:
            # Wine has the whole file system on a drive of its own.
            done.stderr = done.stderr.replace(b'\\', b'/').replace(b'Z:/', b'/')
        return done

    def run_json(self, arguments, status):
        done = self.run_tool(arguments + ' --format=json')
        self.assertEqual((done.returncode, done.stderr), (status, b''))
        return json.loads(done.stdout, parse_constant=self.fail)

    def run_on_terminal(self, arguments, columns=120, **environment):
        """Standard error as a terminal received it."""
        master, slave = pty.openpty()
        fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack('4H', 25, columns, 0, 0))
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
        self.write({'bad.model': HEAD + 'CUBES count 2 format 0 data\n1 1 1 1\n1 1 70000 1 END END\n' + TAIL,
                    'w.model': HEAD + 'include "W.cubes"\n' + TAIL.replace('force', 'forc').replace('output', 'outptu'),
                    'w.cubes': CUBES.replace('data', 'dta'), ODD_NAME: RESULTS})
        document = self.run_json(f'check bad.model w.model {ODD_NAME} no.model', 3)
        jsonschema.validate(document, json.loads((ROOT / 'docs' / 'check.schema.json').read_text()))
        bad, misspelt, results, missing = document
        offset = len(HEAD) + len('CUBES count 2 format 0 data\n1 1 1 1\n1 1 ')
        self.assertEqual((bad['path'], bad['kind'], bad['ok']), ('bad.model', 'model', False))
        for key, value in {'severity': 'error', 'code': 122, 'message': 'Invalid Z coordinate value (or out of range).',
                           'path': 'bad.model', 'line': 5, 'column': 5, 'offset': offset, 'length': 5, 'row': 2}.items():
            self.assertEqual(bad['problems'][0][key], value, key)
        keyword, *others = misspelt['problems']
        self.assertEqual(keyword['includedFrom'], [{'path': 'w.model', 'line': 3, 'column': 9}])
        self.assertEqual(keyword['fixes'], [{'path': 'w.cubes', 'offset': 23, 'length': 3, 'replacement': 'data'}])
        self.assertTrue({'data', 'count'} <= set(keyword['expected']))
        self.assertEqual([(problem['line'], problem['row']) for problem in others], [(4, None), (6, None)])
        self.assertEqual((results['kind'], results['ok'], results['problems']), ('results', True, []))
        self.assertEqual((missing['ok'], missing['problems'][0]['code'], missing['problems'][0]['line']), (False, 103, None))

    def test_documents(self):
        """What the pages show is what the tool says."""
        page = (ROOT / 'docs' / 'json.md').read_text()
        model, shown = (re.search(f'```{kind}\n(.*?)```', page, re.S)[1] for kind in ('text', 'json'))
        self.write({'bad.model': model})
        self.assertEqual(self.run_json('check bad.model', 1), json.loads(shown))
        rules = self.run_tool('check --explain=all --format=markdown').stdout.decode()
        self.assertEqual((ROOT / 'docs' / 'diagnostics.md').read_text(), rules)

    def test_info_as_json(self):
        pulse = 'ACTUATOR shape point position 1 1 1 input definition method force type fullpulse waveform sine envelope none ' \
                'frequency 7 duration .35 phase 45 END '
        good = GOOD.replace('0.1 END', '0.1 starttime .7 END', 1).replace('count 2 data 0 1', 'count 3 data 0 1 0')
        good = good.replace('force END', 'force start .6 direction V factorv .5 processing invert END ' + pulse)
        good = good.replace('2 1 END', '2 1  2 2 "b" 0 0 1 0 0 1 0 0 0.3 END').replace('"s"', '"s" notation decimal')
        self.write({'good.model': good, 'r.txt': RESULTS, 'bad.model': BAD})
        model, results, bad = self.run_json('info good.model r.txt bad.model', 1)
        self.assertEqual(model['grid']['x'], {'min': 1, 'max': 2, 'cubes': 2, 'length': 2.0})
        self.assertEqual([(m['number'], m['cubes'], m['vp']) for m in model['materials'][:1]], [(1, 2, 2.0)])
        self.assertEqual((model['materials'][1]['cubes'], model['materials'][1]['coefficients']['poisson']), (0, [0, 0, 0.3]))
        self.assertEqual(model['sensors'][0]['position'], [1, 1, 1])
        self.assertEqual((model['timeStep'], model['startTime']), (0.1, 0.7))
        driven = {'samples': 3, 'duration': 0.3, 'start': 0.6, 'factors': [1, 0.5, 1], 'processing': 'invert', 'direction': 'V'}
        self.assertEqual({key: model['actuators'][0][key] for key in driven}, driven)
        self.assertEqual(model['actuators'][1]['definition'], {'type': 'fullpulse', 'waveform': 'sine', 'envelope': 'none',
                                                               'frequency': 7, 'duration': 0.35, 'phase': 45})
        self.assertEqual(model['sensors'][0]['notation'], 'decimal')
        self.assertNotIn('readSeconds', model)
        self.assertGreater(self.run_json('info --timing good.model', 0)[0]['readSeconds'], 0)
        self.assertEqual(results['box'], {'x': {'min': -1, 'max': 1}, 'y': {'min': 2, 'max': 2}, 'z': {'min': 3, 'max': 3},
                                          'cells': 3, 'covered': 2, 'fill': 2 / 3})
        self.assertEqual(results['columns'][0], {'name': 'ux', 'min': 0.1, 'max': 0.1, 'mean': 0.1, 'notNumbers': 1})
        self.assertEqual((bad['ok'], bad['problems'][0]['line']), (False, 2))

    def test_cells_that_have_a_value(self):
        """In order by x or by z, or in none, in a small box or a wide one."""
        for cells, covered in (('111 112 121 211', 4), ('111 211 121 112', 4), ('111 211 112 121', 4), ('111 112 112 121 211', 4),
                               ('211 111 211 112', 3), ('999 111 999', 2), ('111', 1)):
            for unit in (1, 100):
                rows = ''.join('\t'.join(str(int(digit) * unit) for digit in cell) + '\t0\t1\n' for cell in cells.split())
                self.write({'r.txt': 'x\ty\tz\tf\tu\n' + rows})
                self.assertEqual(self.run_json('info r.txt', 0)[0]['box']['covered'], covered, (cells, unit))

    def test_columns_of_many_rows(self):
        """As many as take several of the blocks in which they are stored and summed."""
        rows = ''.join(f'{i % 1000}\t{i // 1000}\t{i % 2}\t0\t{i}\n' for i in range(140000))
        self.write({'r.txt': 'x\ty\tz\tf\tu\n' + rows})
        results = self.run_json('info r.txt', 0)[0]
        self.assertEqual(results['box'], {'x': {'min': 0, 'max': 999}, 'y': {'min': 0, 'max': 139}, 'z': {'min': 0, 'max': 1},
                                          'cells': 280000, 'covered': 140000, 'fill': 0.5})
        self.assertEqual(results['columns'], [{'name': 'u', 'min': 0, 'max': 139999, 'mean': 69999.5, 'notNumbers': 0}])

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

    @unittest.skipIf(WINDOWS, 'no terminal')
    def test_terminals(self):
        self.write({'bad.model': BAD, 'long.model': HEAD + 'CUBES ' + 'count 1 ' * 50 + 'bogus ' + 'count 1 ' * 50})
        self.assertIn('\033[', self.run_on_terminal('check bad.model'))
        self.assertEqual(self.run_on_terminal('check bad.model', NO_COLOR='1'), BAD_TEXT + ONE)
        self.assertEqual(self.run_on_terminal('check --color=never bad.model'), BAD_TEXT + ONE)
        for columns in (40, 80, 200):
            lines = self.run_on_terminal('check --first --color=never long.model', columns).split('\n')
            self.assertLessEqual(max(len(lines[1]), len(lines[2])), columns)
            self.assertGreaterEqual(len(lines[1]), columns - 1)
            self.assertEqual(lines[1][lines[2].index('^'):][:len('bogus')], 'bogus')

    def test_standard_input_and_pipes(self):
        """Each is read once, yet shown like a file, and includes what stands beside where it is named."""
        part = {'part': CUBES.replace('1 1 1 1', '1 1 x 1')}
        self.write({**part, **{'d/' + name: text for name, text in part.items()}})
        text = HEAD + 'include "part"\n' + TAIL
        line = HEAD.count('\n') + 1
        missing = (f"<stdin>:{line}:9: error: Unable to open '{self.directory}/none' input file. [103]\n    {line} | include \"none\"\n"
                   f'      |         ^~~~~~\n<stdin>:{line}:9: note: The system says: No such file or directory.\n<stdin>:{line}:9: note: '
                   f'It was looked for in the directory of the main file: {self.directory}.\n1 error')
        for arguments, content, status, message in (
                ('check -', text.replace('part', 'none'), 3, missing),
                ('check -', BAD, 1, BAD_TEXT.replace('bad.model', '<stdin>')), ('check -', text, 1, 'part:1:33: error: Inv'),
                ('check d/pipe', BAD, 1, BAD_TEXT.replace('bad.model', 'd/pipe')),
                ('check d/pipe', text, 1, 'd/part:1:33: error: Inv'), ('info -', RESULTS, 0, ''), ('-', GOOD, 0, ''),
                ('value d/pipe --column 0 --row 0', 'u', 1, 'd/pipe')):
            if WINDOWS and 'pipe' in arguments:
                continue
            with self.subTest(arguments=arguments, content=content):
                if 'pipe' in arguments:
                    os.mkfifo(self.directory / 'd/pipe')
                    threading.Thread(target=(self.directory / 'd/pipe').write_text, args=[content], daemon=True).start()
                done = self.run_tool(arguments, content.encode())
                self.assertEqual((done.returncode, done.stderr.decode()[:len(message)]), (status, message))
                if 'pipe' in arguments:
                    (self.directory / 'd/pipe').unlink()

    @unittest.skipIf(WINDOWS, 'no pipe with a name')
    def test_interruption_leaves_no_temporary_file(self):
        self.write({'tmp/none': ''})
        (self.directory / 'tmp/none').unlink()
        os.mkfifo(self.directory / 'rest')
        tool = subprocess.Popen([TOOL, 'info', '--threads', '2', '-'], cwd=self.directory, stdin=subprocess.PIPE,
                                env={**os.environ, 'TMPDIR': str(self.directory / 'tmp')})
        self.addCleanup(lambda: (tool.kill(), tool.wait()))
        tool.stdin.write((HEAD + CUBES.replace('count 2', 'count 4') + 'include "rest"\n').encode())
        tool.stdin.close()
        # The tool may end before it has read anything.
        with contextlib.suppress(BrokenPipeError), open(self.directory / 'rest', 'w', encoding='ascii') as pipe:
            self.assertEqual(len(list((self.directory / 'tmp').iterdir())), 1)
            tool.send_signal(signal.SIGINT)
            time.sleep(0.2)
            pipe.write(TAIL)
        self.assertEqual(tool.wait(timeout=60), -signal.SIGINT)
        self.assertEqual(list((self.directory / 'tmp').iterdir()), [])

    @unittest.skipIf(WINDOWS, 'no terminal')
    def test_interruption_of_a_copy_of_standard_input(self):
        """Ctrl-C typed on a terminal, while what is piped is copied."""
        master, slave = pty.openpty()
        temporary = self.directory / 'tmp'
        temporary.mkdir()
        tool = subprocess.Popen([TOOL, 'info', '-'], stdin=subprocess.PIPE, stdout=slave, stderr=slave, start_new_session=True,
                                preexec_fn=lambda: fcntl.ioctl(slave, termios.TIOCSCTTY, 0),
                                env={**os.environ, 'TMPDIR': str(temporary)})
        self.addCleanup(lambda: (tool.kill(), tool.wait(), os.close(master), os.close(slave)))
        tool.stdin.write(b'u\n1\n')
        tool.stdin.flush()
        deadline = time.monotonic() + 60
        while not any(temporary.iterdir()) and time.monotonic() < deadline:
            time.sleep(0.01)
        self.assertEqual(len(list(temporary.iterdir())), 1)
        os.write(master, b'\x03')
        self.assertEqual(tool.wait(timeout=60), -signal.SIGINT)
        self.assertEqual(list(temporary.iterdir()), [])

    def test_watch(self):
        self.write({'a.model': HEAD + 'include "part"\n' + TAIL, 'part': CUBES})
        tool = subprocess.Popen([TOOL, 'check', '--watch', 'a.model'], cwd=self.directory, stderr=subprocess.PIPE, text=True)
        self.addCleanup(lambda: (tool.kill(), tool.wait(), tool.stderr.close()))
        for change, expected in ((None, '0 errors in 1 file'), ('1 1 x 1', 'part:1:33: error: '), ('1 1 1 1', '0 errors in 1 file')):
            if change:
                self.write({'part': CUBES.replace('1 1 1 1', change) + ' '})
                self.assertEqual([tool.stderr.readline() for _ in range(2)], ['\n', 'part has changed.\n'])
            self.assertIn(expected, tool.stderr.readline())
            while 'error: ' in expected and tool.stderr.readline() != ONE:
                pass

    @unittest.skipIf(WINDOWS, 'no terminal')
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
        received = self.run_on_terminal('check --no-warnings slow.model')
        feeder.join()
        self.assertRegex(received, r'\r\033\[K\[#+\.+\]  50%  slow\.model')
        self.assertTrue(received.endswith('slow.model\r\033[K'), received)

    @unittest.skipIf(WINDOWS, 'no terminal')
    def test_short_reads_draw_nothing(self):
        self.write({'good.model': GOOD})
        self.assertEqual(self.run_on_terminal('check good.model'), '')


if __name__ == '__main__':
    unittest.main()
