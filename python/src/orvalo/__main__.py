"""``python -m orvalo``: the command-line tool."""
import os
import sys
from typing import NoReturn


def main() -> NoReturn:
    """Becomes the tool, with the arguments of this process."""
    tool = os.path.join(os.path.dirname(os.path.abspath(__file__)), "bin", "orvalo")
    os.execv(tool, [tool] + sys.argv[1:])


if __name__ == "__main__":
    main()
