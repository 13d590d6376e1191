#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "programs/form_host/form_bag.h"

// The form file: what a form keeps for the control that stands on it, readable and editable.
//
//   ' The connection of the reports form.
//   ServerAddress = "reports.example.com"
//   ServerPort = 8080
//   UseProxy = True
//
// - UTF-8, with or without a byte order mark; lines end with LF or CR LF.
// - One entry a line: a name (a letter, then letters, digits and underscores), "=", a value. Blanks
//   (spaces and tabs) may stand around each. A name stands once; upper and lower case differ.
// - A value is a text in quotes, a whole number of at most 32 bits, or the word True or False.
// - In a text \" is a quote, \\ a backslash, \n \r \t are line feed, carriage return and tab, and
//   \uXXXX (four hexadecimal digits) is any 16-bit character, halves of surrogate pairs and zero
//   too. Control characters stand in no other form.
// - Empty lines and lines that start with ' or ; are comments; saving does not keep them.
namespace quorvane::programs {

/// A form file that cannot be read, understood or written. what() tells where and why, in one line.
class FormFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The entries of a form file's bytes. Raises FormFileError, "line 3: ...", at the first line that
/// is malformed. A number that fits in 16 bits becomes a 16-bit integer, any other a 32-bit one.
[[nodiscard]] std::vector<FormEntry> ParseForm(std::string_view bytes);

/// A value as a form file spells it: "text" with its quotes, 8080, True.
[[nodiscard]] std::string FormatValue(const TaggedValue& value);

/// The bytes of a form file that holds these entries and nothing else; ParseForm() gives them back
/// unchanged. The values must be texts, integers or Booleans.
[[nodiscard]] std::string FormatForm(const std::vector<FormEntry>& entries);

/// ParseForm() of a file; errors bear the file's name. Raises FormFileError.
[[nodiscard]] std::vector<FormEntry> LoadForm(const std::string& file);

/// Writes the file anew beside its old self and then puts it in its place, so that at every moment
/// the name leads to a whole form, the old or the new. The permissions of the old file stay; one
/// that may only be read is refused. Raises FormFileError and leaves the old file as it was.
void SaveForm(const std::string& file, const std::vector<FormEntry>& entries);

/// Whether both names lead to one place, be there a file or not.
[[nodiscard]] bool IsSamePlace(const std::string& file, const std::string& other);

}  // namespace quorvane::programs
