"""Has npm's sarif-multitool judge what the tool named by ORVALO writes as SARIF. Exits with 77, for a skipped test, where
npm cannot get it, unless ORVALO_STRICT is set."""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
HOME = ROOT / 'build/sarif-multitool'
JUDGE = HOME / 'node_modules/.bin/sarif-multitool'
PACKAGE = '@microsoft/sarif-multitool@5.7.0'

FILES = {
    'misspelt name.model': 'ANALYSIS celsize 1\n timestep 1D-3 END\nMATERIALS 1 0 "a" 1 2 1 END\ninclude "part"\n'
                           'ACTUATOR shape point position 1 1 1 input wave table 5 method forc END\n',
    'part': 'CUBES count 2 format 0 data\n1 1 1 1\n1 1 70000 1\nEND END\n',
    'results.txt': 'x\ty\tz\tf\tu\n1\t1\t1\t0\n',
}


def found(log, key):
    """Whether any object within the log has that key."""
    if isinstance(log, dict):
        return key in log or any(found(value, key) for value in log.values())
    return isinstance(log, list) and any(found(value, key) for value in log)


def main():
    if not JUDGE.exists():
        got = shutil.which('npm') and subprocess.run(
            ['npm', 'install', '--no-audit', '--no-fund', '--prefix', str(HOME), PACKAGE], check=False).returncode == 0
        if not got:
            print(f'{PACKAGE} cannot be had')
            return 1 if os.environ.get('ORVALO_STRICT') else 77
    with tempfile.TemporaryDirectory() as directory:
        for name, text in FILES.items():
            pathlib.Path(directory, name).write_text(text, encoding='ascii')
        done = subprocess.run([os.environ['ORVALO'], 'check', '--format=sarif', *FILES, 'missing.model'], cwd=directory,
                              stdout=subprocess.PIPE, check=False)
        log = pathlib.Path(directory, 'found.sarif')
        log.write_bytes(done.stdout)
        assert all(found(json.loads(done.stdout), key) for key in ('relatedLocations', 'fixes', 'endColumn', 'row'))
        judged = subprocess.run([str(JUDGE), 'validate', str(log)], stdout=subprocess.PIPE, text=True, check=False)
        print(judged.stdout)
        return judged.returncode or (1 if ': error' in judged.stdout else 0)


if __name__ == '__main__':
    sys.exit(main())
