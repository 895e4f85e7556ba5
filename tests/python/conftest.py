import os
import pathlib
import re

import pytest


@pytest.fixture(scope="session")
def project():
    return pathlib.Path(os.environ["QVN_SOURCE"])


@pytest.fixture(scope="session")
def header_functions(project):
    header = (project / "include" / "quorvane" / "quorvane.h").read_text(encoding="utf-8")
    return re.findall(r"^QVN_API uint32_t (QVN_\w+)\(", header, re.MULTILINE)
