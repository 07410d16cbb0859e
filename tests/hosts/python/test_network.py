"""The text work around HTTP, checked by what others make of it: a multipart parser and a server."""

import email
import email.policy
import http.server
import json
import socket
import threading
import unittest

from support import orvane, raised_by

ALL_BYTES = bytes(range(256))


class Application:
    """A host's application object."""

    Title = "Ёж"
    Major = 1
    Minor = "2"
    Revision = 3


def parts_of(header, body):
    """The parts of a form as a multipart parser sees them."""
    message = email.message_from_bytes(header.encode() + b"\r\n" + body, policy=email.policy.HTTP)
    assert message.is_multipart() and not message.defects, message.defects
    return message.get_payload()


def fields_of(parts):
    return [(part.get_param("name", header="content-disposition"), part.get_payload(decode=True))
            for part in parts]


class FormHandler(http.server.BaseHTTPRequestHandler):
    """Answers a posted form with what it holds, and the request's own headers."""

    def do_POST(self):
        body = self.rfile.read(int(self.headers["Content-Length"]))
        parts = parts_of("Content-Type: %s\r\n" % self.headers["Content-Type"], body)
        answer = json.dumps({"headers": self.headers.items(),
                             "fields": [(name, orvane.to_byte_string(data))
                                        for name, data in fields_of(parts)]}).encode()
        self.send_response(200)
        self.send_header("Content-Length", str(len(answer)))
        self.end_headers()
        self.wfile.write(answer)

    def log_message(self, *_):
        pass


class FormServer:
    """A server on the loopback for the length of a `with`."""

    def __enter__(self):
        self.server = http.server.HTTPServer(("127.0.0.1", 0), FormHandler)
        self.thread = threading.Thread(target=self.server.serve_forever, args=(0.01,))
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.server.shutdown()
        self.thread.join()
        self.server.server_close()

    def post(self, headers, body):
        """Sends header lines and a body as they stand; gives what the server tells of them."""
        with socket.create_connection(self.server.server_address, timeout=30) as connection:
            head = "POST /form HTTP/1.0\r\n%sContent-Length: %d\r\n\r\n" % (headers, len(body))
            connection.sendall(head.encode("latin-1") + body)
            answer = connection.makefile("rb").read()
        status, _, rest = answer.partition(b"\r\n")
        assert b" 200 " in status, status
        return json.loads(rest.partition(b"\r\n\r\n")[2])


class Addresses(unittest.TestCase):
    def setUp(self):
        self.request = orvane.create("orvHTTPRequest")

    def test_a_url_is_taken_apart(self):
        outputs = [orvane.Ref(""), orvane.Ref(""), orvane.Ref(0), orvane.Ref("")]
        self.assertIs(self.request.CrackURL("http://host:8080/a?b", *outputs), True)
        self.assertEqual([output.value for output in outputs], ["http://", "host", 8080, "/a?b"])

    def test_outputs_are_left_out_or_named(self):
        port = orvane.Ref(0)
        self.assertTrue(self.request.CrackURL("http://host"))
        self.assertTrue(self.request.CrackURL("http://host:81/", Port=port))
        self.assertEqual(port.value, 81)
        self.assertFalse(self.request.CrackURL("host"))

    def test_a_refused_port_leaves_what_was_known(self):
        outputs = [orvane.Ref(""), orvane.Ref(""), orvane.Ref(7), orvane.Ref("")]
        self.assertIs(self.request.CrackURL("http://host:x/", *outputs), False)
        self.assertEqual([output.value for output in outputs], ["http://", "host", 7, "/"])


class Requests(unittest.TestCase):
    def setUp(self):
        self.request = orvane.create("orvHTTPRequest")

    def test_cookies_go_from_one_exchange_to_the_next(self):
        self.request.CookiesIn = self.request.GetFormattedCookies(
            "a = 1; path=/; HttpOnly\r\nb=2; Expires=Wed\r\n")
        self.assertEqual(self.request.CookiesIn, "a=1; b=2; ")

    def test_the_user_agent_is_in_latin_letters(self):
        self.assertRegex(self.request.BuildUserAgent(Application()),
                         r"^JOj 1\.02\.0003 \([^()]+\)$")
        self.assertEqual(raised_by(self.request.BuildUserAgent, None), 91)
        self.assertEqual(raised_by(self.request.BuildUserAgent, object()), 438)

    def test_the_buffer_has_a_size(self):
        self.assertEqual(self.request.BufferSize, 1024)
        self.request.BufferSize = 1
        self.assertEqual(raised_by(setattr, self.request, "BufferSize", 0), 5)
        self.assertEqual(self.request.BufferSize, 1)

    def test_the_proxy_is_an_object_of_its_own(self):
        self.assertIs(self.request.ProxySettings, orvane.Nothing)
        proxy = orvane.create("ProxySettings")
        proxy.HTTP_Address = "proxy:3128"
        self.request.ProxySettings = proxy
        self.assertEqual(self.request.ProxySettings.HTTP_Address, "proxy:3128")
        self.request.ProxySettings = None
        self.assertIs(self.request.ProxySettings, orvane.Nothing)

    def test_a_new_request_has_no_result(self):
        self.assertEqual((self.request.LastRC, self.request.ResponseCode, self.request.ErrorCode),
                         (orvane.htprExecuteError.htprSuccess, 0, 0))
        self.assertTrue(self.request.IsError)
        self.assertEqual(raised_by(self.request.Execute, "host"), 445)


