"""orvane describe: what the library tells about its classes."""

from tool_case import ToolCase


class Describe(ToolCase):
    def lines(self, *words):
        status, output, errors = self.run_tool('describe', *words)
        self.assertEqual((status, errors), (0, ''))
        return output.splitlines()

    def test_the_catalogue_names_library_classes_and_identifiers(self):
        first, *classes = self.lines()
        self.assertEqual(first, 'OrvBase0301 1.5  Orvane - Библиотека общих функций 3.01')
        rows = {line.split()[0]: line.split()[1:] for line in classes}
        self.assertEqual(rows['orvMain'], ['global', '{9BFF0E80-2887-4ECA-8C35-F1A21B8CFD94}'])
        self.assertEqual(rows['PictureInfo'],
                         ['creatable', '{83A3985F-5450-4098-94CD-C534A3F195D7}'])
        self.assertEqual(rows['CommandLineParser'],
                         ['internal', '{30ADF94B-A4D4-4550-9B84-B9A4F2233A99}'])
        self.assertEqual(list(rows)[0], 'orvMain')

    def test_a_class_shows_its_members_in_their_order(self):
        self.assertEqual(self.lines('commandlineparser'), [
            'CommandLineParser  internal',
            '    ProgID     OrvBase0301.CommandLineParser',
            '    class      {30ADF94B-A4D4-4550-9B84-B9A4F2233A99}',
            '    interface  {D8D95142-B960-43F8-8CB6-10B6B50A4E3B} _CommandLineParser',
            '    1  Property Get Count() As Long',
            '    2  Property Get Item(Index As Long) As String',
            '    3  Sub SetNewCommandLine(NewCommandLine As String,'
            ' [AddDummyEXEModuleName As Boolean = True])',
        ])

    def test_types_defaults_and_help_strings_are_shown(self):
        text = '\n'.join(self.lines('orvMain'))
        self.assertIn('Function LoadPictureEx([FileName As String],'
                      ' [ByRef PictureInfo As PictureInfo]) As ', text)
        self.assertIn('Расширенная версия. Грузит картинку и даёт сведения о ней.', text)
        self.assertIn('[PictureToolTipText As String = "Иллис"]', text)
        self.assertIn('Flags As AddAutoCompleteFlags = 0', text)
        self.assertIn('Function ArrayLong(', text)

    def test_an_unknown_class_is_bad_usage(self):
        status, output, errors = self.run_tool('describe', 'orvNothing')
        self.assertEqual((status, output), (2, ''))
        self.assertIn('orvNothing', errors)
        self.assertEqual(self.run_tool('describe', 'orvMain', 'x')[0], 2)
