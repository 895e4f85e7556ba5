"""Pictures by the tool: one for each function, by the commands of docs/tool.md, and those of fenced blocks."""

import concurrent.futures
import pathlib
import re
import shlex
import shutil
import subprocess
import tempfile

SIZE = "288x192"


def call(tool, command, folder):
    done = subprocess.run([tool, *shlex.split(command, comments=True)[1:]], cwd=folder, capture_output=True, text=True,
                          check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{command}: {done.stderr.strip()}")
    return done.stdout


def commands(document):
    """{function: command} and the formats of the frames that they read."""
    rows = dict(re.findall(r"^\| `(QVN_\w+)` \| `(qvn [^`]+)` \|$", document, re.M))
    formats = re.search(r"for format in ([^;]*);", document)[1].replace("\\\n", " ").split()
    return {name: command.replace("64x48", SIZE) for name, command in rows.items()}, formats


def one(tool, name, command, frames, out):
    """Pictures of a function's command, by file name, and what it printed."""
    with tempfile.TemporaryDirectory() as folder:
        for frame in frames:
            pathlib.Path(folder, frame.name).symlink_to(frame)
        if "raw12packed" in command and "bgr16" in command:
            command += " --stretch"
        printed = call(tool, command, folder)
        if name == "QVN_InterlacedToProgressive":
            call(tool, f"qvn convert out.raw out.png --from y8 --size {SIZE}", folder)
        if name == "QVN_GetSIS":
            printed = pathlib.Path(folder, "out.bin").read_bytes().hex(" ")
        made = []
        for file in sorted(pathlib.Path(folder).glob("out*.png"), key=lambda file: "rgby".find(file.stem[-1])):
            made.append(f"{name}{file.stem.removeprefix('out')}.png")
            shutil.copyfile(file, out / made[-1])
        return command, made, printed


def gallery(tool, document, out):
    """{function: (command, pictures, what it printed)}"""
    out.mkdir(parents=True, exist_ok=True)
    rows, formats = commands(document)
    with tempfile.TemporaryDirectory() as place, concurrent.futures.ThreadPoolExecutor() as pool:
        frames = [pathlib.Path(place, f"{name}_{SIZE}.raw") for name in formats]
        charts = [f"qvn chart {name}_{SIZE}.raw --format {name} --size {SIZE}" for name in formats]
        list(pool.map(lambda command: call(tool, command, place), charts))
        running = {name: pool.submit(one, tool, name, command, frames, out) for name, command in rows.items()}
        return {name: future.result() for name, future in running.items()}


def of_block(tool, block, prefix, out):
    """Runs the commands of a fenced block; the pictures that they leave, in the order of the commands."""
    out.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        made = []
        for command in block.strip().replace("\\\n", " ").splitlines():
            before = set(pathlib.Path(folder).glob("*.png"))
            call(tool, command, folder)
            for file in sorted(set(pathlib.Path(folder).glob("*.png")) - before):
                made.append((f"{prefix}-{file.name}", file.stem))
                shutil.copyfile(file, out / made[-1][0])
        return made
