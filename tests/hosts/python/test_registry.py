"""The registry, as a script uses it."""

import unittest

from support import orvane

PATH = r"Software\Orvane tests\Python host"


class Registry(unittest.TestCase):
    user = orvane.RegistryRoot_Const.HKEY_CURRENT_USER

    def setUp(self):
        self.registry = orvane.create("orvRegistry")

    def tearDown(self):
        self.registry.DeleteKeyRecurse(self.user, PATH)

    def test_values_come_back_as_they_were_given(self):
        kinds = orvane.RegistryType_Const
        for kind, value in [(kinds.rtString, "Привет"), (kinds.rtLong, -5),
                            (kinds.rtBoolean, True)]:
            with self.subTest(kind=kind):
                self.assertIs(self.registry.SetValue(self.user, PATH, "v", kind, value), True)
                success = orvane.Ref(False)
                self.assertEqual(self.registry.GetValue(self.user, PATH, "v", kind, success), value)
                self.assertIs(success.value, True)

    def test_bytes_come_back_as_they_were_given(self):
        binary = orvane.RegistryType_Const.rtBinary
        given = orvane.array("Byte", [0, 255, 7])
        self.assertTrue(self.registry.SetValue(self.user, PATH, "v", binary, given))
        self.assertEqual(list(self.registry.GetValue(self.user, PATH, "v", binary)), [0, 255, 7])

    def test_failures_are_told(self):
        success = orvane.Ref(True)
        self.assertEqual(self.registry.GetValue(self.user, PATH, Success=success), "")
        self.assertIs(success.value, False)
        self.assertEqual(self.registry.LastRegError, 2)
        existed = orvane.Ref(True)
        self.assertTrue(self.registry.CreateKey(self.user, PATH, existed))
        self.assertIs(existed.value, False)

    def test_names_are_a_collection(self):
        self.assertIs(self.registry.GetSubKeysNames(self.user, PATH), orvane.Nothing)
        for name in ["b", "a", "Ж"]:
            self.registry.CreateKey(self.user, PATH + "\\" + name)
        names = self.registry.GetSubKeysNames(self.user, PATH)
        self.assertEqual(len(names), 3)
        self.assertEqual(list(names), ["b", "a", "Ж"])
        self.assertEqual((names[1], names.Item(2)), ("b", "a"))
        self.assertIn("Ж", names)
        with self.assertRaises(orvane.Error) as raised:
            names[4]
        self.assertEqual(raised.exception.number, 9)
        names.Add("d", "key")
        self.assertEqual(names["KEY"], "d")
        names.Add("first", Before=1)
        self.assertEqual((names[1], names.Count), ("first", 5))
        names.Remove("key")
        self.assertEqual(list(names), ["first", "b", "a", "Ж"])
        self.assertEqual(orvane.orvMain.JoinCollection(names, ","), "first,b,a,Ж")

    def test_an_empty_key_has_an_empty_collection(self):
        self.registry.CreateKey(self.user, PATH)
        names = self.registry.GetValuesNames(self.user, PATH)
        self.assertEqual((len(names), list(names)), (0, []))
        self.assertIsNot(names, orvane.Nothing)


if __name__ == "__main__":
    unittest.main()
