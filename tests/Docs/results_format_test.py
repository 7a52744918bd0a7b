"""Has the examples of docs/results-format.md write their files and loads these with the tool named by ORVALO."""
import math
import os
import pathlib
import re
import subprocess
import sys
import tempfile

TOOL = os.environ['ORVALO']
DOCUMENT = pathlib.Path(__file__).resolve().parents[2] / 'docs' / 'results-format.md'


def block(language):
    """The first code block of a language in the document."""
    return re.search(rf'^```{language}\n(.*?)^```$', DOCUMENT.read_text(), re.DOTALL | re.MULTILINE).group(1)


def check(path, column, cell, expected):
    command = [TOOL, 'value', path, '--column', str(column), '--at', *map(str, cell)]
    found = float(subprocess.run(command, check=True, capture_output=True, text=True).stdout)
    if found != expected:
        sys.exit(f'{path.name}: column {column} of cube {cell} is {found}, not {expected}')


with tempfile.TemporaryDirectory() as directory:
    mat = pathlib.Path(directory, 'results.mat')
    subprocess.run([sys.executable, '-c', block('python'), mat], check=True)
    for x, y, z in [(0, 0, 0), (9, 0, 5), (3, 7, 9)]:
        check(mat, 0, (x, y, z), math.sin(x / 3))
        check(mat, 1, (x, y, z), math.cos(y / 3))

    text = pathlib.Path(directory, 'results.txt')
    text.write_text(block(''))
    check(text, 1, (3, 4, 5), -2e-3)
    check(text, 0, (3, 4, 6), 1.25)