class ProxySettings(unittest.TestCase):
    def test_an_unknown_access_type_is_the_systems_own(self):
        proxy = orvane.create("ProxySettings")
        proxy.HTTP_AccessType = orvane.psAccessType.psatProxy
        self.assertEqual(proxy.HTTP_AccessType, 3)
        proxy.HTTP_AccessType = 2
        self.assertEqual(proxy.HTTP_AccessType, orvane.psAccessType.psatPreconfigByIE)

    def test_settings_come_back_from_the_application_s_key(self):
        proxy = orvane.create("ProxySettings")
        proxy.HTTP_AccessType = orvane.psAccessType.psatProxy
        proxy.HTTP_Address = "proxy:3128"
        proxy.HTTP_Password = "secret"
        try:
            self.assertIs(proxy.HTTP_SaveProxySettings2(AppObject=Application()), True)
            other = orvane.create("ProxySettings")
            self.assertIs(other.HTTP_LoadProxySettings2(AppObject=Application()), True)
            self.assertEqual((other.HTTP_AccessType, other.HTTP_Address, other.HTTP_Password),
                             (3, "proxy:3128", "secret"))
            self.assertIs(other.HTTP_LoadProxySettings2("Other", Application()), False)
            self.assertEqual((other.HTTP_AccessType, other.HTTP_Address, other.HTTP_Password),
                             (0, "", ""))
        finally:
            orvane.create("orvRegistry").DeleteKeyRecurse(
                orvane.RegistryRoot_Const.HKEY_CURRENT_USER,
                "Software\\Tarn Hollow\\Orvane\\" + Application.Title)
        self.assertEqual(raised_by(proxy.HTTP_SaveProxySettings2), 91)


class Forms(unittest.TestCase):
    def builder(self):
        """A form with an element of each kind."""
        builder = orvane.create("HTTPFormBuilder")
        builder.AddTextElement("text", "два слова\r\nи строка")
        builder.AddBinaryElement("file", "all.bin", "application/octet-stream",
                                 orvane.to_byte_string(ALL_BYTES))
        builder.AddElement("encoded", "ZGF0YQ==", orvane.htfbTransferEncoding.htfbBase64,
                           "text/plain", "us-ascii", "data.txt")
        return builder

    FIELDS = [("text", "два слова\r\nи строка".encode("cp1251")), ("file", ALL_BYTES),
              ("encoded", b"data")]

    def test_a_parser_finds_every_element(self):
        builder = self.builder()
        parts = parts_of(builder.Header, orvane.from_byte_string(builder.FormData))
        self.assertEqual(fields_of(parts), self.FIELDS)
        text, file, encoded = parts
        self.assertEqual(text.keys(), ["Content-Disposition"])
        self.assertIsNone(text.get_filename())
        self.assertEqual(file.get_filename(), "all.bin")
        self.assertEqual(file.get_content_type(), "application/octet-stream")
        self.assertEqual(file["Content-Transfer-Encoding"], "binary")
        self.assertEqual(encoded.get_content_charset(), "us-ascii")

    def test_a_parser_finds_the_pairs_of_an_array(self):
        request = orvane.create("orvHTTPRequest")
        headers = orvane.Ref("X: y")
        body = request.BuildForm(headers, ["a", 1, "b", "два", "empty", ""])
        self.assertEqual(fields_of(parts_of(headers.value, orvane.from_byte_string(body))),
                         [("a", b"1"), ("b", "два".encode("cp1251")), ("empty", b"")])

    def test_a_server_gets_what_was_built(self):
        builder = self.builder()
        headers = orvane.create("orvHTTPRequest").DefaultHTTPHeaders + builder.Header
        with FormServer() as server:
            seen = server.post(headers, orvane.from_byte_string(builder.FormData))
        self.assertEqual([(name, orvane.from_byte_string(data)) for name, data in seen["fields"]],
                         self.FIELDS)
        self.assertEqual(seen["headers"][:2],
                         [["Accept", "*/*"], ["X-Devote-To", "Illis ^_^!"]])

    def test_a_server_gets_the_pairs_of_an_array(self):
        request = orvane.create("orvHTTPRequest")
        headers = orvane.Ref("Cookie: " + request.GetFormattedCookies("a=1; path=/"))
        body = request.BuildForm(headers, ["name", "value"])
        with FormServer() as server:
            seen = server.post(headers.value, orvane.from_byte_string(body))
        self.assertEqual(seen["fields"], [["name", "value"]])
        self.assertEqual(seen["headers"][0], ["Cookie", "a=1; "])

    def test_arrays_that_hold_no_pairs_leave_the_headers(self):
        request = orvane.create("orvHTTPRequest")
        for pairs in [["a", "1", "b"], [], orvane.array("Variant", ["a", "1"], lower=-2)]:
            headers = orvane.Ref("X: y")
            self.assertEqual(request.BuildForm(headers, pairs), "")
            self.assertEqual(headers.value, "X: y")
        self.assertEqual(raised_by(request.BuildForm, orvane.Ref(""), ["a", orvane.Null]), 94)


if __name__ == "__main__":
    unittest.main()
