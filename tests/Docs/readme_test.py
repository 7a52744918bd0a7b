"""Types the commands of README.md, as they stand there, where the repository's examples and the tool named by ORVALO are,
and holds what they print against what the page shows."""
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SESSIONS = re.findall(r'^```console\n(.*?)^```$', (ROOT / 'README.md').read_text(), re.M | re.S)


class Readme(unittest.TestCase):
    def test_sessions(self):
        self.assertTrue(SESSIONS)
        with tempfile.TemporaryDirectory() as folder:
            os.makedirs(f'{folder}/build/release/bin')
            os.symlink(os.environ['ORVALO'], f'{folder}/build/release/bin/orvalo')
            os.symlink(ROOT / 'examples', f'{folder}/examples')
            for session in SESSIONS:
                commands = re.findall(r'^\$ (.*)$', session, re.M)
                typed = ''.join(f"cat <<'EOF'\n$ {command}\nEOF\n{command}\n" for command in commands)
                done = subprocess.run(['sh', '-c', typed], cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                      text=True, timeout=60, check=False)
                shown = [done.stdout, session]
                if os.environ.get('ORVALO_SYSTEM') == 'Windows':
                    shown = [text.replace('\\', '/') for text in shown]
                self.assertEqual(*shown)


if __name__ == '__main__':
    unittest.main()
