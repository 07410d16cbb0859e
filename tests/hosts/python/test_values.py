"""How Python values travel to the library and back."""

import datetime
import decimal
import enum
import unittest

from support import component, orvane


class Values(unittest.TestCase):
    def setUp(self):
        self.probe = component().create("TestProbe")
        self.items = component().create("TestItems")

    def there_and_back(self, value):
        self.items.Add(value)
        return self.items.Item(self.items.Count)

    def type_of(self, value):
        return int(self.probe.TypesOf(value))

    def test_each_python_type_has_its_own_type_in_the_library(self):
        now = datetime.datetime(2020, 2, 29, 12, 30, 15)
        expected = [(None, 0), (orvane.Empty, 0), (orvane.Null, 1), (7, 3), (1.5, 5),
                    (decimal.Decimal("1.25"), 6), (now, 7), (now.date(), 7), ("text", 8),
                    (orvane.Nothing, 9), (self.items, 9), (orvane.ErrorValue(11), 10), (True, 11),
                    ([1, "a"], 0x200C), ((1, 2), 0x200C), (b"ab", 0x2011),
                    (bytearray(b"a"), 0x2011), (orvane.array("Long", [1]), 0x2003),
                    (orvane.array("String", ["a"]), 0x2008)]
        for value, vt in expected:
            with self.subTest(value=value):
                self.assertEqual(self.type_of(value), vt)

    def test_an_int_is_a_long_where_it_fits_and_a_double_beyond(self):
        for value, vt in [(2**31 - 1, 3), (-2**31, 3), (2**31, 5), (-2**31 - 1, 5)]:
            self.assertEqual(self.type_of(value), vt)
            self.assertEqual(self.there_and_back(value), value)

    def test_an_int_beyond_any_double_is_refused(self):
        with self.assertRaisesRegex(OverflowError, "TestItems.Add, argument Value"):
            self.items.Add(10**400)

    def test_values_come_back_as_they_went(self):
        for value in [0, -1, 1.25, True, False, "", "текст", "a\0b", "😀", "\ud800",
                      orvane.Null, orvane.Empty, orvane.Nothing,
                      orvane.ErrorValue(5), decimal.Decimal("-922337203685477.5808"),
                      b"", b"\0\xff", [1, "a", [2.5, None]], []]:
            with self.subTest(value=value):
                back = self.there_and_back(value)
                self.assertEqual(back, value if value != [1, "a", [2.5, None]] else
                                 [1, "a", [2.5, orvane.Empty]])
                if not isinstance(value, list):
                    self.assertIs(type(back), type(value))

    def test_dates_keep_their_microseconds_on_both_sides_of_day_zero(self):
        for moment in [datetime.datetime(1899, 12, 30), datetime.datetime(1899, 12, 29, 6),
                       datetime.datetime(1850, 1, 2, 3, 4, 5),
                       datetime.datetime(2024, 2, 29, 23, 59, 59),
                       datetime.datetime(2024, 1, 1, 0, 0, 0, 123456),
                       datetime.datetime(100, 1, 1)]:
            self.assertEqual(self.there_and_back(moment), moment)

    def test_a_date_with_a_time_zone_is_refused(self):
        with self.assertRaisesRegex(TypeError, "time zone"):
            self.items.Add(datetime.datetime(2020, 1, 1, tzinfo=datetime.timezone.utc))

    def test_a_decimal_is_rounded_to_ten_thousandths_and_kept_in_range(self):
        self.assertEqual(self.there_and_back(decimal.Decimal("1.00005")), decimal.Decimal("1"))
        self.assertEqual(self.there_and_back(decimal.Decimal("1.00015")), decimal.Decimal("1.0002"))
        for value in ["922337203685477.5808", "NaN", "Infinity"]:
            with self.assertRaises(OverflowError):
                self.items.Add(decimal.Decimal(value))

    def test_subclasses_and_numbers_of_other_makes_travel_as_what_they_are(self):
        class Colour(enum.IntEnum):
            red = 3

        class Indexed:
            def __index__(self):
                return 12

        class Floating:
            def __float__(self):
                return 1.5

        self.assertEqual(self.type_of(Colour.red), 3)
        self.assertEqual(self.there_and_back(Indexed()), 12)
        self.assertEqual(self.there_and_back(Floating()), 1.5)

    def test_values_without_a_form_are_refused_with_the_argument_named(self):
        for value in [{}, {1}, 1j, range(3), int]:
            with self.subTest(value=value):
                with self.assertRaisesRegex(TypeError, "TestItems.Add, argument Value"):
                    self.items.Add(value)
        self.assertEqual(self.items.Count, 0)

    def test_every_length_of_text_arrives_whole(self):
        for length in [0, 1, 252, 253, 254, 255, 256, 257, 5000]:
            text = "ы" * length
            self.assertEqual(self.probe.Join(text, 1, "", ""), text + "|1||")

    def test_the_special_values_count_as_false_and_name_themselves(self):
        for name in ["MISSING", "Null", "Empty", "Nothing"]:
            value = getattr(orvane, name)
            self.assertFalse(value)
            self.assertEqual(repr(value), "orvane." + name)


