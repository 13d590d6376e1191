// Proves what the four profile operations hand to the system, how a read cuts the buffer, and where
// the two writes differ.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "host/basAPI_api.h"
#include "tests/support/call_log.h"
#include "tests/support/call_text.h"
#include "tests/support/code_pages.h"
#include "tests/support/fake_kernel32_base.h"
#include "tests/support/raises.h"

namespace quorvane::basAPI_api {
namespace {

using testing::CallLog;
using testing::CallText;
using testing::ErrorNumberOf;
using testing::Page1252;
using testing::Page932;

// Answers every read with the bytes and the count, every write with the result.
class FakeProfiles final : public testing::FakeKernel32Base {
 public:
  std::int32_t GetProfileStringA(const char* section, const char* key, const char* default_text,
                                 char* buffer, std::int32_t size) override {
    log.push_back(CallText("GetProfileStringA", section, key, default_text,
                           std::string_view(buffer, 256), size));
    return Answer(buffer);
  }
  std::int32_t WriteProfileStringA(const char* section, const char* key,
                                   const char* value) override {
    log.push_back(CallText("WriteProfileStringA", section, key, value));
    return result;
  }
  std::int32_t GetPrivateProfileStringA(const char* section, const char* key,
                                        const char* default_text, char* buffer, std::int32_t size,
                                        const char* file) override {
    log.push_back(CallText("GetPrivateProfileStringA", section, key, default_text,
                           std::string_view(buffer, 256), size, file));
    return Answer(buffer);
  }
  std::int32_t WritePrivateProfileStringA(const char* section, const char* key, const char* value,
                                          const char* file) override {
    log.push_back(CallText("WritePrivateProfileStringA", section, key, value, file));
    return result;
  }

  void Answers(const std::string& value) {
    bytes = value + '\0';
    result = static_cast<std::int32_t>(value.size());
  }

  CallLog log;
  std::string bytes;
  std::int32_t result = 0;

 private:
  std::int32_t Answer(char* buffer) {
    std::memcpy(buffer, bytes.data(), bytes.size());
    return result;
  }
};

class Profile : public ::testing::Test {
 protected:
  // The two reads are one but for the file, so everything holds for both.
  Text ReadBoth(const CodePage& page = Page1252()) {
    const Text system = basAPI_api::ReadProfileValue(section_, key_, os_, page);
    const Text named = basAPI_api::ReadPrivateProfileValue(section_, key_, file_, os_, page);
    EXPECT_EQ(system, named);
    return system;
  }

  FakeProfiles os_;
  Text section_ = u"Section";
  Text key_ = u"Key";
  Text value_ = u"value";
  Text file_ = u"C:\\a.ini";
};

using ReadProfileValue = Profile;
using WriteProfileValue = Profile;
using WritePrivateProfileValue = Profile;

TEST_F(ReadProfileValue, HandsOver256ZerosAndAnEmptyDefault) {
  static_cast<void>(ReadBoth());
  EXPECT_EQ(os_.log, (CallLog{R"(GetProfileStringA("Section", "Key", "", "\x00*256", 256))",
                              R"(GetPrivateProfileStringA("Section", "Key", "", "\x00*256", 256, )"
                              R"("C:\a.ini"))"}));
}

TEST_F(ReadProfileValue, HandsOverNullForAbsentNamesOnly) {
  section_ = Text();
  key_ = u"";
  file_ = Text();
  static_cast<void>(ReadBoth());
  EXPECT_EQ(os_.log[0], R"(GetProfileStringA(null, "", "", "\x00*256", 256))");
  EXPECT_EQ(os_.log[1], R"(GetPrivateProfileStringA(null, "", "", "\x00*256", 256, null))");
}

TEST_F(ReadProfileValue, IsEmptyForACountOfZero) {
  const Text value = ReadBoth();
  EXPECT_EQ(value, Text(u""));
  EXPECT_FALSE(value.IsAbsent());
}

TEST_F(ReadProfileValue, GivesTheValueWithoutZerosOrSpacesBehind) {
  os_.Answers("abc");
  EXPECT_EQ(ReadBoth(), Text(u"abc"));
  os_.Answers(std::string(255, 'v'));
  EXPECT_EQ(ReadBoth(), Text(std::u16string(255, u'v')));
}

TEST_F(ReadProfileValue, KeepsZerosInsideTheCount) {
  os_.bytes = std::string("one\0two\0", 8);
  os_.result = 8;
  EXPECT_EQ(ReadBoth(), Text(std::u16string(u"one\0two\0", 8)));
  os_.result = 9;
  EXPECT_EQ(ReadBoth(), Text(std::u16string(u"one\0two\0\0", 9)));
}

TEST_F(ReadProfileValue, CutsByTheCountAloneWhateverTheBufferHolds) {
  os_.bytes = "abcdef";
  os_.result = 4;
  EXPECT_EQ(ReadBoth(), Text(u"abcd"));
  os_.result = 0;
  EXPECT_EQ(ReadBoth(), Text(u""));
  os_.result = 1000;
  EXPECT_EQ(ReadBoth(), Text(u"abcdef" + std::u16string(250, u'\0'))) << "no more than there is";
}

TEST_F(ReadProfileValue, CountsBytesUnderAMultiByteCodePage) {
  std::string value;
  for (int i = 0; i < 10; ++i) value += "\x83\x56";
  os_.Answers(value);
  EXPECT_EQ(ReadBoth(Page932()), Text(std::u16string(10, u'\u30B7') + std::u16string(10, u'\0')));
}

TEST_F(ReadProfileValue, FillsTheBufferWithSpacesUnderAMultiByteCodePage) {
  std::string value;
  for (int i = 0; i < 127; ++i) value += "\x83\x56";
  os_.Answers(value);
  // 254 value bytes and 2 zeros make 129 characters; 254 of the 256 places are in the count.
  EXPECT_EQ(ReadBoth(Page932()), Text(std::u16string(127, u'\u30B7') + std::u16string(2, u'\0') +
                                      std::u16string(125, u' ')));
}

TEST_F(ReadProfileValue, RaisesOverflowForACountBeyondSixteenBits) {
  for (const std::int32_t count : {32768, 65536, -32769}) {
    os_.result = count;
    EXPECT_EQ(ErrorNumberOf([&] {
                static_cast<void>(basAPI_api::ReadProfileValue(section_, key_, os_, Page1252()));
              }),
              6);
    EXPECT_EQ(ErrorNumberOf([&] {
                static_cast<void>(
                    basAPI_api::ReadPrivateProfileValue(section_, key_, file_, os_, Page1252()));
              }),
              6);
  }
}

TEST_F(ReadProfileValue, RaisesInvalidProcedureCallForANegativeCount) {
  os_.result = -1;
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(ReadBoth()); }), 5);
}

