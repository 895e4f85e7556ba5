"""qvnconvert in pipelines, byte for byte beside what the tool makes of the same frames."""

import unittest

from pipeline import PipelineTest, cut, padded, read_png, without_fourth

# Caps: the tool's format, bytes of a line.
SOURCES = {
    "IYU1": ("uyyvyy411", lambda width: width // 4 * 6),
    "IYU2": ("yuv444", lambda width: width * 3),
    "UYVY": ("uyvy", lambda width: width * 2),
    "GRAY8": ("y8", lambda width: width),
    "GRAY16_BE": ("y16be", lambda width: width * 2),
    "GRAY16_LE": ("y16le", lambda width: width * 2),
}
TARGETS = {"BGR": "bgr", "BGRx": "bgra", "BGRA": "bgra", "GRAY8": "y8"}


class ConvertTest(PipelineTest):
    def source(self, name, width, height):
        return (f"videotestsrc num-buffers=1 ! video/x-raw,format={name},width={width},height={height} ! "
                "tee name=t t. ! queue ! filesink location=padded.raw t. ! queue").split()

    def check(self, name, output, width, height):
        form, line_bytes = SOURCES[name]
        self.launch(*self.source(name, width, height), "!", "qvnconvert", "!", f"video/x-raw,format={output}", "!",
                    "filesink", "location=ours.raw")
        ours = self.picture("ours.raw", output, width, height)
        line = line_bytes(width)
        data = self.read("padded.raw")
        pitch = len(data) // height
        self.assertGreaterEqual(pitch, padded(line))
        self.write("frame.raw", b"".join(data[y * pitch:y * pitch + line] for y in range(height)))
        if name == output:
            self.assertEqual(ours, self.read("frame.raw"))
            return
        grey16 = name.startswith("GRAY16")
        direct = output == "BGR" or (grey16 and output == "GRAY8")
        # BGRA of little-endian grey has a function of its own.
        method = "direct" if direct else "transform-ex" if name == "GRAY16_LE" else "transform"
        tool = self.tool_bytes("frame.raw", output, "--from", form, "--size", f"{width}x{height}", "--method", method)
        if TARGETS[output] == "bgra":
            if output == "BGRA":
                self.assertEqual(ours[3::4], b"\xff" * (width * height))
            ours, tool = without_fourth(ours), without_fourth(tool)
        self.assertEqual(ours, tool)

    def test_each_source_and_output(self):
        for name in SOURCES:
            for output in TARGETS:
                for width, height in ((64, 48), (68, 17)):
                    with self.subTest(name=name, output=output, width=width):
                        self.check(name, output, width, height)

    def test_odd_widths(self):
        for name in ("IYU2", "GRAY8", "GRAY16_BE"):
            self.check(name, "BGR", 37, 11)
        self.check("UYVY", "BGR", 38, 11)

    def test_png(self):
        self.launch(*self.source("IYU2", 96, 64), "!", "qvnconvert", "!", "video/x-raw,format=BGR", "!",
                    "videoconvert", "!", "video/x-raw,format=RGB", "!", "pngenc", "!", "filesink",
                    "location=ours.png")
        self.write("frame.raw", cut(self.read("padded.raw"), 96 * 3, 64))
        self.run_tool("convert", "frame.raw", "tool.png", "--from", "yuv444", "--size", "96x64")
        self.assertEqual(read_png(self.read("ours.png")), read_png(self.read("tool.png")))

    def test_refusals(self):
        self.refuse_pipeline(*self.source("IYU1", 62, 48), "!", "qvnconvert", "!", "fakesink",
                             says="expected padded lines of whole groups of pixels, found 62")
        self.refuse_pipeline(*self.source("YUY2", 64, 48), "!", "qvnconvert", "!", "fakesink", says="could not link")


if __name__ == "__main__":
    unittest.main()
