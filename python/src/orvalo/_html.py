"""Summaries for notebooks."""
from __future__ import annotations

from html import escape
from typing import Iterable, Tuple

Lines = Iterable[Tuple[str, str]]


def as_text(title: str, lines: Lines) -> str:
    """A line for each fact below the title."""
    return "\n".join([title] + [f"  {name:<14}{fact}" if name else f"{'':16}{fact}" for name, fact in lines])


def as_html(title: str, lines: Lines) -> str:
    """The same as a table."""
    rows = "".join(
        f"<tr><th style='text-align:left'>{escape(name)}</th><td style='text-align:left'>{escape(fact)}</td></tr>"
        for name, fact in lines
    )
    return f"<table><caption>{escape(title)}</caption>{rows}</table>"
