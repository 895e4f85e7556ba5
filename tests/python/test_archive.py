"""examples/archive on threads, on a LocalCluster of processes that loses a worker, and on a scheduler at an address."""

import contextlib
import os
import pathlib
import signal
import socket
import subprocess
import sys
import time
import zlib

import numpy as np
import pytest
import quorvane

pytest.importorskip("dask")
pytest.importorskip("distributed")
psutil = pytest.importorskip("psutil")

WIDTH, HEIGHT = 64, 48


@pytest.fixture
def environment():
    package = str(pathlib.Path(quorvane.__file__).parents[1])
    return {**os.environ, "PYTHONPATH": package, "PYTHONDONTWRITEBYTECODE": "1"}


@pytest.fixture
def frames(tmp_path):
    folder = tmp_path / "frames"
    folder.mkdir()
    generator = np.random.default_rng(1)
    for i in range(12):
        generator.integers(0, 256, (HEIGHT, WIDTH), np.uint8).tofile(folder / f"frame_{i:04}.raw")
    return folder


def command(project, frames, pictures, *options, size=(WIDTH, HEIGHT)):
    return [sys.executable, str(project / "examples" / "archive" / "archive.py"), str(frames), str(pictures),
            "--source", "raw8", "--size", f"{size[0]}x{size[1]}", "--workers", "2", *options]


def run(environment, *arguments):
    return subprocess.run(arguments, env=environment, capture_output=True, text=True, timeout=120)


def read_png(path):
    data, at, packed = path.read_bytes(), 8, b""
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    while at < len(data):
        length = int.from_bytes(data[at:at + 4], "big")
        name, body = data[at + 4:at + 8], data[at + 8:at + 8 + length]
        assert int.from_bytes(data[at + 8 + length:at + 12 + length], "big") == zlib.crc32(name + body)
        if name == b"IHDR":
            width, height = int.from_bytes(body[:4], "big"), int.from_bytes(body[4:8], "big")
            depth, values = body[8], {0: 1, 2: 3, 6: 4}[body[9]]
        packed += body if name == b"IDAT" else b""
        at += 12 + length
    lines = np.frombuffer(zlib.decompress(packed), np.uint8).reshape(height, -1)
    assert not lines[:, 0].any()
    pixels = np.ascontiguousarray(lines[:, 1:]).view(">u2" if depth == 16 else np.uint8)
    pixels = pixels.reshape(height, width, values)
    return pixels[..., 0] if values == 1 else pixels[..., [2, 1, 0, 3][:values]]


def right(frame, size=(WIDTH, HEIGHT), **options):
    return quorvane.convert(np.fromfile(frame, np.uint8), "raw8", size=size, **options)


def check_all(frames, pictures, read=read_png, suffix=".png", **options):
    names = sorted(path.stem for path in frames.iterdir())
    assert sorted(path.name for path in pictures.iterdir()) == [name + suffix for name in names]
    for name in names:
        np.testing.assert_array_equal(read(pictures / (name + suffix)), right(frames / (name + ".raw"), **options))


@pytest.mark.parametrize("options,reader", [
    ({}, read_png),
    ({"target": "y8"}, read_png),
    ({"target": "bgra", "method": "transform-3x3"}, read_png),
    ({"method": "lcaa"}, np.load),
])
def test_threads(project, environment, frames, tmp_path, options, reader):
    pictures = tmp_path / "deep" / "pictures"
    told = [word for name, value in options.items() for word in ("--" + name, value)]
    suffix = ".png" if reader is read_png else ".npy"
    done = run(environment, *command(project, frames, pictures, *told, "--format", suffix[1:]))
    assert (done.returncode, done.stdout) == (0, "12 frames converted, 0 were there, 0 failed\n"), done.stderr
    assert "100%" in done.stderr
    if options.get("target") == "bgra":
        options = {**options, "opaque": True}
    check_all(frames, pictures, reader, suffix, **options)


def test_sixteen_bits(project, environment, tmp_path):
    (tmp_path / "frames").mkdir()
    values = np.random.default_rng(1).integers(0, 65536, (HEIGHT, WIDTH), np.uint16)
    values.astype("<u2").tofile(tmp_path / "frames" / "deep.bin")
    arguments = command(project, tmp_path / "frames", tmp_path / "pictures", "--target", "bgr16")
    arguments[arguments.index("raw8")] = "raw16le"
    assert run(environment, *arguments).returncode == 0
    np.testing.assert_array_equal(read_png(tmp_path / "pictures" / "deep.png"),
                                  quorvane.convert(values, "raw16le" if values.dtype == "<u2" else "raw16",
                                                   target="bgr16"))


