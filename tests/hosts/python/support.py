"""What the tests of the Python host share: the package's place, and the test component."""

import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "bindings" / "python"))

import orvane  # noqa: E402

PICTURES = ROOT / "examples" / "pictures"
_PROBE_CLASS = "{1B7C2F20-3A5D-4E61-9C22-5D807B410E01}"


def component():
    """The test component, which has a member of every kind."""
    path = os.environ.get("ORVANE_TEST_COMPONENT",
                          ROOT / "build" / "linux" / "bin" / "libOrvTestComponent.so")
    return orvane.load(path, _PROBE_CLASS)


def resident_bytes():
    """The process's memory that is in use."""
    with open("/proc/self/statm") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


def run(program, **environment):
    """What a program prints on a Python of its own, with its errors."""
    given = {**os.environ, "PYTHONPATH": str(ROOT / "bindings" / "python"),
             "ORVANE_LIBRARY": orvane._default().path, **environment}
    done = subprocess.run([sys.executable, "-c", program], env=given, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    return done.stdout + ("" if done.returncode == 0 else "ended with %d" % done.returncode)


def raised_by(function, *arguments):
    """The number of the error that a call raises, 0 when it raises none."""
    try:
        function(*arguments)
    except orvane.Error as error:
        return error.number
    return 0