TEST_F(ReadProfileValue, HandsBackWhatTheCodePageCannotHold) {
  section_ = u"\u30B7s";
  key_ = u"k\u30B7";
  file_ = u"\u0416.ini";
  static_cast<void>(ReadBoth());
  EXPECT_EQ(section_, Text(u"?s"));
  EXPECT_EQ(key_, Text(u"k?"));
  EXPECT_EQ(file_, Text(u"?.ini"));
}

TEST_F(WriteProfileValue, HandsOverItsTextsAndHandsThemBack) {
  value_ = u"v\u30B7";
  os_.result = 1;
  EXPECT_EQ(basAPI_api::WriteProfileValue(section_, key_, value_, os_, Page1252()), kTrue);
  EXPECT_EQ(os_.log, CallLog{R"(WriteProfileStringA("Section", "Key", "v?"))"});
  EXPECT_EQ(value_, Text(u"v?"));
  value_ = Text();
  EXPECT_EQ(basAPI_api::WriteProfileValue(section_, key_, value_, os_, Page1252()), kTrue);
  EXPECT_EQ(os_.log.back(), R"(WriteProfileStringA("Section", "Key", null))");
}

TEST_F(WriteProfileValue, LooksAtTheLowSixteenBitsOnly) {
  const auto write = [&](std::int32_t result) {
    os_.result = result;
    return basAPI_api::WriteProfileValue(section_, key_, value_, os_, Page1252());
  };
  EXPECT_EQ(write(1), kTrue);
  EXPECT_EQ(write(0), kFalse);
  EXPECT_EQ(write(2), kTrue);
  EXPECT_EQ(write(0x10000), kFalse);
  EXPECT_EQ(write(0x18000), kTrue);
  EXPECT_EQ(write(-1), kTrue);
}

TEST_F(WritePrivateProfileValue, HandsOverItsTextsAndHandsThemBack) {
  value_ = u"v\u30B7";
  file_ = u"C:\\\u30B7.ini";
  os_.result = 1;
  EXPECT_EQ(basAPI_api::WritePrivateProfileValue(section_, key_, value_, file_, os_, Page1252()),
            kTrue);
  EXPECT_EQ(os_.log, CallLog{R"(WritePrivateProfileStringA("Section", "Key", "v?", "C:\?.ini"))"});
  EXPECT_EQ(value_, Text(u"v?"));
  EXPECT_EQ(file_, Text(u"C:\\?.ini"));
}

TEST_F(WritePrivateProfileValue, RaisesOverflowForAResultBeyondSixteenBits) {
  const auto write = [&](std::int32_t result) {
    os_.result = result;
    return basAPI_api::WritePrivateProfileValue(section_, key_, value_, file_, os_, Page1252());
  };
  EXPECT_EQ(write(1), kTrue);
  EXPECT_EQ(write(0), kFalse);
  EXPECT_EQ(write(-1), kTrue);
  EXPECT_EQ(write(32767), kTrue);
  for (const std::int32_t result : {0x10000, 32768, -32769}) {
    value_ = u"\u30B7";
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(write(result)); }), 6) << result;
    EXPECT_EQ(value_, Text(u"?")) << "the texts came back before the result was looked at";
  }
}

}  // namespace
}  // namespace quorvane::basAPI_api
