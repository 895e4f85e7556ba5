"""The module as a whole: what it says of itself, its types, its descriptions and its README."""

import inspect
import os
import pathlib
import re
import subprocess
import sys

import numpy as np
import pytest
import quorvane


def test_build_info_names_the_library_that_is_loaded():
    info = quorvane.build_info()
    assert info.version == "2.1.2.0"
    file = pathlib.Path(info.file).resolve()
    assert file.name == "libquorvane.so.2.1.2.0"
    maps = pathlib.Path("/proc/self/maps")
    if maps.exists():
        assert str(file) in maps.read_text()
    assert info.level == (file.parent.name if file.parent.parent.name == "glibc-hwcaps" else "baseline")


def test_everything_is_described():
    assert quorvane.__doc__
    for name in quorvane.__all__:
        value = getattr(quorvane, name)
        assert inspect.getdoc(value), name
        if inspect.isfunction(value) and inspect.signature(value).parameters:
            described = inspect.getdoc(value)
            for parameter in inspect.signature(value).parameters:
                one_line = "\n" not in described
                assert one_line or re.search(rf"\b{parameter}\b", described), (name, parameter)
    for name in vars(quorvane.Correction):
        if not name.startswith("_"):
            assert inspect.getdoc(getattr(quorvane.Correction, name))


def test_sources_are_those_of_the_table():
    names = set(quorvane.sources())
    assert {row.source for row in quorvane.conversions()} <= names
    assert {"raw12p", "raw12csi2", "y12p", "y12csi2", "yuyv"} <= names


def test_types(tmp_path):
    pytest.importorskip("mypy")
    package = pathlib.Path(quorvane.__file__).parent
    environment = {**os.environ, "MYPYPATH": str(package.parent)}
    user = (
        "import numpy as np\n"
        "import quorvane\n"
        "picture = quorvane.convert(np.zeros((4, 4), np.uint8), source='raw8', pattern='rggb')\n"
        "reveal_type(picture)\n"
        "quorvane.convert(picture, 'raw8', pattern='rgbg')\n"
        "quorvane.Correction.gamma('strong', 255)\n"
    )
    strict = [sys.executable, "-m", "mypy", "--strict", "--no-error-summary"]
    cache = ["--cache-dir", os.environ.get("QVN_MYPY_CACHE", os.devnull)]
    done = subprocess.run([*strict, *cache, "-p", "quorvane"], env=environment, cwd=tmp_path, capture_output=True,
                          text=True)
    assert (done.returncode, done.stdout, done.stderr) == (0, "", "")
    done = subprocess.run([*strict, *cache, "-c", user], env=environment, cwd=tmp_path, capture_output=True,
                          text=True)
    assert "Revealed type" in done.stdout and "ndarray" in done.stdout
    assert len(re.findall(r"error: .*\[arg-type\]", done.stdout)) == 2, done.stdout
    # The stubs of the compiled half name what is in it.
    done = subprocess.run([sys.executable, "-m", "mypy.stubtest", "quorvane._native", "--allowlist",
                           str(pathlib.Path(__file__).with_name("stubtest_allowed.txt"))],
                          env=environment, cwd=tmp_path, capture_output=True, text=True)
    assert done.returncode == 0, done.stdout + done.stderr


def test_stubs_name_everything_of_the_compiled_half():
    from quorvane import _native

    stub = (pathlib.Path(quorvane.__file__).parent / "_native.pyi").read_text()
    names = set(re.findall(r"^(?:def|class) (\w+)", stub, re.MULTILINE))
    assert names == {name for name in vars(_native) if not name.startswith("_")}


def test_the_example_of_the_readme(project, tmp_path):
    readme = (project / "bindings" / "python" / "README.md").read_text(encoding="utf-8")
    blocks = re.findall(r"^```python\n(.*?)^```$", readme, re.MULTILINE | re.DOTALL)
    assert blocks
    frame = np.random.default_rng(1).integers(0, 256, (1080, 1920), np.uint8)
    frame.tofile(tmp_path / "frame.raw")
    environment = {**os.environ, "PYTHONPATH": str(pathlib.Path(quorvane.__file__).parents[1])}
    for block in blocks:
        subprocess.run([sys.executable, "-c", block], cwd=tmp_path, env=environment, check=True)
    np.testing.assert_array_equal(np.load(tmp_path / "picture.npy"), quorvane.convert(frame, "raw8", "rggb"))


def test_the_example_in_five_lines(project, tmp_path):
    example = project / "examples" / "quick.py"
    assert example.read_text().count("\n") <= 7
    np.random.default_rng(1).integers(0, 256, (480, 640), np.uint8).tofile(tmp_path / "frame.raw")
    environment = {**os.environ, "PYTHONPATH": str(pathlib.Path(quorvane.__file__).parents[1])}
    done = subprocess.run([sys.executable, str(example), "frame.raw", "picture.ppm"], cwd=tmp_path,
                          env=environment, capture_output=True, text=True)
    assert (done.returncode, done.stderr) == (0, "")
    frame = np.fromfile(tmp_path / "frame.raw", np.uint8).reshape(480, 640)
    right = quorvane.convert(frame, "raw8", method="3x3")[..., ::-1].tobytes()
    assert (tmp_path / "picture.ppm").read_bytes() == b"P6 640 480 255\n" + right
