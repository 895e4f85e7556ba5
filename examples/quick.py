"""A 640x480 frame of 8-bit samples (R G over G B) as a PPM: quick.py FRAME PICTURE"""
import sys, numpy, quorvane
frame = numpy.fromfile(sys.argv[1], numpy.uint8).reshape(480, 640)
picture = quorvane.convert(frame, source="raw8", pattern="rggb", method="3x3")
open(sys.argv[2], "wb").write(b"P6 640 480 255\n" + picture[:, :, ::-1].tobytes())  # a PPM has red first
