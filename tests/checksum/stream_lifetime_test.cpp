// Proves that a stream may live as long as the whole program, with a file left open in it: the
// thread that opened it is taken down before. What is wrong there shows under the sanitizers.

#include <gtest/gtest.h>

#include "checksum/cBinaryFileStream.h"
#include "platform/app.h"
#include "platform/files.h"

namespace quorvane {
namespace {

cBinaryFileStream lasting_stream;  // NOLINT(cert-err58-cpp): the subject of this test

TEST(StreamLifetime, AStreamOfTheWholeProgramIsEndedWithIt) {
  Text name = app().Path() + u"\\" + app().EXEName();
  if (files().ListName(name).IsEmpty()) name = name + u".exe";
  lasting_stream.PutFile(name);
  EXPECT_GT(lasting_stream.Length(), 0);
}

}  // namespace
}  // namespace quorvane
