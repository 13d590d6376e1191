// Proves that a raise carries number, source and the standard description, and how other exceptions
// become run-time errors.

#include "runtime/runtime_error.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <utility>

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
  EXPECT_EQ(StandardDescription(10), Text(u"This array is fixed or temporarily locked"));
  EXPECT_EQ(StandardDescription(11), Text(u"Division by zero"));
  EXPECT_EQ(StandardDescription(13), Text(u"Type mismatch"));
  EXPECT_EQ(StandardDescription(14), Text(u"Out of string space"));
  EXPECT_EQ(StandardDescription(48), Text(u"Error in loading DLL"));
  EXPECT_EQ(StandardDescription(51), Text(u"Internal error"));
  EXPECT_EQ(StandardDescription(52), Text(u"Bad file name or number"));
  EXPECT_EQ(StandardDescription(53), Text(u"File not found"));
  EXPECT_EQ(StandardDescription(54), Text(u"Bad file mode"));
  EXPECT_EQ(StandardDescription(55), Text(u"File already open"));
  EXPECT_EQ(StandardDescription(57), Text(u"Device I/O error"));
  EXPECT_EQ(StandardDescription(58), Text(u"File already exists"));
  EXPECT_EQ(StandardDescription(61), Text(u"Disk full"));
  EXPECT_EQ(StandardDescription(62), Text(u"Input past end of file"));
  EXPECT_EQ(StandardDescription(67), Text(u"Too many files"));
  EXPECT_EQ(StandardDescription(68), Text(u"Device unavailable"));
  EXPECT_EQ(StandardDescription(70), Text(u"Permission denied"));
  EXPECT_EQ(StandardDescription(71), Text(u"Disk not ready"));
  EXPECT_EQ(StandardDescription(75), Text(u"Path/File access error"));
  EXPECT_EQ(StandardDescription(76), Text(u"Path not found"));
  EXPECT_EQ(StandardDescription(91), Text(u"Object variable not set"));
  EXPECT_EQ(StandardDescription(429), Text(u"ActiveX component can't create object"));
  EXPECT_EQ(StandardDescription(438), Text(u"Object doesn't support this property or method"));
  EXPECT_EQ(StandardDescription(445), Text(u"Object doesn't support this action"));
  EXPECT_EQ(StandardDescription(450),
            Text(u"Wrong number of arguments or invalid property assignment"));
  EXPECT_EQ(StandardDescription(453), Text(u"Specified DLL function not found"));
}

TEST(ErrorNumber, IsTheNumberThatItsNameSays) {
  const std::pair<std::int32_t, const char16_t*> numbers[] = {
      {ErrorNumber::kInvalidProcedureCall, u"Invalid procedure call or argument"},
      {ErrorNumber::kOverflow, u"Overflow"},
      {ErrorNumber::kOutOfMemory, u"Out of memory"},
      {ErrorNumber::kSubscriptOutOfRange, u"Subscript out of range"},
      {ErrorNumber::kDivisionByZero, u"Division by zero"},
      {ErrorNumber::kTypeMismatch, u"Type mismatch"},
      {ErrorNumber::kInternalError, u"Internal error"},
      {ErrorNumber::kBadFileNumber, u"Bad file name or number"},
      {ErrorNumber::kFileNotFound, u"File not found"},
      {ErrorNumber::kFileAlreadyOpen, u"File already open"},
      {ErrorNumber::kDeviceInputOutput, u"Device I/O error"},
      {ErrorNumber::kFileAlreadyExists, u"File already exists"},
      {ErrorNumber::kDiskFull, u"Disk full"},
      {ErrorNumber::kInputPastEnd, u"Input past end of file"},
      {ErrorNumber::kTooManyFiles, u"Too many files"},
      {ErrorNumber::kDeviceUnavailable, u"Device unavailable"},
      {ErrorNumber::kPermissionDenied, u"Permission denied"},
      {ErrorNumber::kDiskNotReady, u"Disk not ready"},
      {ErrorNumber::kPathFileAccess, u"Path/File access error"},
      {ErrorNumber::kPathNotFound, u"Path not found"},
      {ErrorNumber::kLibraryNotFound, u"Error in loading DLL"},
      {ErrorNumber::kEntryPointNotFound, u"Specified DLL function not found"}};
  for (const auto& [number, description] : numbers)
    EXPECT_EQ(StandardDescription(number), Text(description)) << number;
}

TEST(RuntimeError, SharesOneDescriptionAmongAllOtherNumbers) {
  const Text shared = u"Application-defined or object-defined error";
  int without_one_of_their_own = 0;
  for (std::int32_t number = -1; number <= 1000; ++number)
    if (StandardDescription(number) == shared) ++without_one_of_their_own;
  EXPECT_EQ(without_one_of_their_own, 1002 - 30);
  EXPECT_EQ(StandardDescription(2147483647), shared);
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
