"""scripts/sign, with certificates made here."""

import os
import shutil
import tempfile
import threading
import unittest
import zlib
from http.server import BaseHTTPRequestHandler, HTTPServer
from pathlib import Path

from release import FOLDER, INSTALLER, MODULE, TREE, must, published_crc, run

SIGN = TREE / "scripts/sign"


def make_certificate(folder, name, usage, days="30"):
    key, certificate, both = (folder / f"{name}.{end}" for end in ("key", "pem", "p12"))
    must("openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", key, "-out", certificate, "-days", days,
         "-subj", f"/CN={name}", "-addext", f"extendedKeyUsage={usage}", "-addext", "keyUsage=digitalSignature")
    must("openssl", "pkcs12", "-export", "-inkey", key, "-in", certificate, "-out", both, "-passout",
         f"file:{folder}/pass")
    return both


class TimeStampServer:
    """A time-stamp authority (RFC 3161) on loopback, with a certificate of its own; openssl gives its answers."""

    def __init__(self, folder):
        self.folder = folder
        extension = "extendedKeyUsage=critical,timeStamping"
        must("openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", folder / "clock.key", "-out",
             folder / "clock.pem", "-days", "30", "-subj", "/CN=clock", "-addext", extension)
        (folder / "clock.serial").write_text("01\n")
        (folder / "clock.cnf").write_text(
            f"[tsa]\ndefault_tsa = clock\n[clock]\nserial = {folder}/clock.serial\nsigner_digest = sha256\n"
            "default_policy = 1.2.3.4\ndigests = sha256\n")
        answer = self.answer

        class Handler(BaseHTTPRequestHandler):
            def do_POST(self):
                reply = answer(self.rfile.read(int(self.headers["Content-Length"])))
                self.send_response(200)
                self.send_header("Content-Type", "application/timestamp-reply")
                self.send_header("Content-Length", str(len(reply)))
                self.end_headers()
                self.wfile.write(reply)

            def log_message(self, *_):
                pass

        self.server = HTTPServer(("127.0.0.1", 0), Handler)
        self.address = f"http://127.0.0.1:{self.server.server_port}/"
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def answer(self, question):
        query, reply = self.folder / "clock.query", self.folder / "clock.reply"
        query.write_bytes(question)
        must("openssl", "ts", "-reply", "-config", self.folder / "clock.cnf", "-queryfile", query, "-signer",
             self.folder / "clock.pem", "-inkey", self.folder / "clock.key", "-out", reply)
        return reply.read_bytes()

    def stop(self):
        self.server.shutdown()
        self.server.server_close()


