"""The library's own classes, and how it is found and loaded."""

import os
import pathlib
import tempfile
import unittest

from support import PICTURES, ROOT, orvane, run

LIBRARY = orvane._default()


class Catalogue(unittest.TestCase):
    def assert_number(self, number, function, *arguments):
        with self.assertRaises(orvane.Error) as raised:
            function(*arguments)
        self.assertEqual(raised.exception.number, number)

    def test_every_class_is_made_by_name_by_progid_and_by_identifier(self):
        for name, described in LIBRARY.classes.items():
            if not described.can_create and not described.is_global:
                with self.subTest(internal=name):
                    self.assert_number(429, orvane.create, name)
                continue
            for asked in [name, "OrvBase0301." + name, described.class_id,
                          described.class_id.strip("{}").lower(), name.upper()]:
                with self.subTest(asked=asked):
                    self.assertEqual(type(orvane.create(asked)).__name__, name)

    def test_every_member_of_every_class_is_an_attribute_with_documentation(self):
        self.assertGreaterEqual(len(LIBRARY._kinds), 3)
        for kind in LIBRARY._kinds.values():
            for name in kind._members:
                with self.subTest(member=kind.__name__ + "." + name):
                    self.assertIn(name + "(", getattr(kind, name).__doc__)

    def test_every_global_class_has_a_hidden_instance(self):
        names = [each.name for each in LIBRARY.classes.values() if each.is_global]
        self.assertIn("orvMain", names)
        for name in names:
            self.assertIs(getattr(orvane, name), getattr(orvane, name))
            self.assertIn(name, dir(orvane))

    def test_names_that_are_not_there_are_attribute_errors(self):
        with self.assertRaisesRegex(AttributeError, "orvane.create"):
            orvane.PictureInfo
        with self.assertRaises(AttributeError):
            orvane.orvNoSuchThing
        self.assert_number(429, orvane.create, "NoSuchClass")
        self.assert_number(429, orvane.create, "Other.PictureInfo")

    def test_enumerations_are_exported(self):
        self.assertEqual(orvane.orvPictureTypeEx.orvPteTGA, 11)
        self.assertEqual(orvane.AddAutoCompleteFlags.aacAutoappendForceOff, -2**31)

    def test_the_version_is_the_library_s_own(self):
        self.assertEqual((LIBRARY.name, LIBRARY.version), ("OrvBase0301", (3, 1, 0, 251)))
        self.assertEqual(LIBRARY.version_text, "3.01.0251")


class CommandLine(unittest.TestCase):
    def setUp(self):
        self.line = orvane.orvMain.CommandLine()

    def test_it_takes_a_line_apart(self):
        self.line.SetNewCommandLine('one "two three" four', True)
        self.assertEqual((self.line.Count, len(self.line)), (3, 3))
        self.assertEqual([self.line.Item[1], self.line.Item(2)], ["two three", "four"])
        self.line.SetNewCommandLine("program argument", AddDummyEXEModuleName=False)
        self.assertEqual(self.line.Count, 1)

    def test_an_index_out_of_range_is_error_9(self):
        with self.assertRaises(orvane.Error) as raised:
            self.line.Item(-2)
        self.assertEqual((raised.exception.number, raised.exception.source), (9, "OrvBase0301"))


class Pictures(unittest.TestCase):
    def test_a_picture_is_loaded_with_its_description(self):
        info = orvane.create("PictureInfo")
        self.assertEqual(info.Width(), 0)
        self.assertIs(info.PictureType(), orvane.orvPictureTypeEx.orvPteNothing)
        picture = orvane.orvMain.LoadPictureEx(
            str(PICTURES / "sunset-24-top-left.tga"), info)
        self.assertIsInstance(picture, orvane.Picture)
        self.assertIs(info.PictureType(), orvane.orvPictureTypeEx.orvPteTGA)
        self.assertEqual(info.GetPictureTypeName(), "Truevision Targa")
        self.assertEqual(info.ImageBPP(), 24)
        self.assertEqual(picture.Type, 1)
        self.assertGreater(info.Width() * info.Height(), 0)
        # Pixels of a 96th of an inch in hundredths of a millimetre.
        self.assertAlmostEqual(picture.Width, info.Width() * 2540 / 96, delta=1)
        self.assertAlmostEqual(picture.Height, info.Height() * 2540 / 96, delta=1)
        self.assertNotEqual(picture.Handle, 0)

    def test_the_description_may_be_a_variable_that_the_library_fills(self):
        info = orvane.Ref()
        orvane.orvMain.LoadPictureEx(str(PICTURES / "sunset.gif"), info)
        self.assertEqual(info.value.GetPictureTypeName(), "CompuServe GIF")
        again = orvane.Ref(info.value)
        orvane.orvMain.LoadPictureExByVar(str(PICTURES / "sunset-24.bmp"), again)
        self.assertIs(again.value.PictureType(), orvane.orvPictureTypeEx.orvPteBMP)

    def test_resource_data_is_bytes(self):
        data = (PICTURES / "sunset-24.bmp").read_bytes()
        info = orvane.create("PictureInfo")
        picture = orvane.orvMain.LoadResPictureByData(data, info)
        self.assertIsInstance(picture, orvane.Picture)
        self.assertIs(info.PictureType(), orvane.orvPictureTypeEx.orvPteBMP)

    def test_a_picture_is_saved_as_a_bitmap_file(self):
        picture = orvane.orvMain.LoadPictureEx(str(PICTURES / "sunset-24-bottom-left.tga"))
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "saved.bmp"
            size = picture.save(path)
            content = path.read_bytes()
            self.assertEqual((content[:2], len(content)), (b"BM", size))
            info = orvane.create("PictureInfo")
            again = orvane.orvMain.LoadPictureEx(str(path), info)
            self.assertEqual((again.Width, again.Height), (picture.Width, picture.Height))
            with self.assertRaises(OSError):
                picture.save(pathlib.Path(folder) / "none" / "saved.bmp")

    def test_a_file_that_is_not_there_is_error_53(self):
        with self.assertRaises(orvane.Error) as raised:
            orvane.orvMain.LoadPictureEx("no such file")
        self.assertEqual(raised.exception.number, 53)

    def test_filters_and_patterns_take_named_arguments(self):
        self.assertNotIn("*.CUR", orvane.orvMain.GetLoadPictureExPattern())
        self.assertIn("*.CUR", orvane.orvMain.GetLoadPictureExPattern(IncludeCursor=True))
        self.assertIn("|", orvane.orvMain.GetLoadPictureExFilter())


