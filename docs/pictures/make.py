#!/usr/bin/env python3
"""Draws the pictures of docs/python.md, next to itself: script/python docs/pictures/make.py"""
import pathlib

import matplotlib

matplotlib.use("agg")
import matplotlib.pyplot as plt

import orvalo

HERE = pathlib.Path(__file__).resolve().parent
PLATE = HERE.parents[1] / "examples" / "plate"


def save(ax, name):
    ax.figure.set_size_inches(6, 3.4)
    ax.figure.savefig(HERE / f"{name}.png", dpi=80, bbox_inches="tight", metadata={"Software": None})


def main():
    model = orvalo.read_model(PLATE / "plate.model")
    save(model.plot(), "materials")
    save(model.plot_excitations(), "excitations")
    results = orvalo.read_results(PLATE / "plate-results.txt")
    save(results.plot("w", cell_size=model.cell_size), "field")
    plt.close("all")


if __name__ == "__main__":
    main()
