// Proves the form in which the control is saved into a stream: what is written is read back, and
// whatever else a stream may hold is either passed over or refused as a whole.

#include "control/stream_bag.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kHead = StreamBag::kHeadSize;

std::optional<std::uint32_t> BodySize(const Bytes& bytes) {
  return StreamBag::BodySize(std::span(bytes).first<kHead>());
}

std::optional<StreamBag> FromBody(const Bytes& bytes) { return StreamBag::FromBody(bytes); }

Bytes BodyOf(const StreamBag& bag) {
  const Bytes bytes = bag.ToBytes();
  return {bytes.begin() + kHead, bytes.end()};
}

Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

Bytes Number(std::uint32_t number, std::size_t size = 4) {
  Bytes bytes;
  for (std::size_t i = 0; i < size; ++i)
    bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
  return bytes;
}

// An entry named "N".
Bytes Entry(std::uint16_t kind, const Bytes& data) {
  return Number(1) + Number(u'N', 2) + Number(kind, 2) +
         Number(static_cast<std::uint32_t>(data.size())) + data;
}

StreamBag FullBag() {
  StreamBag bag;
  bag.WriteProperty(u"Text", Text(std::u16string(u"a\0\xD800z", 4)), Text(u""));
  bag.WriteProperty(u"Port", std::int16_t{-2}, std::int16_t{80});
  bag.WriteProperty(u"Proxy", Boolean16{1}, kFalse);
  return bag;
}

TEST(StreamBag, ReadsBackWhatItWrote) {
  auto bag = FromBody(BodyOf(FullBag()));
  ASSERT_TRUE(bag);
  EXPECT_EQ(bag->ReadProperty(u"Text", Text(u"")),
            TaggedValue(Text(std::u16string(u"a\0\xD800z", 4))));
  EXPECT_EQ(bag->ReadProperty(u"Port", std::int16_t{80}), TaggedValue(std::int16_t{-2}));
  EXPECT_EQ(bag->ReadProperty(u"Proxy", kFalse), TaggedValue(Boolean16{1}));
}

TEST(StreamBag, GivesTheDefaultForAMissingName) {
  StreamBag bag = FullBag();
  EXPECT_EQ(bag.ReadProperty(u"port", std::int16_t{80}), TaggedValue(std::int16_t{80}));
}

TEST(StreamBag, HoldsOnlyWhatDiffersFromTheDefaults) {
  StreamBag bag;
  bag.WriteProperty(u"Text", Text(), Text(u""));
  bag.WriteProperty(u"Port", std::int16_t{80}, std::int16_t{80});
  bag.WriteProperty(u"Proxy", kFalse, kFalse);
  EXPECT_EQ(BodyOf(bag), Number(0));
}

TEST(StreamBag, HasTheFormThatSavedFormsHold) {
  StreamBag bag;
  bag.WriteProperty(u"N", std::int16_t{0x1234}, std::int16_t{0});
  const Bytes body = Number(1) + Entry(2, {0x34, 0x12});
  EXPECT_EQ(bag.ToBytes(), Bytes({'Q', 'S', 'P', 'B'}) + Number(1) +
                               Number(static_cast<std::uint32_t>(body.size())) + body);
  EXPECT_EQ(BodySize(bag.ToBytes()), body.size());
}

TEST(StreamBag, RefusesAForeignHead) {
  const Bytes good = StreamBag().ToBytes();
  ASSERT_TRUE(BodySize(good));
  for (std::size_t i = 0; i < 8; ++i) {
    Bytes bad = good;
    bad[i] ^= 0x20;
    EXPECT_FALSE(BodySize(bad)) << i;
  }
}

TEST(StreamBag, RefusesEveryTruncation) {
  const Bytes body = BodyOf(FullBag());
  for (std::size_t size = 0; size < body.size(); ++size)
    EXPECT_FALSE(FromBody({body.begin(), body.begin() + static_cast<std::ptrdiff_t>(size)}))
        << size;
}

TEST(StreamBag, RefusesLengthsThatLeadOutside) {
  EXPECT_FALSE(FromBody(Number(0xFFFFFFFF)));
  EXPECT_FALSE(FromBody(Number(1) + Number(0x80000000) + Number(0)));
  EXPECT_FALSE(FromBody(Number(1) + Number(0) + Number(8, 2) + Number(0xFFFFFFFF)));
}

TEST(StreamBag, RefusesADataLengthThatDoesNotFitTheKind) {
  EXPECT_FALSE(FromBody(Number(1) + Entry(8, {1})));
  EXPECT_FALSE(FromBody(Number(1) + Entry(2, {1})));
  EXPECT_FALSE(FromBody(Number(1) + Entry(2, {1, 2, 3, 4})));
  EXPECT_FALSE(FromBody(Number(1) + Entry(11, {})));
}

TEST(StreamBag, PassesOverKindsOfALaterDayAndWhatFollowsTheEntries) {
  auto bag = FromBody(Number(2) + Entry(99, {1, 2, 3}) + Entry(2, {7, 0}) + Bytes{9, 9, 9});
  ASSERT_TRUE(bag);
  EXPECT_EQ(bag->ReadProperty(u"N", std::int16_t{0}), TaggedValue(std::int16_t{7}));
}

TEST(StreamBag, TakesTheFirstOfTwoEntriesOfOneName) {
  auto bag = FromBody(Number(2) + Entry(2, {1, 0}) + Entry(2, {2, 0}));
  ASSERT_TRUE(bag);
  EXPECT_EQ(bag->ReadProperty(u"N", std::int16_t{0}), TaggedValue(std::int16_t{1}));
}

TEST(StreamBag, WritesNoOtherKinds) {
  StreamBag bag;
  EXPECT_EQ(ErrorNumberOf([&] { bag.WriteProperty(u"N", std::int32_t{1}, std::int32_t{0}); }), 13);
  EXPECT_EQ(ErrorNumberOf([&] { bag.WriteProperty(u"N", TaggedValue(), TaggedValue()); }), 13);
}

}  // namespace
}  // namespace quorvane
