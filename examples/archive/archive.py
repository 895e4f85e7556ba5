#!/usr/bin/env python3
"""Convert a folder of raw frames to pictures, on as many threads, processes or machines as there are.

    archive.py frames/ pictures/ --source raw8 --size 1920x1080
    archive.py frames/ pictures/ --source raw12p --size 1920x1080 --target bgr16 --format npy --on processes
    archive.py /shared/frames /shared/pictures --source raw8 --size 1920x1080 --on tcp://scheduler:8786

A picture appears whole under its name or not at all, and frames that have one are skipped: the script may be
stopped, or lose a worker, and be started again. One run at a time into a folder.
"""

from __future__ import annotations

import argparse
import os
import pathlib
import struct
import sys
import tempfile
import zlib

import dask
import dask.diagnostics
import numpy as np
import quorvane

PART = ".part"


def png(picture: np.ndarray) -> bytes:
    """A grey or colour picture of 8 or 16 bits; blue first, as the library makes it."""
    values = picture.shape[2] if picture.ndim == 3 else 1
    if picture.ndim == 3:
        picture = picture[..., [2, 1, 0, 3][:values]]
    depth = picture.dtype.itemsize * 8
    rows = picture.astype(picture.dtype.newbyteorder(">")).reshape(picture.shape[0], -1).view(np.uint8)
    lines = np.zeros((rows.shape[0], rows.shape[1] + 1), np.uint8)  # each begins with its filter: none
    lines[:, 1:] = rows
    kind = {1: 0, 3: 2, 4: 6}[values]

    def chunk(name: bytes, body: bytes) -> bytes:
        return struct.pack(">I", len(body)) + name + body + struct.pack(">I", zlib.crc32(name + body))

    head = struct.pack(">IIBBBBB", picture.shape[1], picture.shape[0], depth, kind, 0, 0, 0)
    packed = zlib.compress(lines.tobytes(), 1)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", packed) + chunk(b"IEND", b"")


def is_finished(frame: pathlib.Path, picture: pathlib.Path) -> bool:
    return picture.exists() and picture.stat().st_mtime >= frame.stat().st_mtime


def convert(frame: pathlib.Path, picture: pathlib.Path, options: dict) -> str:
    """One frame, on any worker. Answers what went wrong, or nothing.

    A worker that is lost takes its answers with it, and its frames are given out again: those whose picture is
    there already are not converted twice.
    """
    try:
        if is_finished(frame, picture):
            return ""
        made = quorvane.convert(np.fromfile(frame, np.uint8), **options)
        number, part = tempfile.mkstemp(prefix="." + picture.name, suffix=PART, dir=picture.parent)
        try:
            with open(number, "wb") as file:
                if picture.suffix == ".png":
                    file.write(png(made))
                else:
                    np.save(file, made)
            os.chmod(part, 0o644)
            os.replace(part, picture)
        except BaseException:
            os.unlink(part)
            raise
    except (OSError, ValueError, TypeError) as error:
        return f"{frame}: {error}"
    return ""


def run(jobs: list[tuple], where: str, workers: int) -> list[str]:
    """The answers to all jobs, in their order, with Dask's progress bar meanwhile."""
    tasks = [dask.delayed(convert, pure=False)(*job) for job in jobs]
    if where == "threads":
        with dask.diagnostics.ProgressBar(out=sys.stderr):
            return list(dask.compute(*tasks, scheduler="threads", num_workers=workers))

    from distributed import Client, LocalCluster, progress

    if where == "processes":
        cluster = LocalCluster(n_workers=workers, threads_per_worker=1, dashboard_address=None)
        address = cluster.scheduler_address
    else:
        cluster, address = None, where
    try:
        with Client(address) as client:
            futures = client.compute(tasks)
            progress(futures, notebook=False)
            return client.gather(futures)
    finally:
        if cluster is not None:
            cluster.close()


def arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("frames", type=pathlib.Path, help="a folder of frames without headers")
    parser.add_argument("pictures", type=pathlib.Path, help="a folder, made if need be")
    parser.add_argument("--source", required=True, choices=sorted(quorvane.sources()))
    parser.add_argument("--size", required=True, help="WIDTHxHEIGHT")
    parser.add_argument("--pattern", default="rggb", choices=["rggb", "gbrg", "grbg", "bggr"])
    parser.add_argument("--method")
    parser.add_argument("--target")
    parser.add_argument("--bits", type=int)
    parser.add_argument("--format", default="png", choices=["png", "npy"])
    parser.add_argument("--on", default="threads", metavar="WHERE",
                        help="threads (the default), processes, or the address of a Dask scheduler")
    parser.add_argument("--workers", type=int, default=os.cpu_count(), help="for threads and processes")
    return parser.parse_args()


def main() -> int:
    told = arguments()
    try:
        width, height = map(int, told.size.split("x"))
    except ValueError:
        print(f"archive: expected --size WIDTHxHEIGHT, found {told.size}", file=sys.stderr)
        return 2
    options = dict(source=told.source, size=(width, height), pattern=told.pattern, method=told.method,
                   target=told.target, bits=told.bits, opaque=told.target == "bgra")
    if told.format == "png" and told.target in ("uyvy", "planes", "planes-y"):
        print(f"archive: a PNG cannot hold target {told.target}, expected --format npy", file=sys.stderr)
        return 2

    if not told.frames.is_dir():
        print(f"archive: expected a folder of frames, found no folder {told.frames}", file=sys.stderr)
        return 2
    frames = sorted(path.resolve() for path in told.frames.iterdir()
                    if path.is_file() and not path.name.startswith("."))
    told.pictures.mkdir(parents=True, exist_ok=True)
    folder = told.pictures.resolve()
    for left in folder.glob(".*" + PART):  # of a run that was ended by force
        left.unlink()
    pictures = [folder / (frame.stem + "." + told.format) for frame in frames]
    if len(set(pictures)) != len(pictures):
        print("archive: two frames would have the same picture", file=sys.stderr)
        return 2

    jobs = [(frame, picture, options) for frame, picture in zip(frames, pictures)
            if not is_finished(frame, picture)]
    try:
        failures = [answer for answer in (run(jobs, told.on, told.workers) if jobs else []) if answer]
    except OSError as error:  # no scheduler at that address
        print(f"archive: {told.on}: {error}", file=sys.stderr)
        return 2
    for left in folder.glob(".*" + PART):  # of a worker that was lost
        left.unlink()
    for failure in failures:
        print("archive:", failure, file=sys.stderr)
    print(f"{len(jobs) - len(failures)} frames converted, {len(frames) - len(jobs)} were there, "
          f"{len(failures)} failed")
    return 2 if failures else 0


if __name__ == "__main__":  # worker processes import this file
    sys.exit(main())
