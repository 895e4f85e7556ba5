"""Shared by the tests of the GStreamer elements: running pipelines, and what the tool makes of the same frames."""

import os
import pathlib
import struct
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tool"))
from support import ToolTest, read_png  # noqa: E402, F401

LAUNCH = os.environ.get("QVN_GST_LAUNCH", "gst-launch-1.0")

# Each output of the elements: the tool's target, bytes of a pixel.
OUTPUTS = {"BGR": ("bgr", 3), "BGRx": ("bgra", 4), "BGRA": ("bgra", 4), "GRAY8": ("y8", 1), "UYVY": ("uyvy", 2),
           "GRAY16_LE": ("y16", 2), "BGRA64_LE": ("bgr16", 8)}


def padded(length):
    return (length + 3) // 4 * 4


def cut(data, line, height):
    """Lines without the bytes that fill them up to whole words."""
    pitch = padded(line)
    assert len(data) == pitch * height, (len(data), pitch, height)
    return b"".join(data[y * pitch:y * pitch + line] for y in range(height))


def without_fourth(data, word=1):
    """Of pixels of four words, the first three."""
    return b"".join(data[i:i + 3 * word] for i in range(0, len(data), 4 * word))


class PipelineTest(ToolTest):
    def launch(self, *words):
        """Runs a pipeline in the test's folder."""
        done = self.start(*words)
        self.assertEqual((done.returncode, done.stderr), (0, b""), " ".join(map(str, words)))

    def start(self, *words):
        return subprocess.run([LAUNCH, "-q", *map(str, words)], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              cwd=self.folder, timeout=120, check=False)

    def refuse_pipeline(self, *words, says):
        """It must say so. Whether gst-launch-1.0 then ends is its own affair: some versions wait for ever after an
        error of any element while a pipeline starts."""
        with open(self.folder / "errors", "wb") as errors:
            running = subprocess.Popen([LAUNCH, "-q", *map(str, words)], stdout=subprocess.DEVNULL, stderr=errors,
                                       cwd=self.folder)
        try:
            for _ in range(600):
                ended = running.poll()
                if says in self.read("errors").decode():
                    return
                self.assertIsNone(ended, self.read("errors"))
                time.sleep(0.05)
            self.fail(self.read("errors"))
        finally:
            running.kill()
            running.wait()

    def picture(self, name, output, width, height):
        return cut(self.read(name), width * OUTPUTS[output][1], height)

    def tool_bytes(self, frame, output, *arguments):
        """What the tool makes of a frame for this output."""
        self.run_talking("convert", frame, "tool.raw", "--to", OUTPUTS[output][0], *arguments)
        return self.read("tool.raw")

    def tool_picture(self, frame, output, *arguments):
        """The same by way of a file of colours, which the tool's own corrections ask for: three samples a pixel."""
        self.run_talking("convert", frame, "tool.png", "--to", OUTPUTS[output][0], *arguments)
        picture = read_png(self.read("tool.png"))
        word = struct.Struct("<H" if picture.depth == 16 else "B")
        pixels = (picture.samples[i:i + 3] for i in range(0, len(picture.samples), picture.channels))
        return b"".join(word.pack(sample) for pixel in pixels for sample in reversed(pixel))