def test_started_again(project, environment, frames, tmp_path):
    pictures = tmp_path / "pictures"
    arguments = command(project, frames, pictures)
    run(environment, *arguments)
    before = {path.name: path.stat() for path in pictures.iterdir()}
    (pictures / "frame_0003.png").unlink()
    late = frames / "frame_0005.raw"
    os.utime(late, (time.time() + 5, time.time() + 5))
    (pictures / ".frame_0001.png_left.part").write_bytes(b"half of a")
    done = run(environment, *arguments)
    assert done.stdout == "2 frames converted, 10 were there, 0 failed\n"
    os.utime(late)
    check_all(frames, pictures)
    for name, was in before.items():
        same = (pictures / name).stat().st_mtime_ns == was.st_mtime_ns
        assert same == (name not in ("frame_0003.png", "frame_0005.png")), name


def test_frames_that_fail(project, environment, frames, tmp_path):
    (frames / "frame_0002.raw").write_bytes(b"short")
    done = run(environment, *command(project, frames, tmp_path / "pictures"))
    assert done.returncode == 2
    assert done.stdout == "11 frames converted, 0 were there, 1 failed\n"
    assert "frame_0002.raw: raw8: expected 3072 bytes for 64x48, found 5" in done.stderr
    (frames / "frame_0002.raw").unlink()
    check_all(frames, tmp_path / "pictures")


def test_refusals(project, environment, frames, tmp_path):
    for options, message in ((["--target", "planes"], "cannot hold target planes"),
                             (["--size", "64"], "expected --size WIDTHxHEIGHT, found 64")):
        done = run(environment, *command(project, frames, tmp_path / "pictures", *options))
        assert done.returncode == 2 and message in done.stderr
    (frames / "frame_0000.bin").write_bytes(b"")
    done = run(environment, *command(project, frames, tmp_path / "pictures"))
    assert done.returncode == 2 and "two frames would have the same picture" in done.stderr
    done = run(environment, *command(project, tmp_path / "missing", tmp_path / "pictures"))
    assert done.returncode == 2 and "expected a folder of frames, found no folder" in done.stderr


def workers_of(process):
    """The processes of a LocalCluster that convert: the children of its nannies' parent that have had work."""
    children = []
    with contextlib.suppress(psutil.NoSuchProcess):
        for child in psutil.Process(process.pid).children(recursive=True):
            with contextlib.suppress(psutil.NoSuchProcess):
                if "resource_tracker" not in " ".join(child.cmdline()):
                    children.append(child.pid)
    return children


def test_a_worker_that_is_killed_in_the_middle(project, environment, tmp_path):
    frames, pictures = tmp_path / "frames", tmp_path / "pictures"
    frames.mkdir()
    size, count = (640, 480), 150
    generator = np.random.default_rng(2)
    for i in range(count):
        generator.integers(0, 256, size[::-1], np.uint8).tofile(frames / f"frame_{i:04}.raw")
    process = subprocess.Popen(command(project, frames, pictures, "--on", "processes", size=size), env=environment,
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    try:
        end = time.monotonic() + 90
        while len(finished := list(pictures.glob("*.png"))) < 10:
            assert time.monotonic() < end and process.poll() is None
            time.sleep(0.01)
        victims = workers_of(process)
        assert victims
        os.kill(victims[-1], signal.SIGKILL)
        assert len(list(pictures.glob("*.png"))) < count  # it was in the middle
        before = {path: path.stat() for path in finished}
        output, errors = process.communicate(timeout=120)
    finally:
        if process.poll() is None:
            process.kill()
    assert process.returncode == 0, errors
    assert "Restarting worker" in errors  # what its nanny says
    assert output.splitlines()[-1] == f"{count} frames converted, 0 were there, 0 failed"
    # Nothing lost, no halves; and what was finished was not converted a second time.
    check_all(frames, pictures, size=size)
    for path, was in before.items():
        assert (path.stat().st_ino, path.stat().st_mtime_ns) == (was.st_ino, was.st_mtime_ns)
    assert not [pid for pid in victims if psutil.pid_exists(pid)]


def test_a_scheduler_at_an_address(project, environment, frames, tmp_path):
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        port = probe.getsockname()[1]
    address = f"tcp://127.0.0.1:{port}"
    quiet = dict(env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=tmp_path)
    started = []
    try:
        started.append(subprocess.Popen(
            [sys.executable, "-m", "distributed.cli.dask_scheduler", "--host", "127.0.0.1", "--port", str(port),
             "--no-dashboard"], **quiet))
        started.append(subprocess.Popen(
            [sys.executable, "-m", "distributed.cli.dask_worker", address, "--no-dashboard", "--nthreads", "1",
             "--no-nanny"], **quiet))
        end = time.monotonic() + 60
        while True:
            with contextlib.suppress(OSError), socket.create_connection(("127.0.0.1", port), 1):
                break
            assert time.monotonic() < end
            time.sleep(0.1)
        done = run(environment, *command(project, frames, tmp_path / "pictures", "--on", address))
    finally:
        for process in reversed(started):
            process.terminate()
        for process in started:
            process.wait(30)
    assert (done.returncode, done.stdout.splitlines()[-1]) == (
        0, "12 frames converted, 0 were there, 0 failed"), done.stderr
    check_all(frames, tmp_path / "pictures")
