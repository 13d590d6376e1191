// A program of somebody else's that stands on the installed library: built by each way that the
// library is offered in, and run natively and in Wine. Usage: consumer FILE PORT. It prints what it
// found, and `done` at the end.

#include <cstdint>
#include <cstdio>
#include <string>

#include "checksum/cBinaryFileStream.h"
#include "checksum/cCRC32.h"
#include "control/basGlobals.h"
#include "host/basAPI_api.h"
#include "runtime/runtime_error.h"
#include "runtime/utf8.h"
#include "text/form_encoding.h"
#include "web/form_post.h"

#if __cplusplus < 202002L
#error "C++20 does not come along with the library"
#endif

namespace {

int failures = 0;

void Expect(bool is_so, const char* what) {
  if (is_so) return;
  std::printf("NOT SO: %s\n", what);
  ++failures;
}

// Called from inside the library, through the virtual table of its header.
class CountingStream : public quorvane::cBinaryFileStream {
 public:
  int blocks = 0;
  bool is_aligned = true;

  std::int32_t Read(quorvane::ByteArray& buffer, std::int32_t size) override {
    // This compiler counts on the stack that the platform's calling convention promises.
    alignas(16) volatile char local[16] = {};
    if (reinterpret_cast<std::uintptr_t>(&local) % 16 != 0) is_aligned = false;
    ++blocks;
    return cBinaryFileStream::Read(buffer, size);
  }
};

// An implementation of the seam, whose virtual table the library calls in the order of its header.
class OneFile final : public quorvane::Files {
 public:
  std::string calls;

  quorvane::Text ListName(const quorvane::Text& name) override {
    calls += "list ";
    return name;
  }
  std::int16_t FreeFileNumber() override {
    calls += "number ";
    return 7;
  }
  void OpenForReading(const quorvane::Text&, std::int16_t) override { calls += "open "; }
  std::int32_t Length(std::int16_t) override {
    calls += "length ";
    return 9;
  }
  void Read(std::int16_t, quorvane::ByteArray& buffer) override {
    calls += "read ";
    const char* const digits = "123456789";
    for (std::int32_t i = 0; i < 9; ++i) buffer.At(i) = static_cast<std::uint8_t>(digits[i]);
  }
  void Close(std::int16_t) override { calls += "close "; }
};

void UseChecksum(const char* file) {
  CountingStream stream;
  stream.PutFile(quorvane::FromUtf8(file));
  std::printf("crc=%ld\n", static_cast<long>(quorvane::cCRC32().GetFileCrc32(stream)));
  Expect(stream.blocks > 1, "the library reads through the derived class");
  Expect(stream.is_aligned, "the stack is aligned where the library calls back");

  OneFile files;
  quorvane::cBinaryFileStream over_own_files(files);
  over_own_files.PutFile(u"any");
  Expect(quorvane::cCRC32().GetFileCrc32(over_own_files) == -873187034,
         "the check value of CRC-32");
  Expect(files.calls == "list number open length read close ",
         "the calls of the seam, in their order");
  std::printf("calls=%s\n", files.calls.c_str());
}

void CatchError() {
  quorvane::cBinaryFileStream stream;
  try {
    stream.PutFile(u"no-such-file.bin");
    Expect(false, "a missing file raises an error");
  } catch (const quorvane::RuntimeError& error) {
    std::printf("error=%ld %s\n", static_cast<long>(error.number),
                quorvane::ToUtf8(error.description).c_str());
  }
}

void Post(int port) {
  const quorvane::Text body = quorvane::FormEncode(u"name=J. Doe&note=100% sure");
  const quorvane::Text reply =
      quorvane::PostFormRequest(u"127.0.0.1", u"/form", body, static_cast<std::int16_t>(port));
  std::printf("reply=%s\n", quorvane::ToUtf8(reply).c_str());
  // What only a build with loose warnings takes.
  int narrowed = 3.7;
  (void)(short)narrowed;
}

}  // namespace

int main(int count, char** words) {
  if (count != 3) return 2;
  UseChecksum(words[1]);
  CatchError();
  Post(std::stoi(words[2]));
#ifdef __cpp_rtti
  CountingStream stream;
  quorvane::cBinaryFileStream& base = stream;
  Expect(dynamic_cast<CountingStream*>(&base) == &stream, "the class has its type information");
#endif
  std::puts(failures == 0 ? "done" : "FAILED");
  return failures == 0 ? 0 : 1;
}