class Sign(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.folder = Path(cls.scratch.name)
        (cls.folder / "pass").write_text("tea & biscuits\n")
        cls.good = make_certificate(cls.folder, "publisher", "codeSigning")
        cls.release = cls.folder / "Freigabe für alle"
        cls.release.mkdir()
        for path in (MODULE, INSTALLER):
            shutil.copy(path, cls.release)
        must(SIGN, "--pkcs12", cls.good, "--pass-file", cls.folder / "pass", "--time", "1700000000", cls.release)
        cls.signed = cls.release / "signed"

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def assert_refused(self, words, *arguments):
        other = self.folder / "other"
        shutil.rmtree(other, ignore_errors=True)
        other.mkdir()
        for path in (MODULE, INSTALLER):
            shutil.copy(path, other)
        done = run(SIGN, *arguments, other)
        self.assertEqual(done.returncode, 1)
        self.assertIn(words, done.stderr)
        self.assertEqual({path.name for path in other.iterdir()}, {MODULE.name, INSTALLER.name})

    def test_module_and_installer_verify_under_the_publisher_s_certificate(self):
        for path in (MODULE, INSTALLER):
            done = run("osslsigncode", "verify", "-CAfile", self.folder / "publisher.pem", "-in", self.signed / path.name)
            self.assertIn("Signature verification: ok", done.stdout + done.stderr)

    def test_both_numbers_are_published(self):
        value = zlib.crc32((self.signed / MODULE.name).read_bytes())
        self.assertEqual(published_crc(self.signed), published_crc() + [value - (value >> 31 << 32)])

    def test_the_signature_on_a_rebuilt_file_gives_the_signed_one(self):
        for path in (MODULE, INSTALLER):
            out = self.folder / ("attached-" + path.name)
            must(SIGN, "--attach", self.signed / (path.name + ".signature"), path, out)
            self.assertEqual(out.read_bytes(), (self.signed / path.name).read_bytes())

    def test_the_same_time_gives_the_same_signature(self):
        before = {path.name: path.read_bytes() for path in self.signed.iterdir()}
        must(SIGN, "--pkcs12", self.good, "--pass-file", self.folder / "pass", "--time", "1700000000", self.release)
        self.assertEqual({path.name: path.read_bytes() for path in self.signed.iterdir()}, before)

    def test_a_time_stamp_server_s_word_goes_into_the_signature(self):
        stamped = self.folder / "stamped"
        stamped.mkdir()
        for path in (MODULE, INSTALLER):
            shutil.copy(path, stamped)
        server = TimeStampServer(self.folder)
        try:
            must(SIGN, "--pkcs12", self.good, "--pass-file", self.folder / "pass", "--timestamp", server.address, stamped)
        finally:
            server.stop()
        for path in (MODULE, INSTALLER):
            done = run("osslsigncode", "verify", "-CAfile", self.folder / "publisher.pem", "-TSA-CAfile",
                       self.folder / "clock.pem", "-in", stamped / "signed" / path.name)
            self.assertIn("Timestamp Server Signature verification: ok", done.stdout + done.stderr)
            self.assertIn("Signature verification: ok", done.stdout + done.stderr)

    def test_without_the_time_stamp_asked_for_nothing_is_signed(self):
        self.assert_refused("cannot sign QuorvaneSecurity.ocx", "--pkcs12", self.good, "--pass-file", self.folder / "pass",
                            "--timestamp", "http://127.0.0.1:9/")

    def test_an_altered_module_takes_no_signature(self):
        altered = bytearray(MODULE.read_bytes())
        altered[5000] ^= 1
        (self.folder / "altered.ocx").write_bytes(altered)
        done = run(SIGN, "--attach", self.signed / "QuorvaneSecurity.ocx.signature", self.folder / "altered.ocx",
                   self.folder / "none.ocx")
        self.assertEqual(done.returncode, 1)
        self.assertIn("does not fit", done.stderr)
        self.assertFalse((self.folder / "none.ocx").exists())

    def test_a_wrong_password_is_refused(self):
        (self.folder / "wrong").write_text("coffee\n")
        self.assert_refused("wrong password", "--pkcs12", self.good, "--pass-file", self.folder / "wrong")

    def test_a_certificate_for_something_else_is_refused(self):
        server = make_certificate(self.folder, "server", "serverAuth")
        self.assert_refused("not made for signing code", "--pkcs12", server, "--pass-file", self.folder / "pass")

    def test_an_expired_certificate_is_refused(self):
        old = must("faketime", "2020-01-01", "openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout",
                   self.folder / "old.key", "-out", self.folder / "old.pem", "-days", "1", "-subj", "/CN=old",
                   "-addext", "extendedKeyUsage=codeSigning")
        self.assertEqual(old, "")
        self.assert_refused("expired", "--key", self.folder / "old.key", "--certificate", self.folder / "old.pem")

    def test_a_key_of_another_certificate_is_refused(self):
        make_certificate(self.folder, "second", "codeSigning")
        self.assert_refused("cannot sign", "--key", self.folder / "second.key", "--certificate",
                            self.folder / "publisher.pem")

    def test_signs_with_a_key_in_a_token(self):
        tokens = self.folder / "tokens"
        tokens.mkdir()
        (self.folder / "softhsm.conf").write_text(f"directories.tokendir = {tokens}\n")
        (self.folder / "pin").write_text("1234\n")
        environment = os.environ | {"SOFTHSM2_CONF": str(self.folder / "softhsm.conf")}
        must("softhsm2-util", "--init-token", "--free", "--label", "quorvane", "--pin", "1234", "--so-pin", "5678",
             env=environment)
        must("openssl", "pkcs8", "-topk8", "-nocrypt", "-in", self.folder / "publisher.key", "-out",
             self.folder / "publisher.pk8")
        must("softhsm2-util", "--import", self.folder / "publisher.pk8", "--token", "quorvane", "--label", "signer",
             "--id", "01", "--pin", "1234", env=environment)
        release = self.folder / "by token"
        release.mkdir()
        for path in (MODULE, INSTALLER):
            shutil.copy(path, release)
        must(SIGN, "--key", "pkcs11:token=quorvane;object=signer", "--certificate", self.folder / "publisher.pem",
             "--pkcs11-module", "/usr/lib/softhsm/libsofthsm2.so", "--pass-file", self.folder / "pin", "--time",
             "1700000000", release, env=environment)
        self.assertEqual((release / "signed" / MODULE.name).read_bytes(), (self.signed / MODULE.name).read_bytes())

    def test_a_folder_that_is_no_release_is_refused(self):
        done = run(SIGN, "--pkcs12", self.good, "--pass-file", self.folder / "pass", self.folder)
        self.assertEqual(done.returncode, 1)
        self.assertIn("is no release", done.stderr)


if __name__ == "__main__":
    unittest.main()
