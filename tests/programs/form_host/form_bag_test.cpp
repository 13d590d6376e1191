// The bag of a form: what is in it, in which order, and what nobody has asked for.

#include "programs/form_host/form_bag.h"

#include "tests/support/raises.h"

namespace quorvane::programs {
namespace {

TEST(FormBag, FindsAValueByItsExactName) {
  FormBag bag({{u"Username", Text(u"a")}});
  ASSERT_NE(bag.Find(u"Username"), nullptr);
  EXPECT_EQ(*bag.Find(u"Username"), TaggedValue(Text(u"a")));
  EXPECT_EQ(bag.Find(u"UserName"), nullptr);
}

TEST(FormBag, ReplacesAValueInItsPlace) {
  FormBag bag({{u"A", std::int16_t{1}}, {u"B", std::int16_t{2}}});
  bag.Put(u"A", kTrue);
  bag.Put(u"C", Text(u"new"));
  const std::vector<FormEntry> expected = {
      {u"A", kTrue}, {u"B", std::int16_t{2}}, {u"C", Text(u"new")}};
  EXPECT_EQ(bag.Entries(), expected);
}

TEST(FormBag, TellsWhatNobodyHasAskedFor) {
  FormBag bag({{u"A", kTrue}, {u"B", kTrue}, {u"C", kTrue}});
  EXPECT_EQ(bag.Unread(), (std::vector<Text>{u"A", u"B", u"C"}));
  static_cast<void>(bag.Find(u"B"));
  static_cast<void>(bag.Find(u"missing"));
  EXPECT_EQ(bag.Unread(), (std::vector<Text>{u"A", u"C"}));
}

}  // namespace
}  // namespace quorvane::programs
