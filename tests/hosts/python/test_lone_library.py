"""The library without the modules that lie beside it: what they carry out is missing, nothing else."""

import pathlib
import shutil
import tempfile
import unittest

from support import PICTURES, orvane, run

LIBRARY = pathlib.Path(orvane._default().path)

PROGRAM = """
import orvane
registry = orvane.create("orvRegistry")
user, machine, classes = 0x80000001 - 2**32, 0x80000002 - 2**32, 0x80000000 - 2**32
"""


class LoneLibrary(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.library = shutil.copy(LIBRARY, self.folder)

    def answers(self, program):
        """What a program prints, a line each, when the copy is its library."""
        return run(PROGRAM + program, ORVANE_LIBRARY=str(self.library),
                   ORVANE_REGISTRY_USER=str(self.folder / "user"),
                   ORVANE_REGISTRY_MACHINE=str(self.folder / "machine")).splitlines()

    def test_every_class_can_be_made(self):
        self.assertEqual(self.answers("""
for name, each in orvane._default().classes.items():
    if each.can_create:
        orvane.create(name)
print("done")
"""), ["done"])

    def test_every_call_of_the_registry_answers_126(self):
        answers = self.answers("""
success, existed = orvane.Ref(True), orvane.Ref(True)
calls = [
    lambda root: registry.IsKeyExist(root, "Software"),
    lambda root: registry.GetValue(root, "Software", "v", 0, success),
    lambda root: registry.GetValue(root, "Software", "v", 1, success),
    lambda root: registry.SetValue(root, "Software", "v", 0, "text", existed),
    lambda root: registry.CreateKey(root, "Software", existed),
    lambda root: registry.DeleteValue(root, "Software", "v"),
    lambda root: registry.DeleteKey(root, "Software"),
    lambda root: registry.DeleteKeyRecurse(root, "Software"),
    lambda root: registry.GetSubKeysNames(root, "Software"),
    lambda root: registry.GetValuesNames(root, "Software"),
]
for root in user, machine, classes:
    print([(call(root), registry.LastRegError) for call in calls], success.value, existed.value)
""")
        results = [False, "", 0, False, False, False, False, False, orvane.Nothing, orvane.Nothing]
        self.assertEqual(answers, ["%s False True" % [(each, 126) for each in results]] * 3)
        self.assertEqual([each.name for each in self.folder.iterdir()], [LIBRARY.name])

    def test_settings_are_not_kept_and_defaults_hold(self):
        self.assertEqual(self.answers("""
settings = orvane.create("orvOrvaneSettings")
success = orvane.Ref(True)
print(settings.SaveSetting("k", "n", 0, "text", "A title", 1, 2))
print(settings.LoadSetting("k", "n", 0, "A title", 1, 2, "default", True, success), success.value)
"""), ["False", "default False"])

    def test_a_module_that_comes_later_is_found(self):
        self.assertEqual(self.answers("""
import shutil
registry.IsKeyExist(user, "Software")
print(registry.LastRegError)
shutil.copy(%r, %r)
registry.IsKeyExist(user, "Software")
print(registry.LastRegError)
print(registry.SetValue(user, "Software", "v", 0, "text"), registry.GetValue(user, "Software", "v"))
""" % (str(LIBRARY.with_name("libOrvaneRegistry.so")), str(self.folder))),
                         ["126", "2", "True text"])

    def test_pictures_load_through_the_librarys_own_readers_alone(self):
        self.assertEqual(self.answers("""
for name in "sunset-24-top-left.tga", "sunset-24.pcx", "sunset.psd", "sunset.gif":
    info = orvane.create("PictureInfo")
    try:
        picture = orvane.orvMain.LoadPictureEx(%r + "/" + name, info)
        print(name, info.Width() > 0, picture is not None)
    except orvane.Error as error:
        print(name, error.number)
""" % str(PICTURES)), ["sunset-24-top-left.tga True True", "sunset-24.pcx True True",
                       "sunset.psd True True", "sunset.gif 481"])


if __name__ == "__main__":
    unittest.main()
