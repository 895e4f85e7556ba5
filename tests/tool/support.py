"""Shared by the tests of the tool: running it, and reading the files that it writes.

The readers of PNG and netpbm files are written from the file formats alone, so that they can tell on it.
QVN_TOOL in the environment names the program.
"""

import os
import pathlib
import struct
import subprocess
import tempfile
import unittest
import zlib

TOOL = os.environ.get("QVN_TOOL", "qvn")


class Picture:
    """Samples as one flat list, line after line; RGB order if there are three channels."""

    def __init__(self, width, height, channels, depth, data):
        self.width, self.height, self.channels, self.depth = width, height, channels, depth
        if depth == 16:
            self.samples = list(struct.unpack(">%dH" % (len(data) // 2), data))
        else:
            self.samples = list(data)
        assert len(self.samples) == width * height * channels

    def pixel(self, x, y):
        start = (y * self.width + x) * self.channels
        return tuple(self.samples[start:start + self.channels])

    def __eq__(self, other):
        return vars(self) == vars(other)


def read_png(data):
    """Every filter, no interlace, no palette."""
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    at, packed, header, ended = 8, b"", None, False
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + length]
        check, = struct.unpack(">I", data[at + 8 + length:at + 12 + length])
        assert check == zlib.crc32(kind + body)
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            packed += body
        ended = kind == b"IEND"
        at += 12 + length
    assert ended and header is not None
    width, height, depth, colour, compression, filtering, interlace = header
    assert (compression, filtering, interlace) == (0, 0, 0)
    channels = {0: 1, 2: 3, 6: 4}[colour]
    step = channels * depth // 8
    pitch = width * step
    lines = zlib.decompress(packed)
    assert len(lines) == height * (pitch + 1)
    out, above = bytearray(), bytearray(pitch)
    for y in range(height):
        kind = lines[y * (pitch + 1)]
        line = bytearray(lines[y * (pitch + 1) + 1:(y + 1) * (pitch + 1)])
        for i in range(pitch):
            left = line[i - step] if i >= step else 0
            corner = above[i - step] if i >= step else 0
            if kind == 1:
                guess = left
            elif kind == 2:
                guess = above[i]
            elif kind == 3:
                guess = (left + above[i]) // 2
            elif kind == 4:
                base = left + above[i] - corner
                guess = min((left, above[i], corner), key=lambda value: abs(base - value))
            else:
                assert kind == 0
                guess = 0
            line[i] = (line[i] + guess) & 255
        out += line
        above = line
    return Picture(width, height, channels, depth, bytes(out))


def read_netpbm(data):
    header, start = [], 0
    while len(header) < 4:
        end = start
        while not data[end:end + 1].isspace():
            end += 1
        header.append(data[start:end])
        start = end + 1
    magic, width, height, highest = header[0], int(header[1]), int(header[2]), int(header[3])
    assert magic in (b"P5", b"P6") and highest in (255, 65535)
    return Picture(width, height, 1 if magic == b"P5" else 3, 8 if highest == 255 else 16, data[start:])


def read_tiff(data):
    """Not compressed, strips, either byte order."""
    order = {b"II*\0": "<", b"MM\0*": ">"}[data[:4]]
    at, = struct.unpack(order + "I", data[4:8])
    count, = struct.unpack(order + "H", data[at:at + 2])
    tags = {}
    for i in range(count):
        entry = data[at + 2 + 12 * i:at + 14 + 12 * i]
        tag, kind, number = struct.unpack(order + "HHI", entry[:8])
        form = {1: "B", 3: "H", 4: "I"}.get(kind)
        if form is None:
            continue
        size = struct.calcsize(form) * number
        start = struct.unpack(order + "I", entry[8:])[0]
        body = entry[8:8 + size] if size <= 4 else data[start:start + size]
        tags[tag] = struct.unpack(order + form * number, body)
    width, height, channels, depths = tags[256][0], tags[257][0], tags[277][0], tags[258]
    assert len(set(depths)) == 1 and len(depths) == channels
    assert tags[259] == (1,) and tags[262] == ((1,) if channels == 1 else (2,)) and tags.get(284, (1,)) == (1,)
    assert (channels == 4) == (338 in tags)
    lines = b"".join(data[start:start + size] for start, size in zip(tags[273], tags[279]))
    if depths[0] == 16 and order == "<":
        words = struct.unpack("<%dH" % (len(lines) // 2), lines)
        lines = struct.pack(">%dH" % len(words), *words)
    return Picture(width, height, channels, depths[0], lines)


def netpbm(magic, width, height, highest, data):
    return b"%s\n%d %d\n%d\n" % (magic, width, height, highest) + data


class ToolTest(unittest.TestCase):
    """Each test gets an empty folder and starts the tool in it."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def call(self, *arguments, data=b"", **options):
        options.setdefault("stdout", subprocess.PIPE)
        return subprocess.run([TOOL, *map(str, arguments)], input=data, stderr=subprocess.PIPE,
                              cwd=self.folder, timeout=120, check=False, **options)

    def run_tool(self, *arguments, data=b""):
        """What it writes to standard output; it must succeed in silence."""
        done = self.call(*arguments, data=data)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return done.stdout

    def run_talking(self, *arguments, data=b""):
        """What it writes to standard error, as lines without the name before them; it must succeed."""
        done = self.call(*arguments, data=data)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stderr.decode().replace("qvn: ", "").splitlines()

    def listed(self):
        """(format, method, target) of each conversion that the tool lists."""
        source = method = None
        for line in self.run_tool("formats").decode().split("\nTargets")[0].splitlines():
            words = line.replace(",", "").split()
            if line.startswith("  ") and line[2] != " ":
                source = words[0]
            elif words and words[0] == "--method":
                method = words[1]
                yield source, method, words[3]
            elif words and words[0] == "--to":
                yield from ((source, method, target) for target in words[1:])

    def refuse(self, *arguments, says=(), data=b"", **options):
        """It must end with status 2 and one sentence with all of `says` in it, and change no file."""
        before = self.contents()
        done = self.call(*arguments, data=data, **options)
        text = done.stderr.decode()
        self.assertEqual(done.returncode, 2, text)
        self.assertFalse(done.stdout)
        self.assertEqual(text.count("\n"), 1, text)
        self.assertTrue(text.startswith("qvn: ") and text.endswith("\n"), text)
        for part in says:
            self.assertIn(part, text)
        self.assertEqual(self.contents(), before)

    def contents(self):
        def content(path):
            if not path.is_file():
                return None
            status = path.stat()
            # Reading a file is no change, though it may move the time of access.
            return path.read_bytes() if status.st_size < 1 << 30 else (status.st_size, status.st_mtime_ns)
        return {str(path.relative_to(self.folder)): content(path) for path in self.folder.rglob("*")}

    def write(self, name, data):
        (self.folder / name).write_bytes(bytes(data))
        return name

    def read(self, name):
        return (self.folder / name).read_bytes()
