"""qvndemosaic in pipelines, byte for byte beside what the tool makes of the same mosaics."""

import struct
import unittest

from pipeline import OUTPUTS, PipelineTest, cut, padded, read_png, without_fourth

ORDERS = ("rggb", "bggr", "grbg", "gbrg")
METHODS = ("2x2", "3x3", "yuv422", "lcaa", "lcaav")


def size_words(width, height):
    return f"width={width},height={height},framerate=25/1"


def source(width, height, frames=1, pattern="smpte"):
    return (f"videotestsrc num-buffers={frames} pattern={pattern} ! video/x-raw,format=ARGB,"
            + size_words(width, height) + " ! rgb2bayer").split()


class DemosaicTest(PipelineTest):
    def test_png_of_each_order_by_each_method(self):
        """The usual pipeline, of a width that pads the lines of mosaic and picture."""
        width, height = 70, 46
        for order in ORDERS:
            for method in METHODS:
                with self.subTest(order=order, method=method):
                    self.launch(*source(width, height), "!", f"video/x-bayer,format={order}", "!", "tee", "name=t",
                                "t.", "!", "queue", "!", "filesink", "location=padded.raw",
                                "t.", "!", "queue", "!", "qvndemosaic", f"method={method}", "!",
                                "video/x-raw,format=BGR", "!", "videoconvert", "!", "video/x-raw,format=RGB", "!",
                                "pngenc", "!", "filesink", "location=ours.png")
                    self.write("mosaic.raw", cut(self.read("padded.raw"), width, height))
                    self.run_tool("convert", "mosaic.raw", "tool.png", "--from", "raw8", "--size",
                                  f"{width}x{height}", "--pattern", order, "--method", method)
                    self.assertEqual(read_png(self.read("ours.png")), read_png(self.read("tool.png")))

    def chart(self, form, width, height, *arguments):
        self.run_tool("chart", "frame.raw", "--format", form, "--size", f"{width}x{height}", *arguments)
        return self.read("frame.raw")

    def demosaic(self, caps, output, width, height, *properties, frame="frame.raw"):
        """One picture of a file's bytes."""
        length = (self.folder / frame).stat().st_size
        self.launch("filesrc", f"location={frame}", f"blocksize={length}", "!",
                    f"video/x-bayer,{caps}," + size_words(width, height), "!", "qvndemosaic", *properties, "!",
                    f"video/x-raw,format={output}", "!", "filesink", "location=ours.raw")
        return self.picture("ours.raw", output, width, height)

    def check(self, ours, tool, output):
        if output in ("BGRx", "BGRA"):
            if output == "BGRA":
                self.assertEqual(ours[3::4], b"\xff" * (len(ours) // 4))
            if len(tool) == len(ours):
                tool = without_fourth(tool)
            ours = without_fourth(ours)  # that of BGRx is no one's
        elif output == "BGRA64_LE":
            self.assertEqual(ours[6::8] + ours[7::8], b"\xff" * (len(ours) // 4))
            ours = without_fourth(ours, 2)
        self.assertEqual(ours, tool)

    def test_outputs_of_8_bits(self):
        width, height = 50, 38
        self.chart("raw8", width, height, "--pattern", "grbg")
        for method in METHODS:
            for output in ("BGR", "BGRx", "BGRA", "GRAY8", "UYVY"):
                if output == "UYVY" and method != "2x2":
                    continue
                with self.subTest(method=method, output=output):
                    # The functions of one target first, then those of several.
                    plain = output == "BGR" or (output == "GRAY8" and method == "2x2")
                    name = method if plain else "transform" if method == "2x2" else "transform-" + method
                    tool = self.tool_bytes("frame.raw", output, "--from", "raw8", "--size", f"{width}x{height}",
                                           "--pattern", "grbg", "--method", name)
                    self.check(self.demosaic("format=grbg", output, width, height, f"method={method}"), tool, output)

    def test_depths(self):
        width, height = 34, 22
        for order in ("le", "be"):
            for bits in (10, 12, 14, 16):
                self.chart("raw16" + order, width, height, "--pattern", "gbrg", "--bits", bits)
                for output in ("BGR", "BGRA", "GRAY8", "GRAY16_LE", "BGRA64_LE"):
                    with self.subTest(order=order, bits=bits, output=output):
                        plain = order == "be" and bits == 16
                        one_target = output in ("BGR", "GRAY16_LE", "BGRA64_LE")
                        method = "transform-ex" if not plain else "2x2" if one_target else "transform"
                        form = () if plain else ("--bits", bits)
                        tool = self.tool_bytes("frame.raw", output, "--from", "raw16" + order, "--size",
                                               f"{width}x{height}", "--pattern", "gbrg", "--method", method, *form)
                        ours = self.demosaic(f"format=gbrg{bits}{order}", output, width, height)
                        self.check(ours, tool, output)
                        if bits != 14:
                            continue
                        by_property = self.demosaic("format=gbrg", output, width, height, f"samples=16{order}",
                                                    f"bits={bits}")
                        self.assertEqual(by_property, ours)
                        if order == "le":
                            by_fields = self.demosaic("format=gbrg,bpp=16,depth=14", output, width, height)
                            self.assertEqual(by_fields, ours)

    def test_packed_12_bits(self):
        width, height = 42, 30
        for samples in ("12packed", "12p", "12csi2"):
            self.chart("raw" + samples, width, height)
            for output in ("BGR", "BGRA", "GRAY8", "BGRA64_LE"):
                with self.subTest(samples=samples, output=output):
                    method = "2x2" if output in ("BGR", "BGRA64_LE") else "transform"
                    filled = ("--edges", "fill") if output == "BGRA64_LE" else ()
                    tool = self.tool_bytes("frame.raw", output, "--from", "raw" + samples, "--size",
                                           f"{width}x{height}", "--method", method, *filled)
                    if output == "BGRA64_LE":
                        words = struct.unpack(f"<{len(tool) // 2}H", tool)
                        tool = struct.pack(f"<{len(words)}H", *(word << 4 for word in words))
                    ours = self.demosaic("format=rggb", output, width, height, f"samples={samples}")
                    self.check(ours, tool, output)
                    if samples == "12packed":
                        self.assertEqual(self.demosaic("format=rggb,bpp=12,depth=12", output, width, height), ours)

    def test_pitch(self):
        """Lines as far apart as the property says, padded to words, or not at all."""
        width, height = 54, 26
        frame = self.chart("raw8", width, height)
        lines = [frame[y * width:(y + 1) * width] for y in range(height)]
        ours = self.demosaic("format=rggb", "BGR", width, height)
        for name, pitch, properties in (("words.raw", padded(width), ()), ("far.raw", 100, ("pitch=100",))):
            padding = b"\xa5" * (pitch - width)
            for last in (padding, b""):  # the last line's own may be missing
                self.write(name, padding.join(lines) + last)
                self.assertEqual(self.demosaic("format=rggb", "BGR", width, height, *properties, frame=name), ours)

    def test_matrices(self):
        width, height = 62, 34
        numbers = "1.6,-0.4,-0.2,-0.3,1.5,-0.2,0.05,-0.65,1.6"
        size = ("--size", f"{width}x{height}")
        options = {"clamped": "--matrix-clamped", "float": "--matrix", "fixed": "--matrix-fixed"}

        def compare(form, caps, output, rule, method, *properties):
            make = self.tool_picture if rule == "clamped" else self.tool_bytes
            tool = make("frame.raw", output, "--from", form, *size, "--method", method, options[rule], numbers)
            ours = self.demosaic(f"format={caps}", output, width, height, f"matrix={numbers}", f"matrix-rule={rule}",
                                 *properties)
            self.check(ours, tool, output)

        for form, caps, output in (("raw8", "rggb", "BGR"), ("raw16be", "rggb16be", "BGRA64_LE")):
            self.chart(form, width, height)
            for rule in options:
                with self.subTest(form=form, rule=rule):
                    compare(form, caps, output, rule, "2x2")
        self.chart("raw12packed", width, height)
        compare("raw12packed", "rggb", "BGR", "float", "2x2", "samples=12packed")
        self.chart("raw8", width, height)
        compare("raw8", "rggb", "GRAY8", "float", "2x2")
        compare("raw8", "rggb", "BGR", "clamped", "lcaa", "method=lcaa")
        compare("raw8", "rggb", "BGRx", "clamped", "transform-3x3", "method=3x3")
        compare("raw8", "rggb", "BGRA", "clamped", "transform-3x3", "method=3x3")

        commas = self.demosaic("format=rggb", "BGR", width, height, f"matrix={numbers}")
        spaces = self.demosaic("format=rggb", "BGR", width, height, "matrix=" + numbers.replace(",", "  "))
        self.assertEqual(commas, spaces)

    def test_threads(self):
        width, height = 322, 202
        self.chart("raw8", width, height)
        for method in ("2x2", "3x3", "lcaa"):
            one = self.demosaic("format=rggb", "BGR", width, height, f"method={method}")
            self.assertEqual(self.demosaic("format=rggb", "BGR", width, height, f"method={method}", "n-threads=3"),
                             one)

    def test_many_frames(self):
        """Memory that is used again holds nothing of the picture before."""
        width, height, frames = 66, 40, 7
        for output in ("BGR", "GRAY8"):
            self.launch(*source(width, height, frames, "ball"), "!", "video/x-bayer,format=bggr", "!", "tee",
                        "name=t", "t.", "!", "queue", "!", "filesink", "location=padded.raw",
                        "t.", "!", "queue", "!", "qvndemosaic", "method=lcaav", "!", f"video/x-raw,format={output}",
                        "!", "filesink", "location=ours.raw")
            mosaics, pictures = self.read("padded.raw"), self.read("ours.raw")
            for i in range(frames):
                length = padded(width) * height
                self.write("mosaic.raw", cut(mosaics[i * length:(i + 1) * length], width, height))
                length = padded(width * OUTPUTS[output][1]) * height
                self.write("one.raw", pictures[i * length:(i + 1) * length])
                method = "lcaav" if output == "BGR" else "transform-lcaav"
                tool = self.tool_bytes("mosaic.raw", output, "--from", "raw8", "--size", f"{width}x{height}",
                                       "--pattern", "bggr", "--method", method)
                self.assertEqual(self.picture("one.raw", output, width, height), tool)

    def test_caps_meet(self):
        """Neither side says more than it must."""
        self.launch(*source(64, 48), "!", "qvndemosaic", "!", "videoconvert", "!", "fakesink")
        self.launch(*source(64, 48), "!", "qvndemosaic", "!", "video/x-raw,format=UYVY,colorimetry=bt601", "!",
                    "fakesink")
        self.launch(*source(64, 48), "!", "qvndemosaic", "samples=8", "!", "pngenc", "!", "fakesink")

    def test_refusals(self):
        start = source(64, 48)
        self.refuse_pipeline(*start, "!", "qvndemosaic", "matrix=1,2,3", "!", "fakesink",
                             says="matrix: expected nine numbers, found '1,2,3'")
        self.refuse_pipeline(*start, "!", "qvndemosaic", "matrix=1,0,0,0,1,0,0,0,1,0", "!", "fakesink",
                             says="matrix: expected nine numbers, found more in")
        self.refuse_pipeline(*start, "!", "qvndemosaic", "samples=16le", "bits=11", "!", "fakesink",
                             says="bits: expected 10 or 12 to 16, found 11")
        self.refuse_pipeline(*start, "!", "qvndemosaic", "pitch=60", "!", "fakesink",
                             says="expected lines of the source at least 64 bytes apart, found 60")
        self.refuse_pipeline(*start, "!", "qvndemosaic", "pitch=68", "!", "fakesink",
                             says="expected a source of 48 lines, 68 bytes apart, found 3072")
        self.refuse_pipeline(*start, "!", "qvndemosaic", "samples=16le", "!", "fakesink", says="expected a source of")
        self.refuse_pipeline(*source(64, 47), "!", "qvndemosaic", "method=lcaa", "!", "fakesink",
                             says="expected a height that is a multiple of 2, found 64x47")
        # No such conversion: the pads do not agree.
        for words in (["method=3x3", "samples=16le"], ["matrix=1,0,0,0,1,0,0,0,1", "matrix-rule=fixed", "method=lcaa"]):
            self.refuse_pipeline(*start, "!", "qvndemosaic", *words, "!", "fakesink", says="could not link")
        self.refuse_pipeline(*start, "!", "qvndemosaic", "!", "video/x-raw,format=GRAY16_LE", "!", "fakesink",
                             says="not-negotiated")


if __name__ == "__main__":
    unittest.main()
