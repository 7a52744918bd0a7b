"""Reads the examples of docs/model-format.md and docs/results-format.md with the tool named by ORVALO."""
import math
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

TOOL = os.environ['ORVALO']
DOCUMENTS = pathlib.Path(__file__).resolve().parents[2] / 'docs'

# The model around an example that is only a part of one. An example takes the place of the section of its name.
SECTIONS = {
    'ANALYSIS': 'ANALYSIS cellsize 0.5 timestep 0.05 END\n',
    'MATERIALS': 'MATERIALS 1 0 "steel" 7.85e-6 5.92e6 3.23e6 END\n',
    'CUBES': 'CUBES count 1 format 0 data 1 1 1 1 END END\n',
    'ACTUATOR': 'ACTUATOR shape point position 1 1 1 input wave table 99 method force END\n',
    'TABLE': 'TABLE id 99 count 1 data 0 END END\n',
    'SENSOR': 'SENSOR id 99 shape point position 1 1 1 output U filename "s" END\n',
}
INCLUDED = {'grid.cubes': SECTIONS['CUBES'], 'signals.tables': 'TABLE id 1 count 1 data 0 END END\n'}
REPLACED = {'ANALYSIS': 'ANALYSIS', 'MATERIALS': 'MATERIALS', 'include': 'CUBES'}


def page(document):
    return (DOCUMENTS / document).read_text(encoding='utf-8')


def blocks(document, language):
    """The code blocks of a language in a document."""
    return re.findall(rf'^```{language}\n(.*?)^```$', page(document), re.DOTALL | re.MULTILINE)


class Examples(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)

    def write(self, name, text):
        path = self.directory / name
        path.write_text(text)
        return path

    def check_model(self, text):
        done = subprocess.run([TOOL, 'check', '--no-warnings', self.write('page.model', text)], capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stderr), (0, ''), text)

    def check_value(self, path, column, cell, expected):
        command = [TOOL, 'value', path, '--column', str(column), '--at', *map(str, cell)]
        found = subprocess.run(command, check=True, capture_output=True, text=True).stdout
        self.assertEqual(float(found), expected, (path.name, column, cell))

    def test_models(self):
        for name, text in INCLUDED.items():
            self.write(name, text)
        models, parts = blocks('model-format.md', 'text complete'), blocks('model-format.md', 'text')
        self.assertEqual(2 * len(models + parts), page('model-format.md').count('```'))
        for part in parts:
            replaced = REPLACED.get(part.split()[0])
            models.append(''.join(part if name == replaced else text for name, text in SECTIONS.items())
                          + ('' if replaced else part))
        for model in models:
            self.check_model(model)

    def test_results(self):
        mat = self.directory / 'results.mat'
        subprocess.run([sys.executable, '-c', blocks('results-format.md', 'python')[0], mat], check=True)
        for x, y, z in [(0, 0, 0), (9, 0, 5), (3, 7, 9)]:
            self.check_value(mat, 0, (x, y, z), math.sin(x / 3))
            self.check_value(mat, 1, (x, y, z), math.cos(y / 3))
        text = self.write('results.txt', blocks('results-format.md', '')[0])
        self.check_value(text, 1, (3, 4, 5), -2e-3)
        self.check_value(text, 0, (3, 4, 6), 1.25)


if __name__ == '__main__':
    unittest.main()
