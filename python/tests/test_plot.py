"""What the pictures show, by the artists that they are made of."""
import subprocess
import sys

import matplotlib

matplotlib.use("agg")
import matplotlib.pyplot as plt
import numpy as np
import pytest
from conftest import PLATE, cubes
from matplotlib.colors import to_rgb

import orvalo


@pytest.fixture(autouse=True)
def without_showing(monkeypatch):
    monkeypatch.setattr(plt, "show", lambda *_, **__: pytest.fail("shown"))
    yield
    plt.close("all")


def legend(ax):
    return [text.get_text() for text in ax.get_legend().get_texts()]


def test_model_shows_materials_and_marks():
    model = orvalo.read_model(PLATE / "plate.model")
    figure, given = plt.subplots(layout="constrained")
    ax = model.plot(ax=given)
    figure.draw_without_rendering()
    assert ax.get_position().width > 0.5
    assert ax is given and ax.get_title() == "z = 4"
    materials = ["1 aluminium", "2 steel", "3 epoxy", "7 pzt-ceramic"]
    assert legend(ax) == materials + ["actuator", "piezo point", "sensor"]
    image = ax.get_images()[0]
    assert image.get_extent() == [0.25, 104.25, 0.25, 75.25]
    shown = {name: to_rgb(patch.get_facecolor()) for name, patch in zip(materials, ax.get_legend().get_patches())}
    pixels = image.get_array()
    grid = model.grid()[:, :, 3].T
    for name in materials:
        assert np.allclose(pixels[grid == int(name.split()[0])], shown[name]), name
    assert np.allclose(pixels[grid == 0], 1)
    here, elsewhere = [line.get_xydata().tolist() for line in ax.get_lines()[:2]]
    assert (here, elsewhere) == ([[20, 37.5]], [[0.5, 37.5]])
    assert legend(model.plot(z=1)) == ["1 aluminium", "2 steel", "actuator", "piezo point", "sensor"]
    for z, error, said in [(5, ValueError, "z = 5 is outside of the model, whose layers are 1 to 4"),
                           (1.5, TypeError, "z is a whole number, not float")]:
        with pytest.raises(error, match=said):
            model.plot(z=z)


def test_many_materials_have_colours_of_their_own(model_file):
    numbers = range(1, 31)
    materials = "MATERIALS " + "\n".join(f'{number} 0 "m{number}" 1 2 1' for number in numbers) + " END\n"
    path = model_file(materials=materials, grid=cubes(*((number, 1, 1, number) for number in numbers)))
    for model, names in [
        (orvalo.read_model(path), [f"{number} m{number}" for number in numbers]),
        (orvalo.read_model(path, cubes_only=True), [str(number) for number in numbers]),
    ]:
        ax = model.plot()
        assert legend(ax)[:30] == names
        assert len(np.unique(ax.get_images()[0].get_array().reshape(-1, 3), axis=0)) == 30
    assert ax.get_xlabel() == "x (cubes)"


def test_excitations():
    model = orvalo.read_model(PLATE / "plate.model")
    ax = model.plot_excitations()
    assert legend(ax) == ["actuator 1, w", "actuator 2, uv", "piezo 1, table 1", "piezo 1, table 2"]
    times, values = ax.get_lines()[1].get_data()
    assert (times[0], len(times)) == (pytest.approx(138 * 0.04), 625)
    assert (values == -model.tables[1].samples).all()


@pytest.mark.parametrize("kind", ["txt", "mat"])
def test_results_diverge_from_zero(kind):
    results = orvalo.read_results(PLATE / f"plate-results.{kind}")
    ax = results.plot(2, cell_size=0.5)
    mesh = ax.collections[0]
    assert mesh.get_clim() == (-0.1763124485, 0.1763124485)
    assert (mesh.get_array().reshape(150, 100) == results.dense(2)[::2, :, 0].T).all()
    assert ax.dataLim.bounds == (0.5, 0.25, 100, 75)
    assert ax.figure.axes[1].get_ylabel() == results.column_names[2]
    with pytest.raises(ValueError, match="cell_size is a length above 0, not 0"):
        results.plot(2, cell_size=0)


def test_results_with_holes(results_file):
    path = results_file("x\ty\tz\tf\tu", "1\t1\t1\t0\tnan", "4\t2\t1\t0\t-3", "4\t2\t3\t0\t0")
    results = orvalo.read_results(path)
    field = results.plot("u", z=1).collections[0]
    assert field.get_clim() == (-3, 3) and field.get_array().compressed().tolist() == [-3]
    assert results.plot("u").dataLim.bounds == (3.5, 1.5, 1, 1)
    for z, said in [(2, "no rows with z = 2"), (4, "layers are 1 to 3")]:
        with pytest.raises(ValueError, match=said):
            results.plot("u", z=z)
    for lines in (["u", "1"], ["x\ty\tz\tf\tu"]):
        with pytest.raises(ValueError, match="no columns x, y, z and f|has no cubes to show"):
            orvalo.read_results(results_file(*lines)).plot(0)


def test_extras_are_imported_when_used():
    program = """if True:
        import sys
        extras = ["matplotlib", "xarray", "pandas", "dask", "tqdm", "scipy"]
        sys.modules.update((name, None) for name in extras)
        import orvalo
        model = orvalo.read_model(sys.argv[1] + ".model", progress=True)
        results = orvalo.read_results(sys.argv[1] + "-results.txt")
        for use in (model.plot, model.to_xarray, results.to_xarray, results.to_pandas):
            try:
                use()
            except ImportError as error:
                print(error)
    """
    done = subprocess.run([sys.executable, "-c", program, PLATE / "plate"], capture_output=True, check=True, text=True)
    packages = ["matplotlib", "xarray", "xarray", "pandas"]
    lines = done.stdout.splitlines()
    assert [line.split(": ")[-1] for line in lines] == [f"pip install {package}" for package in packages]
    assert "[########################################]" in done.stderr
