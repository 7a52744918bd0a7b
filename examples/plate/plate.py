#!/usr/bin/env python3
"""Prints summaries of this example, and saves a picture of it if it is given a name: plate.py [FILE.png]"""
import pathlib
import sys

import orvalo

HERE = pathlib.Path(__file__).resolve().parent


def main():
    model = orvalo.read_model(HERE / "plate.model")
    results = orvalo.read_results(HERE / "plate-results.txt")
    print(model)
    print(results)
    if len(sys.argv) > 1:
        import matplotlib.pyplot as plt

        figure, (above, below) = plt.subplots(2, figsize=(8, 9), layout="constrained")
        model.plot(ax=above)
        results.plot("w", cell_size=model.cell_size, ax=below)
        figure.savefig(sys.argv[1], bbox_inches="tight")
        print("The picture is", sys.argv[1])


if __name__ == "__main__":
    main()
