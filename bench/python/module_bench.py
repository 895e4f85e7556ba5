#!/usr/bin/env python3
"""What the Python module costs beside the C function, and what threads gain while the lock is released.

    PYTHONPATH=build/release/python bench/python/module_bench.py [--time SECONDS] [--json FILE]

The C function is called through ctypes with its arguments made beforehand, from the library that the module has
loaded. Rounds of one call each take turns, so that whatever disturbs the machine meets both; the middle one
counts, and the middle one of the ratios of neighbours.
"""

import argparse
import concurrent.futures
import ctypes
import json
import statistics
import time

import numpy as np
import quorvane

LIBRARY = ctypes.CDLL(quorvane.build_info().file)
# source, target, function, arguments behind the buffers
ROWS = [
    ("raw8", "2x2", "bgr", "QVN_Raw8ToBGR", ("width", "height", 0)),
    ("raw8", "3x3", "bgr", "QVN_Raw8ToBGR_3x3", ("width", "height", 0)),
    ("raw8", "2x2", "y8", "QVN_Raw8ToY8", ("width", "height", 0)),
    ("raw12packed", "2x2", "bgr16", "QVN_Raw12ToBGR16", ("width", "height", 0)),
    ("y8", "direct", "bgr", "QVN_Y8ToBGR", ("count",)),
    ("rgb8", "direct", "bgr", "QVN_RGB8ToBGR", ("count",)),
]
SHAPES = {"raw8": (1,), "raw12packed": (1.5,), "y8": (1,), "rgb8": (1, 3)}
SIZES = [(640, 480), (1920, 1080)]


def frame_of(source, width, height):
    step, *values = SHAPES[source]
    shape = (height, int(width * step), *values)
    return np.random.default_rng(1).integers(0, 256, shape, np.uint8)


def c_call(function, arguments, width, height):
    entry = getattr(LIBRARY, function)
    numbers = {"width": width, "height": height, "count": width * height}
    rest = [ctypes.c_uint32(numbers.get(argument, argument)) for argument in arguments]

    def call(to, of):
        return entry(to, of, *rest)

    return call


def compare(first, second, seconds):
    """Middle times of both, and the middle ratio of the second to the first."""
    clock = time.perf_counter
    for work in (first, second):
        work()
    times = []
    end = clock() + seconds
    while clock() < end or len(times) < 5:
        start = clock()
        first()
        middle = clock()
        second()
        stop = clock()
        times.append((middle - start, stop - middle))
    return (statistics.median(a for a, _ in times), statistics.median(b for _, b in times),
            statistics.median(b / a for a, b in times))


def single_calls(seconds):
    rows = []
    for source, method, target, function, arguments in ROWS:
        for width, height in SIZES:
            frame = frame_of(source, width, height)
            out = quorvane.convert(frame, source, method=method, target=target)
            call = c_call(function, arguments, width, height)
            to, of = ctypes.c_void_p(out.ctypes.data), ctypes.c_void_p(frame.ctypes.data)
            shape, dtype = out.shape, out.dtype

            def module_into_out():
                quorvane.convert(frame, source, method=method, target=target, out=out)

            def c_into_new():
                made = np.empty(shape, dtype)
                call(ctypes.c_void_p(made.ctypes.data), of)

            def module_into_new():
                quorvane.convert(frame, source, method=method, target=target)

            name = f"{function[4:]} {width}x{height}"
            for kind, c, module in (("out", lambda: call(to, of), module_into_out),
                                    ("new", c_into_new, module_into_new)):
                c_time, module_time, ratio = compare(c, module, seconds)
                rows.append({"row": name, "kind": kind, "c_us": c_time * 1e6, "module_us": module_time * 1e6,
                             "ratio": ratio})
                print(f"{name:28} {kind}  C {c_time * 1e6:8.1f} us  module {module_time * 1e6:8.1f} us  "
                      f"ratio {ratio:.3f}", flush=True)
    return rows


def threads(seconds):
    """Frames a second on one thread and on two, by the module and by the C function."""
    rows = []
    for method, function in (("2x2", "QVN_Raw8ToBGR"), ("3x3", "QVN_Raw8ToBGR_3x3")):
        frame = frame_of("raw8", 1920, 1080)
        outs = [np.empty((1080, 1920, 3), np.uint8) for _ in range(2)]
        call = c_call(function, ("width", "height", 0), 1920, 1080)
        of = ctypes.c_void_p(frame.ctypes.data)

        def by_module(out):
            quorvane.convert(frame, "raw8", method=method, out=out)

        def by_c(out):
            call(ctypes.c_void_p(out.ctypes.data), of)

        def rate(work, out):
            count = 0
            start = time.perf_counter()
            while time.perf_counter() < start + seconds:
                work(out)
                count += 1
            return count / (time.perf_counter() - start)

        row = {"row": f"raw8 {method} 1920x1080"}
        for name, work in (("module", by_module), ("c", by_c)):
            rate(work, outs[0])
            one = rate(work, outs[0])
            with concurrent.futures.ThreadPoolExecutor(2) as pool:
                two = sum(pool.map(lambda out: rate(work, out), outs))
            row[name] = {"one": one, "two": two}
            print(f"raw8 {method} 1920x1080  {name:6}  {one:6.0f} frames/s on a thread, {two:6.0f} on two: "
                  f"{two / one:.2f}", flush=True)
        rows.append(row)
    return rows


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--time", type=float, default=0.5, help="seconds a row")
    parser.add_argument("--json", help="also write the numbers to this file")
    parser.add_argument("--only", choices=["calls", "threads"])
    told = parser.parse_args()
    info = quorvane.build_info()
    print(f"quorvane {info.version}, {info.level}, numpy {np.__version__}")
    report = {"version": info.version, "level": info.level}
    if told.only != "threads":
        report["calls"] = single_calls(told.time)
    if told.only != "calls":
        report["threads"] = threads(told.time)
    if told.json:
        with open(told.json, "w", encoding="utf-8") as file:
            json.dump(report, file, indent=1)


if __name__ == "__main__":
    main()
