"""The library for programs: a consumer outside the tree, built by each way that is offered, natively and for Windows, and
run. tests/support/library_consumer is its source."""

import hashlib
import http.server
import json
import os
import re
import shlex
import shutil
import tarfile
import tempfile
import threading
import unittest
import zlib
from pathlib import Path

from release import FOLDER, SOURCES, TREE, VERSION, Windows, must, run

SOURCE = TREE / "tests/support/library_consumer"
MACHINE = must("dpkg", "--print-architecture").strip()
NATIVE = FOLDER / f"quorvane-devel-{VERSION}-linux-{MACHINE}.tar.gz"
MINGW = FOLDER / f"quorvane-devel-{VERSION}-windows-i686.tar.gz"
CROSS = ["-DCMAKE_SYSTEM_NAME=Windows", "-DCMAKE_CXX_COMPILER=i686-w64-mingw32-g++-win32",
         "-DCMAKE_C_COMPILER=i686-w64-mingw32-gcc-win32", "-DCMAKE_RC_COMPILER=i686-w64-mingw32-windres",
         "-DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=ONLY", "-DCMAKE_FIND_ROOT_PATH_MODE_PROGRAM=NEVER"]
# The library is compiled anew for some of the ways: quickly.
QUICK = ["-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0",
         "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"]


class Echo(http.server.BaseHTTPRequestHandler):
    def do_POST(self):
        body = self.rfile.read(int(self.headers["Content-Length"]))
        self.send_response(200)
        self.end_headers()
        self.wfile.write(b"got " + body)

    def log_message(self, *_):
        pass


