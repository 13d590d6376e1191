#pragma once

#include <string>
#include <type_traits>

#include "control/automation/com.h"

// Arguments of calls as the log tells them. A pointer of a kind that is not looked into is "null"
// or "given". Values that belong to the password show as asterisks.
namespace quorvane::programs {

/// Whether it names the password, as entry of a form or as member of the control.
[[nodiscard]] bool NamesPassword(const wchar_t* name);
[[nodiscard]] bool NamesPassword(LONG member);

/// Whether an argument says that the call is about the password.
template <class Argument>
[[nodiscard]] bool IsAboutPassword(const Argument& argument) {
  if constexpr (std::is_convertible_v<Argument, const wchar_t*>)
    return NamesPassword(static_cast<const wchar_t*>(argument));
  else if constexpr (std::is_same_v<Argument, LONG>)
    return NamesPassword(argument);
  else
    return false;
}

/// What the call is about decides how much of its values may be told.
struct Discretion {
  bool is_secret = false;
};

[[nodiscard]] std::string Describe(const GUID& id, Discretion discretion);
[[nodiscard]] std::string Describe(const wchar_t* text, Discretion discretion);
/// A number; that of a member by the member's name.
[[nodiscard]] std::string Describe(LONG number, Discretion discretion);
[[nodiscard]] std::string Describe(const SIZEL& size, Discretion discretion);
[[nodiscard]] std::string Describe(const RECT& place, Discretion discretion);
[[nodiscard]] std::string Describe(const MSG& message, Discretion discretion);
/// With its type: "VT_I2 8080".
[[nodiscard]] std::string Describe(const VARIANT& value, Discretion discretion);
[[nodiscard]] std::string Describe(const DISPPARAMS& parameters, Discretion discretion);
/// Empty when there was none.
[[nodiscard]] std::string Describe(const EXCEPINFO& exception, Discretion discretion);
/// A handle of a window.
[[nodiscard]] std::string Describe(HWND window, Discretion discretion);

/// What a pointer may point to for Describe() to look into it.
template <class Value>
inline constexpr bool kIsTold =
    std::is_integral_v<Value> || std::is_pointer_v<Value> || std::is_same_v<Value, GUID> ||
    std::is_same_v<Value, SIZEL> || std::is_same_v<Value, RECT> || std::is_same_v<Value, MSG> ||
    std::is_same_v<Value, VARIANT> || std::is_same_v<Value, DISPPARAMS> ||
    std::is_same_v<Value, EXCEPINFO>;

/// An argument of any type.
template <class Argument>
[[nodiscard]] std::string DescribeArgument(const Argument& argument, Discretion discretion) {
  if constexpr (std::is_convertible_v<Argument, const wchar_t*>) {
    return Describe(static_cast<const wchar_t*>(argument), discretion);
  } else if constexpr (std::is_same_v<Argument, HWND>) {
    return Describe(argument, discretion);
  } else if constexpr (std::is_integral_v<Argument>) {
    return Describe(static_cast<LONG>(argument), discretion);
  } else if constexpr (std::is_pointer_v<Argument>) {
    using Value = std::remove_cv_t<std::remove_pointer_t<Argument>>;
    if (argument == nullptr) return "null";
    if constexpr (kIsTold<Value>)
      return DescribeArgument(*argument, discretion);
    else
      return "given";
  } else {
    return Describe(argument, discretion);
  }
}

}  // namespace quorvane::programs
