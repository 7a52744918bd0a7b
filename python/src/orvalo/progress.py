"""Progress of a read."""
from __future__ import annotations

import sys
from contextlib import contextmanager
from typing import Callable, Iterator, Optional, Union

Callback = Callable[[float], object]
Progress = Union[None, bool, Callback]


@contextmanager
def progress_callback(progress: Progress, what: str) -> Iterator[Optional[Callback]]:
    """What is to be called with the fraction that is done: nothing, the caller's function, or that of a bar."""
    if progress is None or progress is False:
        yield None
    elif progress is True:
        with _bar(what) as show:
            yield show
    elif callable(progress):
        yield progress
    else:
        raise TypeError(f"progress is None, True or a function of a fraction, not {type(progress).__name__}.")


@contextmanager
def _bar(what: str) -> Iterator[Callback]:
    try:
        from tqdm.auto import tqdm
    except ImportError:
        yield lambda fraction: _draw(what, fraction)
        return
    with tqdm(total=100, desc=what, bar_format="{l_bar}{bar}| {elapsed}") as bar:

        def show(fraction: float) -> None:
            bar.update(round(100 * fraction) - bar.n)

        yield show


def _draw(what: str, fraction: float) -> None:
    done = round(40 * fraction)
    end = "\n" if fraction >= 1 else ""
    print(f"\r{what} [{'#' * done}{'.' * (40 - done)}]", end=end, file=sys.stderr, flush=True)
