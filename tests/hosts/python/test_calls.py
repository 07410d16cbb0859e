"""Members of every kind, reached by name: the test component's."""

import datetime
import decimal
import inspect
import io
import pydoc
import unittest

from support import component, orvane


class Calls(unittest.TestCase):
    def setUp(self):
        self.library = component()
        self.probe = self.library.create("TestProbe")
        self.items = self.library.create("TestItems")

    def assert_number(self, number, function, *arguments, **named):
        with self.assertRaises(orvane.Error) as raised:
            function(*arguments, **named)
        self.assertEqual(raised.exception.number, number)
        return raised.exception

    def test_arguments_are_optional_named_or_left_out(self):
        join = self.probe.Join
        self.assertEqual(join("a"), "a|7|-|хвост")
        self.assertEqual(join("a", 1, "c", "d", True), "A|1|C|D")
        self.assertEqual(join("a", Fourth="d"), "a|7|-|d")
        self.assertEqual(join(Upper=True, First="a", Second=2, Fourth=""), "A|2|-|")
        self.assertEqual(join("a", orvane.MISSING, orvane.MISSING, "d"), "a|7|-|d")

    def test_wrong_arguments_are_told_as_python_tells_them(self):
        for arguments, named, text in [
                ((), {}, "lacks the argument First"),
                ((), {"Second": 1}, "lacks the argument First"),
                ((1, 2, 3, 4, 5, 6), {}, r"takes at most 5 arguments \(6 given\)"),
                (("a",), {"First": "b"}, "two values for the argument First"),
                (("a",), {"fourth": "b"}, "no argument fourth; did you mean Fourth?")]:
            with self.subTest(text=text), self.assertRaisesRegex(TypeError, text):
                self.probe.Join(*arguments, **named)

    def test_a_required_argument_given_as_missing_is_the_library_s_error(self):
        self.assert_number(449, self.probe.Join, orvane.MISSING)

    def test_a_conversion_that_fails_names_the_argument(self):
        error = self.assert_number(13, self.probe.ChangeLong, "abc")
        self.assertIn("TestProbe.ChangeLong, argument Value", error.description)
        self.assert_number(6, self.probe.ChangeByte, 300)

    def test_every_kind_of_argument_comes_back_by_reference(self):
        noon = datetime.datetime(2000, 1, 1, 12)
        for name, value, changed in [
                ("ChangeByte", 5, 6), ("ChangeInteger", -1, 0), ("ChangeLong", 9, 10),
                ("ChangeSingle", 1.5, 3.0), ("ChangeDouble", 2.5, 5.0),
                ("ChangeCurrency", decimal.Decimal("1.2345"), decimal.Decimal("2.469")),
                ("ChangeDate", noon, noon + datetime.timedelta(1)), ("ChangeBoolean", True, False),
                ("ChangeText", "я", "я!"), ("ChangeVariant", 3, "3?")]:
            with self.subTest(name=name):
                given = orvane.Ref(value)
                self.assertIsNone(getattr(self.probe, name)(given))
                self.assertEqual(given.value, changed)

    def test_objects_come_back_by_reference(self):
        given = orvane.Ref()
        self.probe.ChangeItems(given)
        self.assertEqual(list(given.value), ["added"])
        self.probe.ChangeItems(given)
        self.assertEqual(len(given.value), 2)
        self.probe.ChangeObject(given)
        self.assertEqual(given.value, self.probe)

    def test_what_goes_by_value_stays_as_it_was(self):
        self.assertIsNone(self.probe.ChangeLong(5))
        text = "kept"
        self.probe.ChangeText(text)
        self.assertEqual(text, "kept")

    def test_variable_arguments_arrive_in_order(self):
        self.assertEqual(self.probe.TypesOf(), "")
        self.assertEqual(self.probe.TypesOf(1, "s", orvane.MISSING, 1.5), "3 8 - 5")
        self.assertEqual(self.probe.TypesOf(*range(100)), " ".join(["3"] * 100))

    def test_enumerations_are_int_enums_made_from_the_type_information(self):
        shapes = self.library.TestShape
        self.assertEqual([(each.name, each.value) for each in shapes],
                         [("tsNone", 0), ("tsRound", 1), ("tsSquare", 7)])
        self.assertIs(self.probe.NextShape(), shapes.tsSquare)
        self.assertIs(self.probe.NextShape(shapes.tsNone), shapes.tsRound)

    def test_a_collection_has_items_length_and_enumeration(self):
        for value in ["first", 2, "last"]:
            self.items.Add(value)
        self.items.Add("zero", 1)
        self.assertEqual(len(self.items), 4)
        self.assertEqual(self.items.Count, 4)
        self.assertEqual(list(self.items), ["zero", "first", 2, "last"])
        self.assertEqual([self.items(1), self.items[2], self.items.Item[3], self.items.Item(4)],
                         ["zero", "first", 2, "last"])
        self.assertEqual(self.items.Item(Index=4), "last")
        self.assertIn("first", self.items)

    def test_an_empty_collection_is_still_an_object(self):
        self.assertTrue(self.items)
        self.assertEqual(list(self.items), [])

    def test_two_enumerations_of_a_collection_run_by_themselves(self):
        for value in range(3):
            self.items.Add(value)
        pairs = [(a, b) for a in self.items for b in self.items]
        self.assertEqual(pairs, [(a, b) for a in range(3) for b in range(3)])

    def test_assignment_reaches_the_property_and_the_default_member(self):
        self.items.Add(1)
        self.items.Item[1] = "a"
        self.assertEqual(self.items[1], "a")
        self.items[1] = "b"
        self.assertEqual(self.items[1], "b")

    def test_an_object_is_assigned_by_reference(self):
        self.items.Add(1)
        self.items[1] = self.probe
        self.assertEqual(self.items[1], self.probe)
        self.items[1] = orvane.Nothing
        self.assertIs(self.items[1], orvane.Nothing)

    def test_an_index_out_of_range_is_error_9(self):
        error = self.assert_number(9, self.items.Item, 1)
        self.assertEqual(error.source, "OrvBase0301")
        with self.assertRaises(orvane.Error):
            self.items.Item[5] = 1

    def test_a_property_s_object_takes_members_of_its_own(self):
        self.probe.Items.Add("x")
        self.assertEqual(self.probe.Items(1), "x")
        self.assertEqual(self.probe.Items, self.probe.Items)
        self.assertNotEqual(self.probe.Items, self.items)
        self.assertEqual(len({self.probe.Items, self.probe.Items}), 1)

    def test_errors_carry_number_description_and_source(self):
        error = self.assert_number(777, self.probe.Fail, 777, "told")
        self.assertEqual((error.description, error.source), ("told", "OrvBase0301"))
        self.assertEqual(str(error), "777: told")
        self.assert_number(445, self.probe.NotBuilt)

    def test_only_the_library_s_own_numbers_lose_their_upper_word(self):
        self.assert_number(-2147024891, self.probe.Fail, -2147024891)  # 0x80070005
        self.assert_number(70000, self.probe.Fail, 70000)

    def test_members_that_are_not_there_are_attribute_errors_with_a_hint(self):
        with self.assertRaisesRegex(AttributeError, "did you mean ChangeLong?"):
            self.probe.changelong
        with self.assertRaisesRegex(AttributeError, "no member Nope"):
            self.probe.Nope = 1
        with self.assertRaisesRegex(AttributeError, "can't be assigned"):
            self.probe.Join = 1
        with self.assertRaises(AttributeError):
            self.items.Count = 3

    def test_a_call_within_a_call_has_memory_of_its_own(self):
        probe = self.probe

        class Host:
            def Again(self, depth):
                return depth if depth == 0 else probe.CallOn(self, "Again", depth - 1) + 1

        self.assertEqual(probe.CallOn(Host(), "Again", 20), 20)

    def test_objects_come_from_the_library_alone(self):
        with self.assertRaises(TypeError):
            type(self.items)()

    def test_help_lists_the_members_with_their_arguments(self):
        text = io.StringIO()
        pydoc.Helper(output=text)(self.probe)
        for part in ["Join(", "First: str", "Second: int = 7", "Fourth: str = 'хвост'",
                     "Соединяет значения.", "Items", "TypesOf(self, /, *Values)",
                     "NextShape(self, /, Shape: OrvTestComponent.TestShape = 1)"]:
            self.assertIn(part, text.getvalue())
        self.assertIn("Item(Index: Long) -> Variant", type(self.items).__doc__)
        self.assertIn('Список "значений"', type(self.items).__doc__)

    def test_methods_have_signatures(self):
        signature = inspect.signature(self.probe.Join)
        self.assertEqual(list(signature.parameters),
                         ["First", "Second", "Third", "Fourth", "Upper"])
        self.assertEqual(signature.parameters["Upper"].default, False)
        self.assertIs(signature.return_annotation, str)


if __name__ == "__main__":
    unittest.main()
