"""Runs the code of docs/python.md, as one session in a copy of the repository, and compares what it prints."""
import contextlib
import io
import pathlib
import re

import matplotlib
import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = (ROOT / "docs" / "python.md").read_text()


def test_tutorial(tmp_path, monkeypatch):
    matplotlib.use("agg")
    (tmp_path / "examples").symlink_to(ROOT / "examples")
    monkeypatch.chdir(tmp_path)
    blocks = re.findall(r"^```(python|text)\n(.*?)^```$", PAGE, re.MULTILINE | re.DOTALL)
    assert len(blocks) > 15
    session, printed = {"__name__": "session"}, ""
    for kind, block in blocks:
        if kind == "text":
            assert printed.replace(str(tmp_path) + "/", "") == block
            printed = ""
            continue
        assert not printed, f"not shown: {printed}"
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            exec(compile(block, "docs/python.md", "exec"), session)
        printed = output.getvalue()


@pytest.mark.parametrize("picture", ["materials", "excitations", "field"])
def test_pictures_are_shown_and_small(picture):
    assert f"(pictures/{picture}.png)" in PAGE
    assert (ROOT / "docs" / "pictures" / f"{picture}.png").stat().st_size < 60000
