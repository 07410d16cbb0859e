"""orvane args: the real command line, as the library takes it apart."""

import json

import tool_case
from tool_case import ToolCase, natively


class Args(ToolCase):
    def items(self, *words):
        """The parameters that the library saw, with the command's own name in front."""
        status, output, errors = self.run_tool('args', *words)
        self.assertEqual((status, errors), (0, ''))
        count, program, *items = output.splitlines()
        self.assertEqual(count, f'count  {len(items)}')
        self.assertEqual(program[:4], '-1  ')
        self.assertRegex(json.loads(program[4:]), 'orvane(.exe)?$')
        for index, item in enumerate(items):
            self.assertTrue(item.startswith(f'{index}  "'), item)
        return [json.loads(item.split('  ', 1)[1]) for item in items]

    def test_words_keep_their_order(self):
        self.assertEqual(self.items('one', 'two', '-x'), ['args', 'one', 'two', '-x'])

    def test_without_words_the_commands_own_name_is_left(self):
        self.assertEqual(self.items(), ['args'])

    def test_a_word_with_blanks_is_one_parameter(self):
        self.assertEqual(self.items('two  three', ' x '), ['args', 'two  three', ' x '])

    def test_an_empty_word_is_a_parameter(self):
        self.assertEqual(self.items('', 'x', ''), ['args', '', 'x', ''])

    def test_letters_of_the_code_page_arrive(self):
        self.assertEqual(self.items('Привет', 'это  я'), ['args', 'Привет', 'это  я'])

    def test_letters_outside_the_code_page_arrive(self):
        self.assertEqual(self.items('日本', 'z\U0001F600'), ['args', '日本', 'z\U0001F600'])

    def test_options_are_words_here(self):
        self.assertEqual(self.items('--help', '--', '--version'),
                         ['args', '--help', '--', '--version'])

    def test_a_quote_inside_a_word_is_an_ordinary_character(self):
        # Windows programs are given it behind a backslash, which means nothing to the parser.
        expected = 'a\\"b' if tool_case.on_windows else 'a"b'
        self.assertEqual(self.items('a"b', 'c'), ['args', expected, 'c'])

    @natively
    def test_a_quote_in_front_ends_at_the_next_quote(self):
        self.assertEqual(self.items('"a b" c'), ['args', '', 'a', 'b"', 'c"'])

    @natively
    def test_control_characters_stay_inside_their_line(self):
        self.assertEqual(self.items('a\nb', '\tc', 'd\x7f'), ['args', 'a\nb', '\tc', 'd\x7f'])
