#!/usr/bin/env python3
"""A call of a method with one Long argument from Python, against the same call of a pybind11 class."""

import pathlib
import sys
import timeit

here = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(here / "peer"), "@ORVANE_PYTHON_PACKAGES@"]

import orvane  # noqa: E402
import orvane_python_peer  # noqa: E402

CALLS = 100000


def best(action):
    """The best time of one call in microseconds."""
    return min(timeit.repeat(action, number=CALLS, repeat=5)) / CALLS * 1e6


component = orvane.load(here.parent / "bin" / "libOrvTestComponent.so",
                        "{1B7C2F20-3A5D-4E61-9C22-5D807B410E01}")
probe = component.create("TestProbe")
peer = orvane_python_peer.Peer()
ours = best(lambda: probe.NextShape(1))
theirs = best(lambda: peer.nextShape(1))
print(f"Python call of a one-argument method  {ours:.2f} us   pybind11  {theirs:.2f} us   "
      f"ratio {theirs / ours:.3f}")
