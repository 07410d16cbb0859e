"""Objects of other components, by the names that they are registered under."""

import os
import subprocess
import sys
import tempfile
import unittest

from support import ROOT, component, orvane

COMPONENT = component().path


def run(program, folder):
    """What a program prints that runs over a registry in `folder`; `register(entry)` calls an entry
    point of the test component."""
    given = {**os.environ, "PYTHONPATH": str(ROOT / "bindings" / "python"),
             "ORVANE_LIBRARY": orvane._default().path,
             "ORVANE_REGISTRY_USER": folder + "/user", "ORVANE_REGISTRY_MACHINE": folder + "/machine"}
    start = ("import ctypes, orvane\n"
             "def register(entry='DllRegisterServer'):\n"
             "    assert getattr(ctypes.CDLL(%r), entry)() == 0\n" % COMPONENT)
    done = subprocess.run([sys.executable, "-c", start + program], env=given, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    return done.stdout + ("" if done.returncode == 0 else "ended with %d" % done.returncode)


class Registered(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="orvane-python-")
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def assert_prints(self, program, *lines):
        self.assertEqual(run(program, self.folder), "".join(line + "\n" for line in lines))

    def test_a_class_of_another_component_is_created_by_its_progid(self):
        self.assert_prints("""
register()
items = orvane.create("OrvTestComponent.TestItems")
print(type(items).__name__, type(items).__module__)
items.Add("one"); items.Add("two")
print(len(items), list(items), items[1])
text = orvane.Ref("text")
probe = orvane.create("orvtestcomponent.TESTPROBE")
probe.ChangeText(text)
print(text.value, "ChangeText(" in type(probe).ChangeText.__doc__)
print(type(orvane.create("OrvTestComponent.TestItems")) is type(items))
""", "TestItems OrvTestComponent", "2 ['one', 'two'] one", "text! True", "True")

    def test_an_unregistered_name_is_error_429(self):
        self.assert_prints("""
def number(name):
    try:
        orvane.create(name)
    except orvane.Error as error:
        return error.number
print(number("OrvTestComponent.TestProbe"), number("No.SuchClass"), number("NoSuchClass"))
register()
register("DllUnregisterServer")
print(number("OrvTestComponent.TestProbe"))
""", "429 429 429", "429")

    def test_own_classes_need_no_registration_and_are_not_looked_up(self):
        self.assert_prints("""
print(type(orvane.create("OrvBase0301.PictureInfo")).__name__)
""", "PictureInfo")


if __name__ == "__main__":
    unittest.main()
