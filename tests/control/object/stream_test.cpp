// Proves persistence through a stream: what it holds, that it ends exactly behind the control's
// data, and that truncated, foreign and hostile bytes are refused before any setting is touched.

#include <array>

#include "tests/support/component/fake_stream.h"
#include "tests/support/component/module_under_test.h"
#include "tests/support/component/values.h"

namespace quorvane::component::stream_test {
namespace {

using Byte = unsigned char;
using ByteVector = std::vector<Byte>;

template <class Body>
void WithControl(Body body) {
  OnApartmentThread([&body] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    const auto persistence = control.As<IPersistStreamInit>();
    body(control, persistence);
  });
}

ByteVector Saved(const Values& values) {
  ByteVector bytes;
  WithControl([&](auto& control, auto& persistence) {
    PutValues(control, values);
    FakeStream stream;
    EXPECT_EQ(persistence->Save(&stream, TRUE), S_OK);
    EXPECT_EQ(stream.other_calls, 0) << "only Write is used";
    EXPECT_EQ(stream.References(), 1U) << "the stream is not kept";
    bytes = stream.content;
  });
  return bytes;
}

TEST(StreamSave, RoundTripsAllSettings) {
  const ByteVector bytes = Saved(kOthers);
  WithControl([&](auto& control, auto& persistence) {
    FakeStream stream(bytes);
    EXPECT_EQ(persistence->Load(&stream), S_OK);
    EXPECT_EQ(ValuesOf(control), kOthers);
    EXPECT_EQ(stream.other_calls, 0);
    EXPECT_EQ(stream.position, bytes.size());
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
  });
}

TEST(StreamSave, RoundTripsTextsWithZerosAndOddCharacters) {
  Values values = kDefaults;
  values.server_file = std::wstring(L"a\0\xD800\uFFFF", 4);
  values.password = std::wstring(40000, L'x');
  const ByteVector bytes = Saved(values);
  WithControl([&](auto& control, auto& persistence) {
    FakeStream stream(bytes);
    EXPECT_EQ(persistence->Load(&stream), S_OK);
    EXPECT_EQ(ValuesOf(control), values);
  });
}

TEST(StreamSave, HoldsOnlyWhatDiffersFromTheDefaults) {
  EXPECT_LT(Saved(kDefaults).size(), 32U) << "a head and no entry";
  EXPECT_GT(Saved(kOthers).size(), Saved(kDefaults).size());
}

TEST(StreamSave, TellsItsExactSizeBeforehand) {
  for (const Values& values : {kDefaults, kOthers}) {
    WithControl([&](auto& control, auto& persistence) {
      PutValues(control, values);
      ULARGE_INTEGER size{};
      EXPECT_EQ(persistence->GetSizeMax(&size), S_OK);
      EXPECT_EQ(size.QuadPart, Saved(values).size());
      EXPECT_EQ(persistence->GetSizeMax(nullptr), E_POINTER);
    });
  }
}

TEST(StreamSave, WritesOnThroughShortWrites) {
  const ByteVector expected = Saved(kOthers);
  WithControl([&](auto& control, auto& persistence) {
    PutValues(control, kOthers);
    FakeStream stream;
    stream.largest_piece = 1;
    EXPECT_EQ(persistence->Save(&stream, TRUE), S_OK);
    EXPECT_EQ(stream.content, expected);
  });
}

TEST(StreamSave, FailsWithTheStreamAndStaysDirty) {
  WithControl([](auto& control, auto& persistence) {
    PutValues(control, kOthers);
    FakeStream stream;
    stream.failing_call = 1;
    EXPECT_EQ(persistence->Save(&stream, TRUE), STG_E_ACCESSDENIED);
    EXPECT_EQ(persistence->IsDirty(), S_OK) << "nothing was saved";
    EXPECT_EQ(persistence->Save(nullptr, TRUE), E_POINTER);
  });
}

TEST(StreamSave, FailsWhereTheStreamTellsNoCount) {
  WithControl([](auto&, auto& persistence) {
    FakeStream stream;
    stream.failing_call = 1;
    stream.failure = S_OK;
    EXPECT_EQ(persistence->Save(&stream, TRUE), STG_E_MEDIUMFULL);
  });
}

// What was put after the bytes were made is in no saved form.
TEST(StreamSave, LeavesTheControlDirtyAfterAPutFromWithin) {
  WithControl([](auto& control, auto& persistence) {
    PutValues(control, kOthers);
    FakeStream stream;
    stream.on_call = [&] { EXPECT_EQ(control->put_ServerPort(9), S_OK); };
    EXPECT_EQ(persistence->Save(&stream, TRUE), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_OK);
    stream.on_call = nullptr;
    EXPECT_EQ(persistence->Save(&stream, FALSE), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_OK) << "saved without clearing";
    EXPECT_EQ(persistence->Save(&stream, TRUE), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
  });
}

TEST(StreamLoad, StopsExactlyBehindItsOwnData) {
  ByteVector bytes = Saved(kOthers);
  const std::size_t own = bytes.size();
  bytes.insert(bytes.end(), {1, 2, 3, 4, 5});
  for (const ULONG largest_piece : {0x7FFFFFFFUL, 3UL, 4UL, 5UL, 7UL}) {
    WithControl([&](auto& control, auto& persistence) {
      FakeStream stream(bytes);
      stream.largest_piece = largest_piece;
      EXPECT_EQ(persistence->Load(&stream), S_OK);
      EXPECT_EQ(stream.position, own);
      EXPECT_EQ(ValuesOf(control), kOthers);
    });
  }
}

TEST(StreamLoad, ReadsOnThroughShortReads) {
  const ByteVector bytes = Saved(kOthers);
  WithControl([&](auto& control, auto& persistence) {
    FakeStream stream(bytes);
    stream.largest_piece = 1;
    EXPECT_EQ(persistence->Load(&stream), S_OK);
    EXPECT_EQ(ValuesOf(control), kOthers);
  });
}

TEST(StreamLoad, TakesTheDefaultsForMissingEntries) {
  const ByteVector bytes = Saved(kDefaults);
  WithControl([&](auto& control, auto& persistence) {
    PutValues(control, kOthers);
    FakeStream stream(bytes);
    EXPECT_EQ(persistence->Load(&stream), S_OK);
    EXPECT_EQ(ValuesOf(control), kDefaults);
  });
}

TEST(StreamLoad, RefusesEveryTruncationWithNothingTouched) {
  const ByteVector bytes = Saved(kOthers);
  WithControl([&](auto& control, auto& persistence) {
    Values before = kDefaults;
    before.server_port = 7;
    PutValues(control, before);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
      FakeStream stream(
          ByteVector(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)));
      EXPECT_TRUE(FAILED(persistence->Load(&stream))) << length;
      EXPECT_EQ(ValuesOf(control), before) << length;
    }
  });
}