class ByteStrings(unittest.TestCase):
    def test_every_byte_has_one_unit_and_comes_back(self):
        data = bytes(range(256))
        text = orvane.to_byte_string(data)
        self.assertEqual(len(set(text)), 256)
        self.assertEqual(orvane.from_byte_string(text), data)

    def test_the_unassigned_byte_is_the_control_character_of_its_number(self):
        self.assertEqual(orvane.to_byte_string(b"\x98"), "\x98")

    def test_cyrillic_is_code_page_1251_and_strangers_are_question_marks(self):
        self.assertEqual(orvane.from_byte_string("Ы€"), b"\xdb\x88")
        self.assertEqual(orvane.from_byte_string("é"), b"?")
        self.assertEqual(orvane.from_byte_string("😀"), b"??")


class Arrays(unittest.TestCase):
    def setUp(self):
        self.probe = component().create("TestProbe")

    def test_a_typed_array_has_bounds_and_counts_from_its_lower_one(self):
        values = orvane.array("Long", [3, 1, 2], lower=-5)
        self.assertEqual((values.type, values.lower, values.upper), ("Long", -5, -3))
        self.assertEqual(len(values), 3)
        self.assertEqual(values[-5], 3)
        values[-3] = 9
        self.assertEqual(list(values), [3, 1, 9])
        self.assertEqual(values.index(9), -3)
        for index in [-6, -2, 0]:
            with self.assertRaises(IndexError):
                values[index]
        self.assertEqual(repr(values), "orvane.array('Long', [3, 1, 9], lower=-5)")

    def test_every_type_of_element_keeps_its_values(self):
        when = datetime.datetime(2000, 1, 1, 12)
        for type_, values in [("Byte", [0, 255]), ("Integer", [-32768, 32767]),
                              ("Long", [-2**31, 2**31 - 1]), ("Single", [0.5, -2.0]),
                              ("Double", [1e300, 0.1]), ("Currency", [decimal.Decimal("1.5")]),
                              ("Date", [when]), ("String", ["", "я"]), ("Boolean", [True, False]),
                              ("Object", [orvane.Nothing, self.probe]),
                              ("Variant", [1, "a", orvane.Null, [1]])]:
            with self.subTest(type=type_):
                made = orvane.array(type_, values)
                self.assertEqual(made.tolist(), values)
                self.assertEqual(made.type, type_)

    def test_elements_of_a_wrong_type_or_range_are_refused(self):
        for type_, value, error in [("Byte", 256, OverflowError), ("Integer", 40000, OverflowError),
                                    ("Long", 2**31, OverflowError), ("Long", "1", TypeError),
                                    ("String", 1, TypeError), ("Date", 1, TypeError),
                                    ("Object", 1, TypeError)]:
            with self.subTest(type=type_), self.assertRaises(error):
                orvane.array(type_, [value])
        with self.assertRaises(ValueError):
            orvane.array("Quad", [])

    def test_an_array_goes_by_reference_and_is_changed_in_place(self):
        values = orvane.array("Long", [3, 1, 2], lower=-5)
        self.probe.ChangeLongs(values)
        self.assertEqual((list(values), values.lower), ([4, 2, 3], -5))
        texts = orvane.array("String", ["a", "b"])
        self.probe.ChangeTexts(texts)
        self.assertEqual(texts, ["a!", "b!"])

    def test_an_array_without_memory_is_given_some_by_the_library(self):
        values = orvane.array("Long", None)
        self.assertEqual((len(values), values.bounds), (0, []))
        with self.assertRaises(orvane.Error):
            values.lower
        self.probe.ChangeLongs(values)
        self.assertEqual((values.bounds, list(values)), ([(1, 3)], [1, 1, 1]))

    def test_a_list_by_reference_comes_back_changed_as_a_list(self):
        given = orvane.Ref([1, 2])
        self.probe.ChangeLongs(given)
        self.assertEqual(given.value, [2, 3])
        self.assertIs(type(given.value), list)

    def test_an_array_of_another_type_is_a_type_mismatch(self):
        with self.assertRaises(orvane.Error) as raised:
            self.probe.ChangeLongs(orvane.array("String", ["a"]))
        self.assertEqual(raised.exception.number, 13)

    def test_an_array_result_has_the_library_s_bounds(self):
        counted = self.probe.Counted(3)
        self.assertEqual((counted.type, counted.bounds), ("Long", [(1, 3)]))
        self.assertEqual(list(counted), [1, 2, 3])


if __name__ == "__main__":
    unittest.main()