class Library(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory(prefix="quorvane consumer ")
        cls.folder = Path(cls.scratch.name)
        cls.server = http.server.HTTPServer(("127.0.0.1", 0), Echo)
        threading.Thread(target=cls.server.serve_forever, daemon=True).start()
        cls.windows = Windows(cls.folder / "prefix")
        for archive, name in ((NATIVE, "native"), (MINGW, "mingw")):
            with tarfile.open(archive) as opened:
                opened.extractall(cls.folder / name)
        cls.native, cls.mingw = (cls.folder / name / f"quorvane-devel-{VERSION}" for name in ("native", "mingw"))
        os.environ["CCACHE_BASEDIR"] = str(cls.folder)

    @classmethod
    def tearDownClass(cls):
        cls.server.shutdown()
        cls.windows.end()
        cls.scratch.cleanup()

    def assert_works(self, program):
        words = (program, program, self.server.server_port)
        shown = self.windows.must(*words) if program.suffix == ".exe" else must(*words)
        value = zlib.crc32(program.read_bytes())
        self.assertEqual(shown.splitlines(), [
            f"crc={value - (value >> 31 << 32)}",
            "calls=list number open length read close ",
            "error=53 File not found",
            "reply=got name=J.+Doe&note=100%25+sure",
            "done"])

    def build(self, name, *options):
        """The consumer, by CMake; what its own files were compiled with must be nothing of the house's."""
        # Side by side in the same manner for each way, so that the compiler's cache knows the sources again.
        folder = self.folder / name / "build"
        shown = must("cmake", "-S", SOURCE, "-B", folder, *QUICK, *options)
        shown += must("cmake", "--build", folder, "-j", os.cpu_count())
        self.assertNotIn("warning", shown)
        (command,) = [entry["command"] for entry in json.loads((folder / "compile_commands.json").read_text())
                      if entry["file"].endswith("consumer.cpp")]
        self.assertRegex(command, r"-std=(c|gnu)\+\+20")
        self.assertEqual(re.findall(r" -(?:W|f|m|D|static)\S*", command), [])
        (program,) = (path for path in folder.glob("consumer*") if path.suffix in ("", ".exe"))
        return program

    def unpacked_sources(self, name):
        with tarfile.open(SOURCES) as opened:
            opened.extractall(self.folder / name / "deps")
        (self.folder / name / "deps" / f"quorvane-{VERSION}").rename(self.folder / name / "deps/quorvane-src")
        return self.folder / name / "deps/quorvane-src"

    def fetched(self, name):
        return ["-DWAY=fetched", f"-DQUORVANE_ARCHIVE={SOURCES}",
                f"-DQUORVANE_ARCHIVE_SUM={hashlib.sha256(SOURCES.read_bytes()).hexdigest()}",
                f"-DFETCHCONTENT_BASE_DIR={self.folder / name / 'deps'}"]

    def by_pkg_config(self, prefix, compiler, output, *options):
        variable = "PKG_CONFIG_LIBDIR" if compiler.startswith("i686") else "PKG_CONFIG_PATH"
        environment = os.environ | {variable: str(prefix / "lib/pkgconfig")}
        must("pkg-config", "--atleast-version=3.9", "quorvane-security", env=environment)
        words = shlex.split(must("pkg-config", "--cflags", "--libs", "quorvane-security", env=environment))
        must(compiler, *options, SOURCE / "consumer.cpp", "-o", output, *words)
        return output

    def test_find_package_natively(self):
        self.assert_works(self.build("a", "-DWAY=package", f"-DCMAKE_PREFIX_PATH={self.native}"))

    def test_find_package_for_windows(self):
        self.assert_works(self.build("b", "-DWAY=package", *CROSS,
                                     f"-DCMAKE_FIND_ROOT_PATH=/usr/i686-w64-mingw32;{self.mingw}"))

    def test_pkg_config_natively(self):
        self.assert_works(self.by_pkg_config(self.native, "g++", self.folder / "consumer-pc"))

    def test_pkg_config_for_windows_with_and_without_type_information(self):
        for name, options in (("consumer-pc.exe", ["-static"]), ("consumer-nr.exe", ["-static", "-fno-rtti", "-O2"])):
            self.assert_works(self.by_pkg_config(self.mingw, "i686-w64-mingw32-g++-win32", self.folder / name, *options))

    def test_installed_by_the_presets(self):
        installed = TREE / "build/installed"
        shutil.rmtree(installed, ignore_errors=True)
        environment = os.environ | {"CCACHE_BASEDIR": str(TREE)}
        must("cmake", "--preset", "release", cwd=TREE, env=environment)
        must("cmake", "--build", "--preset", "install", cwd=TREE, env=environment)
        self.assertEqual(must(installed / "bin/quorvane", "--version"), must(TREE / "build/native/quorvane", "--version"))
        self.assert_works(self.by_pkg_config(installed, "g++", self.folder / "consumer-preset"))

    def test_as_a_part_of_a_project_natively(self):
        sources = self.unpacked_sources("c")
        self.assert_works(self.build("c", "-DWAY=part", f"-DQUORVANE_SOURCE={sources}"))

    def test_as_a_part_of_a_project_for_windows(self):
        sources = self.unpacked_sources("d")
        self.assert_works(self.build("d", "-DWAY=part", f"-DQUORVANE_SOURCE={sources}", *CROSS))

    def test_fetched_natively(self):
        self.assert_works(self.build("e", *self.fetched("e")))

    def test_fetched_for_windows(self):
        self.assert_works(self.build("f", *self.fetched("f"), *CROSS))

    def test_another_version_is_refused(self):
        project = self.folder / "refused"
        project.mkdir()
        (project / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.25)\nproject(p CXX)\nfind_package(QuorvaneSecurity ${WANTED} REQUIRED)\n")
        for wanted, is_found in (("3.9", True), ("3.0", True), ("3.99", False), ("2.0", False), ("4.0", False)):
            done = run("cmake", "-S", project, "-B", project / wanted, f"-DWANTED={wanted}",
                       f"-DCMAKE_PREFIX_PATH={self.native}")
            self.assertEqual(done.returncode == 0, is_found, wanted + done.stderr)

    def test_an_unknown_room_is_refused(self):
        project = self.folder / "unknown"
        project.mkdir()
        (project / "CMakeLists.txt").write_text("cmake_minimum_required(VERSION 3.25)\nproject(p CXX)\n"
                                                "find_package(QuorvaneSecurity REQUIRED COMPONENTS cellar)\n")
        self.assertNotEqual(run("cmake", "-S", project, "-B", project, f"-DCMAKE_PREFIX_PATH={self.native}").returncode, 0)

    def test_each_header_stands_alone(self):
        include = self.native / "include/quorvane"
        headers = sorted(path.relative_to(include).as_posix() for path in include.rglob("*.h"))
        self.assertGreater(len(headers), 40)
        source = self.folder / "all.cpp"
        source.write_text("".join(f'#include "{name}"\n' for name in headers))
        must("g++", "-std=c++20", "-fsyntax-only", "-I", include, source)

    def test_holds_the_interface_of_the_control_and_the_reference(self):
        for prefix in (self.native, self.mingw):
            self.assertTrue((prefix / "share/quorvane/QuorvaneSecurity.tlb").read_bytes().startswith(b"MSFT"))
            self.assertIn("interface _SecurityCtrl", (prefix / "share/quorvane/QuorvaneSecurity.idl").read_text())
            self.assertTrue((prefix / "share/doc/quorvane-dev/reference/index.html").exists())


if __name__ == "__main__":
    unittest.main()