TEST(StreamLoad, RefusesAForeignHead) {
  const ByteVector bytes = Saved(kOthers);
  WithControl([&](auto& control, auto& persistence) {
    PutValues(control, kDefaults);
    for (std::size_t place = 0; place < 8; ++place) {
      ByteVector foreign = bytes;
      foreign[place] = static_cast<Byte>(foreign[place] ^ 0x40);
      FakeStream stream(foreign);
      EXPECT_EQ(persistence->Load(&stream), E_FAIL) << place;
      EXPECT_EQ(ValuesOf(control), kDefaults) << place;
    }
    FakeStream zeros(ByteVector(100, 0));
    EXPECT_EQ(persistence->Load(&zeros), E_FAIL);
    EXPECT_EQ(persistence->Load(nullptr), E_POINTER);
  });
}

TEST(StreamLoad, FailsWithTheStream) {
  const ByteVector bytes = Saved(kOthers);
  WithControl([&](auto& control, auto& persistence) {
    PutValues(control, kDefaults);
    for (int n = 1; n <= 2; ++n) {
      FakeStream stream(bytes);
      stream.failing_call = n;
      EXPECT_TRUE(FAILED(persistence->Load(&stream))) << n;
      EXPECT_EQ(ValuesOf(control), kDefaults) << n;
    }
  });
}

TEST(StreamLoad, FailsWhereTheStreamTellsNoCount) {
  const ByteVector bytes = Saved(kOthers);
  WithControl([&](auto&, auto& persistence) {
    for (int n = 1; n <= 2; ++n) {
      FakeStream stream(bytes);
      stream.failing_call = n;
      stream.failure = S_OK;
      int calls = 0;
      stream.on_call = [&] { ++calls; };
      EXPECT_EQ(persistence->Load(&stream), E_FAIL) << n;
      EXPECT_EQ(calls, n) << "it is asked no further";
    }
  });
}

// Whatever single bytes are damaged, the load ends, never reads beyond the stated total, and leaves
// whole values.
TEST(StreamLoad, SurvivesEveryDamagedByte) {
  const ByteVector bytes = Saved(kOthers);
  WithControl([&](auto& control, auto& persistence) {
    for (std::size_t place = 0; place < bytes.size(); ++place) {
      for (const int flip : {0x01, 0x80, 0xFF}) {
        ByteVector damaged = bytes;
        damaged[place] = static_cast<Byte>(damaged[place] ^ flip);
        damaged.insert(damaged.end(), 64, Byte{0xEE});
        FakeStream stream(damaged);
        persistence->Load(&stream);
        EXPECT_EQ(stream.References(), 1U);
        ValuesOf(control);
      }
    }
  });
}

TEST(StreamLoad, IsRepeatableAndKeptFromALaterInitNew) {
  const ByteVector bytes = Saved(kOthers);
  WithControl([&](auto& control, auto& persistence) {
    EXPECT_EQ(persistence->InitNew(), S_OK);
    for (int i = 0; i < 3; ++i) {
      FakeStream stream(bytes);
      EXPECT_EQ(persistence->Load(&stream), S_OK) << "also after InitNew";
    }
    EXPECT_EQ(persistence->InitNew(), E_UNEXPECTED);
    EXPECT_EQ(ValuesOf(control), kOthers);
  });
}

}  // namespace
}  // namespace quorvane::component::stream_test