class Sort(unittest.TestCase):
    def setUp(self):
        self.sort = orvane.create("orvSort")

    def test_typed_arrays_are_sorted_where_they_are(self):
        for way in ["InsertionSort", "QuickSort"]:
            with self.subTest(way=way):
                numbers = orvane.array("Long", [5, -3, 9, 0, -3, 2**31 - 1], lower=-5)
                getattr(self.sort, way + "_ByLong")(numbers)
                self.assertEqual((list(numbers), numbers.lower),
                                 ([-3, -3, 0, 5, 9, 2**31 - 1], -5))
                texts = orvane.array("String", ["b", "", "c", "a"])
                getattr(self.sort, way + "_ByString")(texts)
                self.assertEqual(texts, ["", "a", "b", "c"])
                values = orvane.array("Variant", [3, 1, 2.5])
                getattr(self.sort, way)(values)
                self.assertEqual(values, [1, 2.5, 3])

    def test_a_list_by_reference_comes_back_sorted(self):
        for way in ["QuickSort", "QuickSort_ByLong", "InsertionSort", "InsertionSort_ByLong"]:
            given = orvane.Ref([3, 1, 2])
            getattr(self.sort, way)(given)
            self.assertEqual(given.value, [1, 2, 3])

    def test_a_collection_of_the_host_is_read_by_name(self):
        asked = []

        class Watched(orvane.Collection):
            def Item(self, Index):
                asked.append(Index)
                return super().Item(Index)

        for way in ["InsertionSortC", "QuickSortC"]:
            for kind, values in [("", [2, 1]), ("_ByLong", [2, 1]), ("_ByString", ["b", "a"])]:
                asked.clear()
                getattr(self.sort, way + kind)(Watched(values))
                self.assertEqual(asked, [1, 2])


class Alone(unittest.TestCase):
    def test_a_name_is_free_until_somebody_holds_it(self):
        name = "python test %d" % os.getpid()
        for member in ["IsAlone", "IsAloneOnDesktop", "IsAloneAtUser"]:
            with self.subTest(member=member):
                first = orvane.create("orvAlone")
                second = orvane.create("orvAlone")
                self.assertIs(getattr(first, member)(name), True)
                self.assertIs(getattr(second, member)(name), False)
                del first, second
                self.assertIs(getattr(orvane.create("orvAlone"), member)(name), True)


class Loading(unittest.TestCase):
    def test_the_library_is_the_one_that_the_environment_names(self):
        self.assertEqual(run("import orvane; print(orvane._default().path)"), LIBRARY.path + "\n")
        self.assertIn("/nowhere/x.so",
                      run("import orvane; orvane.orvMain", ORVANE_LIBRARY="/nowhere/x.so"))

    def test_the_library_is_found_beside_the_package(self):
        with tempfile.TemporaryDirectory() as folder:
            package = pathlib.Path(folder) / "orvane"
            package.mkdir()
            for source in (ROOT / "bindings" / "python" / "orvane").glob("*.py"):
                (package / source.name).write_text(source.read_text())
            os.symlink(os.path.realpath(LIBRARY.path), package / "libOrvaneBase0301.so")
            self.assertEqual(
                run("import orvane; print(orvane._default().path)", PYTHONPATH=folder,
                    ORVANE_LIBRARY=""),
                str(package.resolve() / "libOrvaneBase0301.so") + "\n")

    def test_a_program_ends_well_with_objects_left(self):
        program = """
import orvane, threading
kept = orvane.create("PictureInfo"), orvane.orvMain.CommandLine(), iter([])
class Loop: pass
loop = Loop(); loop.self = loop; loop.info = orvane.create("PictureInfo")
thread = threading.Thread(target=lambda: orvane.orvMain.CommandLine().Count); thread.start()
thread.join()
array = orvane.array("String", ["a"])
print("done")
"""
        self.assertEqual(run(program), "done\n")

    def test_typed_arrays_need_no_object_first(self):
        self.assertEqual(run("import orvane; print(orvane.array('Long', [1, 2]).tolist())"),
                         "[1, 2]\n")


if __name__ == "__main__":
    unittest.main()
