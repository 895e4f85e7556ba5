"""The interpreter's lock is not held while a frame is inside the library, and frames on threads do not meet."""

import concurrent.futures
import sys
import threading
import time

import capi
import numpy as np
import pytest
import quorvane


class Counter:
    """Python code on another thread. It lets go of the lock by itself every thousand steps; nothing else hands
    the lock over, since the interpreter's own interval is longer than the test."""

    def __init__(self):
        self.count = 0
        self.stopped = False
        self.thread = threading.Thread(target=self.run)

    def run(self):
        while not self.stopped:
            self.count += 1
            if self.count % 1000 == 0:
                time.sleep(0)

    def __enter__(self):
        self.interval = sys.getswitchinterval()
        sys.setswitchinterval(1000)
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.stopped = True
        sys.setswitchinterval(self.interval)
        self.thread.join()


FRAME = np.random.default_rng(1).integers(0, 256, (3072, 4096), np.uint8)
PICTURE = np.empty((3072, 4096, 3), np.uint8)


def steps_during(action, seconds=20.0):
    """Steps of the other thread while the action ran, which is repeated until there are some: on a busy machine
    the other thread may have to wait for its turn. Between two runs this thread keeps the lock."""
    with Counter() as counter:
        while counter.count < 1000:
            time.sleep(0.001)
        before = counter.count
        end = time.monotonic() + seconds
        while counter.count - before < 1000 and time.monotonic() < end:
            action()
        return counter.count - before


def test_other_python_code_runs_during_a_conversion():
    steps = steps_during(lambda: quorvane.convert(FRAME, "raw8", method="lcaav", out=PICTURE))
    assert steps >= 1000


def test_this_test_would_see_a_lock_that_is_held():
    steps = steps_during(lambda: capi.call("QVN_Raw8ToBGR", "bgr", PICTURE, FRAME, 4096, 3072,
                                           library=capi.HOLDING), seconds=1.0)
    assert steps == 0


@pytest.mark.parametrize("work", [
    lambda: quorvane.ClampedMatrix(np.eye(3)).apply(PICTURE),
    lambda: quorvane.flip(PICTURE, "both", out=PICTURE),
    lambda: quorvane.weave(FRAME, out=PICTURE[..., 0].copy()),
])
def test_other_python_code_runs_during_the_rest(work):
    assert steps_during(work) >= 1000


def test_frames_on_threads_are_those_of_one_thread():
    frames = np.random.default_rng(2).integers(0, 256, (16, 64, 96), np.uint8)
    correction = quorvane.Correction.gamma(0.5, 255)
    rows = [row for row in quorvane.conversions() if row.source == "raw8"]
    jobs = [(frame, row, bands) for frame in frames for row in rows for bands in (1, 3)]

    def work(job):
        frame, row, bands = job
        picture = quorvane.convert(frame, "raw8", method=row.method, target=row.target, bands=bands,
                                   correction=correction if row.corrected else None)
        return picture.tobytes()

    right = [work((frame, row, 1)) for frame in frames for row in rows]
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        made = list(pool.map(work, jobs))
    assert made[0::2] == right and made[1::2] == right


def test_a_stream_of_new_arrays_leaks_nothing():
    import resource

    frame = FRAME[:1024, :1024]
    for _ in range(20):
        quorvane.demosaic(frame)
    before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
    for _ in range(200):
        quorvane.demosaic(frame)
        quorvane.Correction.table16(np.arange(65536))
    assert resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before < 32 * 1024
