#include "runtime/runtime_error.h"

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>

namespace quorvane {
namespace {

struct Description {
  std::int32_t number;
  const char16_t* text;
};

// In rising order of numbers.
constexpr std::array kDescriptions{
    Description{5, u"Invalid procedure call or argument"},
    Description{6, u"Overflow"},
    Description{7, u"Out of memory"},
    Description{9, u"Subscript out of range"},
    Description{10, u"This array is fixed or temporarily locked"},
    Description{11, u"Division by zero"},
    Description{13, u"Type mismatch"},
    Description{14, u"Out of string space"},
    Description{48, u"Error in loading DLL"},
    Description{51, u"Internal error"},
    Description{52, u"Bad file name or number"},
    Description{53, u"File not found"},
    Description{54, u"Bad file mode"},
    Description{55, u"File already open"},
    Description{57, u"Device I/O error"},
    Description{58, u"File already exists"},
    Description{61, u"Disk full"},
    Description{62, u"Input past end of file"},
    Description{67, u"Too many files"},
    Description{68, u"Device unavailable"},
    Description{70, u"Permission denied"},
    Description{71, u"Disk not ready"},
    Description{75, u"Path/File access error"},
    Description{76, u"Path not found"},
    Description{91, u"Object variable not set"},
    Description{429, u"ActiveX component can't create object"},
    Description{438, u"Object doesn't support this property or method"},
    Description{445, u"Object doesn't support this action"},
    Description{450, u"Wrong number of arguments or invalid property assignment"},
    Description{453, u"Specified DLL function not found"},
};

}  // namespace

Text StandardDescription(std::int32_t number) {
  const auto* const found =
      std::ranges::lower_bound(kDescriptions, number, {}, &Description::number);
  if (found != kDescriptions.end() && found->number == number) return found->text;
  return u"Application-defined or object-defined error";
}

// Apart from the one below, so that who raises has no text to make and to release.
void Raise(std::int32_t number) { Raise(number, {}); }

void Raise(std::int32_t number, const Text& source) {
  throw RuntimeError{number, source, StandardDescription(number)};
}

RuntimeError CurrentRuntimeError() {
  try {
    throw;
  } catch (const RuntimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return {ErrorNumber::kOutOfMemory, {}, StandardDescription(ErrorNumber::kOutOfMemory)};
  } catch (const std::length_error&) {
    return {ErrorNumber::kOutOfMemory, {}, StandardDescription(ErrorNumber::kOutOfMemory)};
  } catch (...) {
    return {ErrorNumber::kInternalError, {}, StandardDescription(ErrorNumber::kInternalError)};
  }
}

}  // namespace quorvane
