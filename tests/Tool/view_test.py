"""Has `orvalo view` write pages and a browser look at them (view_test.mjs). Skipped where Chromium, Node or what npm should
bring is missing, unless ORVALO_STRICT is set."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
HOME = ROOT / 'build/puppeteer'
PACKAGE = 'puppeteer-core@24'
TOOL = os.environ['ORVALO']
PLATE = ROOT / 'examples/plate'

HEAD = 'ANALYSIS cellsize 0.5 timestep 0.1 END\nMATERIALS 2 0 "b" 2 2 1  1 0 "scriptalert1script" 1 2 1 END\n'
CELLS = [(x, y, z) for z in (1, 2) for y in (1, 2, 3) for x in (1, 2, 3, 4) if (x, y) != (4, 3)]
ROWS = '\n'.join(f'{x} {y} {z} {1 if y == 1 else 2} {20 + x / 2 + y}' for x, y, z in CELLS)
REST = 'DAMPING count 2 data 9 1 1 2 0.5  1 1 1 1 0.25 END END\n' \
       'ACTUATOR shape point position 1 1 1 direction U input definition method force type continuouswave waveform sine ' \
       'envelope hannwindow frequency 200 duration 50 phase 0 END\n' \
       'SENSOR id 4 shape point position 3 2 1 output U filename "s" END\nDUMP id 1 output U0 filename "d" END\n' \
       'SET id 3 count 2 data 1 2 2  4 1 1 END END\n'


def grid(rows, count, form=0):
    return f'CUBES count {count} format {form} data\n{rows}\nEND END\n'


def large_grid():
    lines = (f'{x} {y} {z} {1 + (x // 18 + y // 23 + z // 9) % 2}\n' for z in range(1, 101) for y in range(1, 301) for x in range(1, 301))
    return grid(''.join(lines), 9_000_000)


FILES = {
    'small.model': HEAD + grid(ROWS + '\n3 3 2 2 24.5', len(CELLS) + 1, 1) + REST,
    'broken.model': HEAD + grid(ROWS, len(CELLS), 1) + REST.replace('input definition', 'inptu definition'),
    'sparse.model': HEAD + grid('\n'.join(f'{i * 10 + 9} {i * 10 + 9} {i * 10 + 9} 1' for i in range(1000)), 1000) + REST,
    'large.model': HEAD + large_grid() + REST,
    '&lt;results.txt': 'x y z f u </script><script>alert(1)</script>\n65534 0 5 0 2 7\n1 0 5 0 -2 8\n2 0 5 0 0 9\n3 0 5 0 nan 1e30\n'.replace(' ', '\t'),
}


def missing():
    if not shutil.which('chromium') or not shutil.which('node'):
        return 'Chromium or Node'
    if not (HOME / 'node_modules/puppeteer-core').exists():
        got = shutil.which('npm') and subprocess.run(
            ['npm', 'install', '--no-audit', '--no-fund', '--prefix', str(HOME), PACKAGE], check=False).returncode == 0
        if not got:
            return PACKAGE
    return None


def main():
    absent = missing()
    if absent:
        print('Skipped for want of', absent)
        return 1 if os.environ.get('ORVALO_STRICT') else 77
    with tempfile.TemporaryDirectory() as directory:
        for name, text in FILES.items():
            pathlib.Path(directory, name).write_text(text, encoding='ascii')
            expected = 1 if name == 'broken.model' else 0
            done = subprocess.run([TOOL, 'view', name], cwd=directory, check=False, capture_output=True, text=True)
            assert (done.returncode, done.stdout) == (expected, name.split('.')[0] + '.html\n'), done
            assert subprocess.run([TOOL, 'view', name], cwd=directory, check=False, capture_output=True).returncode == 3
        assert pathlib.Path(directory, 'large.html').stat().st_size <= 12e6
        subprocess.run([TOOL, 'view', PLATE / 'plate.model', PLATE / 'plate-results.txt', '-o', 'plate.html'], cwd=directory, check=True)
        (ROOT / 'build/view').mkdir(parents=True, exist_ok=True)
        done = subprocess.run(['node', pathlib.Path(__file__).with_suffix('.mjs'), directory, HOME, shutil.which('chromium')],
                              check=False)
        if pathlib.Path(directory, 'view.png').exists():
            shutil.copy(pathlib.Path(directory, 'view.png'), ROOT / 'build/view/view.png')
        return done.returncode


if __name__ == '__main__':
    sys.exit(main())
