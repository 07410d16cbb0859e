"""Settings and the start at logon, as a Python program uses them."""

import os
import sys
import unittest

from support import orvane, raised_by

STRING, LONG, BINARY, BOOLEAN = range(4)
CURRENT_USER = orvane.RegistryRoot_Const.HKEY_CURRENT_USER


class Application:
    """A host's application object; notes what is read."""

    def __init__(self, title, major, minor):
        self._values = {"Title": title, "Major": major, "Minor": minor}
        self.reads = []

    def _read(self, name):
        self.reads.append(name)
        return self._values[name]

    Title = property(lambda self: self._read("Title"))
    Major = property(lambda self: self._read("Major"))
    Minor = property(lambda self: self._read("Minor"))


class Settings(unittest.TestCase):
    def setUp(self):
        self.settings = orvane.create("orvOrvaneSettings")
        self.title = "Orvane test %d %s" % (os.getpid(), self.id().rpartition(".")[2])
        self.addCleanup(orvane.create("orvRegistry").DeleteKeyRecurse, CURRENT_USER,
                        "Software\\Tarn Hollow\\Orvane\\" + self.title)

    def application(self, major, minor):
        return Application(self.title, major, minor)

    def load(self, major, minor, name="n", kind=STRING, **arguments):
        return self.settings.LoadSetting2("k", name, kind, self.application(major, minor),
                                          **arguments)

    def save(self, major, minor, value, kind=STRING, name="n"):
        return self.settings.SaveSetting2("k", name, kind, value, self.application(major, minor))

    def test_each_type_comes_back(self):
        for kind, value in ((STRING, "\u0442\u0435\u043a\u0441\u0442"), (LONG, -7), (BOOLEAN, True),
                            (BINARY, bytes([0, 255, 7]))):
            self.assertTrue(self.save(1, 0, value, kind))
            loaded = self.load(1, 0, kind=kind)
            self.assertEqual(bytes(loaded) if kind == BINARY else loaded, value)

    def test_an_older_version_serves_until_the_newer_one_saves(self):
        self.save(1, 2, "from 1.2")
        self.save(1, 10, "from 1.10")
        success = orvane.Ref(False)
        self.assertEqual(self.load(2, 0, Success=success), "from 1.10")
        self.assertTrue(success.value)
        self.save(2, 0, "own")
        self.assertEqual(self.load(2, 0), "own")
        self.assertEqual(self.load(1, 2), "from 1.2")

    def test_newer_versions_are_not_used(self):
        self.save(2, 0, "new")
        success = orvane.Ref(True)
        self.assertEqual(self.load(1, 0, Default=2.5, Success=success), 2.5)
        self.assertFalse(success.value)

    def test_the_application_is_read_in_order(self):
        app = self.application(1, "2")
        self.assertTrue(self.settings.GetSettingPath2(app, "a\\b").endswith("\\Version 1.2\\a\\b"))
        self.assertEqual(app.reads, ["Title", "Major", "Minor"])

    def test_a_left_out_application_raises_91(self):
        self.assertEqual(raised_by(self.settings.GetSettingPath2), 91)
        self.assertEqual(raised_by(self.settings.LoadSetting2, "k"), 91)

    def test_left_out_arguments_have_their_defaults(self):
        self.assertEqual(self.settings.GetSettingPath(),
                         "Software\\Tarn Hollow\\Orvane\\Orvane - Byaka\\Version 0.0")

    def test_members_of_later_subjects_raise_445(self):
        self.assertEqual(raised_by(self.settings.LoadFont2), 445)
        self.assertEqual(raised_by(self.settings.SaveFormPlacement, None), 445)


class Autorun(unittest.TestCase):
    def setUp(self):
        self.autorun = orvane.create("orvAutorunSupport")
        self.name = "{Orvane test %d %s}" % (os.getpid(), self.id().rpartition(".")[2])
        self.addCleanup(self.autorun.DeleteFromAutorun, self.name)

    def test_a_registration_comes_and_goes(self):
        self.assertFalse(self.autorun.IsInAutorun(self.name))
        self.assertTrue(self.autorun.AddToAutorun(self.name, "x"))
        self.assertTrue(self.autorun.IsInAutorun(self.name))
        self.assertEqual(self.autorun.GetAutorunString(self.name), "x")
        self.assertTrue(self.autorun.DeleteFromAutorun(self.name))
        self.assertFalse(self.autorun.IsInAutorun(self.name))

    def test_the_running_program_is_registered_without_a_command_line(self):
        self.assertTrue(self.autorun.AddToAutorun(self.name))
        self.assertEqual(self.autorun.GetAutorunString(self.name), os.path.realpath(sys.executable))

    def test_the_global_object_keeps_its_root(self):
        self.assertTrue(orvane.orvAutorunSupport.ForCurrentUserOnly)
        orvane.orvAutorunSupport.ForCurrentUserOnly = False
        self.addCleanup(setattr, orvane.orvAutorunSupport, "ForCurrentUserOnly", True)
        self.assertFalse(orvane.orvAutorunSupport.ForCurrentUserOnly)
        self.assertTrue(self.autorun.ForCurrentUserOnly)


if __name__ == "__main__":
    unittest.main()
