// Proves that a raise carries number, source and the standard description, and how other exceptions
// become run-time errors.

#include "runtime/runtime_error.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::ErrorOf;

template <class Exception>
RuntimeError Translated(const Exception& exception) {
  try {
    throw exception;
  } catch (...) {
    return CurrentRuntimeError();
  }
}

TEST(RuntimeError, CarriesTheStandardDescriptionAndAnAbsentSource) {
  const auto error = ErrorOf([] { Raise(6); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, 6);
  EXPECT_TRUE(error->source.IsAbsent());
  EXPECT_EQ(error->description, Text(u"Overflow"));
}

TEST(RuntimeError, CarriesTheSourceThatTheRaiseGives) {
  const auto error = ErrorOf([] { Raise(53, u"Module.File"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->source, Text(u"Module.File"));
  EXPECT_EQ(error->description, Text(u"File not found"));
}

TEST(RuntimeError, HasADescriptionForEachNumberInUse) {
  EXPECT_EQ(StandardDescription(5), Text(u"Invalid procedure call or argument"));
  EXPECT_EQ(StandardDescription(6), Text(u"Overflow"));
  EXPECT_EQ(StandardDescription(7), Text(u"Out of memory"));
  EXPECT_EQ(StandardDescription(9), Text(u"Subscript out of range"));
  EXPECT_EQ(StandardDescription(13), Text(u"Type mismatch"));
  EXPECT_EQ(StandardDescription(52), Text(u"Bad file name or number"));
  EXPECT_EQ(StandardDescription(53), Text(u"File not found"));
  EXPECT_EQ(StandardDescription(70), Text(u"Permission denied"));
  EXPECT_EQ(StandardDescription(453), Text(u"Specified DLL function not found"));
}

TEST(RuntimeError, SharesOneDescriptionAmongAllOtherNumbers) {
  const Text shared = u"Application-defined or object-defined error";
  for (const std::int32_t number : {-1, 0, 4, 8, 12, 1000, 2147483647}) {
    EXPECT_EQ(StandardDescription(number), shared) << number;
  }
}

TEST(CurrentRuntimeError, KeepsARuntimeErrorUnchanged) {
  const RuntimeError error = Translated(RuntimeError{1234, u"source", u"description"});
  EXPECT_EQ(error.number, 1234);
  EXPECT_EQ(error.source, Text(u"source"));
  EXPECT_EQ(error.description, Text(u"description"));
}

TEST(CurrentRuntimeError, MakesExhaustedMemoryNumber7) {
  EXPECT_EQ(Translated(std::bad_alloc()).number, 7);
  EXPECT_EQ(Translated(std::length_error("text")).number, 7);
}

TEST(CurrentRuntimeError, MakesAnythingElseAnInternalError) {
  const RuntimeError error = Translated(std::logic_error("unexpected"));
  EXPECT_EQ(error.number, 51);
  EXPECT_EQ(error.description, Text(u"Internal error"));
}

}  // namespace
}  // namespace quorvane
