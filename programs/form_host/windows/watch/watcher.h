#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "programs/form_host/windows/watch/boundary.h"
#include "programs/form_host/windows/watch/describe.h"
#include "programs/form_host/windows/watch/names.h"

// What stands in the slots of a face: for each method a function of its signature, made from the
// method itself.
namespace quorvane::programs {

template <class Any, class... Listed>
inline constexpr bool kIsOneOf = (std::is_same_v<Any, Listed> || ...);

/// The interfaces that interfaces.cpp has rows for.
template <class Any>
inline constexpr bool kIsWatched =
    kIsOneOf<Any, IUnknown, IOleWindow, IOleObject, IOleControl, IOleInPlaceObject,
             IOleInPlaceActiveObject, IPersistPropertyBag, IPersistStreamInit,
             IConnectionPointContainer, IConnectionPoint, IDispatch, IOleClientSite,
             IOleInPlaceSite, IOleControlSite, IOleInPlaceUIWindow, IOleInPlaceFrame, IPropertyBag,
             IPropertyNotifySink>;

/// The place of a virtual method in its table, as the pointer to it tells: one more than the offset
/// in bytes, in this compiler's convention.
template <class Member>
[[nodiscard]] std::size_t SlotOf(Member member) {
  static_assert(sizeof member == 2 * sizeof(std::uintptr_t));
  const auto words = std::bit_cast<std::array<std::uintptr_t, 2>>(member);
  return (words[0] - 1) / sizeof(void*);
}

/// An argument on its way through a call, as it is.
template <class Argument>
class Crossing {
 public:
  Crossing(Watched& /*callee*/, Argument argument) : argument_(argument) {}

  [[nodiscard]] Argument Value() const { return argument_; }
  void Return() {}

 private:
  Argument argument_;
};

/// An interface of the caller's side, for the callee, who sees a watched object for as long as it
/// likes.
template <class Any>
requires kIsWatched<Any>
class Crossing<Any*> {
 public:
  Crossing(Watched& callee, Any* argument)
      : face_(callee.Border().Keep(__uuidof(Any), argument, callee.Opposite())),
        value_(face_ != nullptr ? reinterpret_cast<Any*>(face_)
                                : AtHome(callee.Border(), argument)) {}
  Crossing(const Crossing&) = delete;
  Crossing& operator=(const Crossing&) = delete;
  ~Crossing() {
    if (face_ != nullptr) face_->owner->LetGo();
  }

  [[nodiscard]] Any* Value() const { return value_; }
  void Return() {}

 private:
  static Any* AtHome(const Boundary& boundary, Any* argument) {
    IUnknown* const home = boundary.Home(argument);
    return home != nullptr ? static_cast<Any*>(home) : argument;
  }

  Face* face_;
  Any* value_;
};

/// Where the callee stores an interface of its side.
template <class Any>
requires kIsWatched<Any>
class Crossing<Any**> {
 public:
  Crossing(Watched& callee, Any** out) : callee_(callee), out_(out) {}

  [[nodiscard]] Any** Value() const { return out_; }
  void Return() {
    if (out_ == nullptr || *out_ == nullptr) return;
    ComPtr<Any> real;
    *real.Receive() = *out_;
    *out_ = static_cast<Any*>(
        callee_.Border().PassForGood(__uuidof(Any), real.Get(), callee_.LivesOn()));
  }

 private:
  Watched& callee_;
  Any** out_;
};

/// A call in the log.
class ToldCall {
 public:
  ToldCall(Face& face, std::size_t slot, Discretion discretion)
      : log_(face.owner->Border().Log()),
        method_(face.description->At(slot)),
        discretion_(discretion),
        name_(std::string(face.owner->Arrow()) + face.description->name + "." + method_.name) {}

  template <class... Arguments>
  void Begin(const Arguments&... arguments) const {
    log_.Begin(name_ + "(" + List(false, arguments...) + ")");
  }
  template <class... Arguments>
  void End(HRESULT result, const Arguments&... arguments) const {
    const bool is_filled = SUCCEEDED(result) || result == DISP_E_EXCEPTION;
    const std::string filled = is_filled ? List(true, arguments...) : "";
    log_.End(name_, NameOfResult(result) + (filled.empty() ? "" : ", ") + filled);
  }

 private:
  // The parameters of one way; of those that are filled, what came. Before the call nothing stands
  // in these yet, so they are not looked at.
  template <class... Arguments>
  std::string List(bool is_out, const Arguments&... arguments) const {
    std::string list;
    [[maybe_unused]] std::size_t i = 0;
    [[maybe_unused]] const auto add = [&](const auto& argument) {
      const Parameter& parameter = method_.parameters[i++];
      if (parameter.is_out != is_out) return;
      const std::string value = DescribeArgument(argument, discretion_);
      if (is_out && (value.empty() || value == "null")) return;
      list += (list.empty() ? "" : ", ") + parameter.name + " " + value;
    };
    (add(arguments), ...);
    return list;
  }

  CallLog& log_;
  const Method& method_;
  Discretion discretion_;
  std::string name_;
};

template <auto Member>
struct Watcher;

/// The method's place in a face: tells the log, lets the arguments pass, and makes the call.
template <class Any, class... Arguments, HRESULT (STDMETHODCALLTYPE Any::*Member)(Arguments...)>
struct Watcher<Member> {
  static constexpr std::size_t kParameters = sizeof...(Arguments);

  static HRESULT STDMETHODCALLTYPE Call(Face* face, Arguments... arguments) {
    try {
      const Stay stay(*face->owner);
      const ToldCall told(*face, SlotOf(Member), {(IsAboutPassword(arguments) || ...)});
      told.Begin(arguments...);
      const HRESULT result = Make(static_cast<Any*>(face->real.Get()),
                                  Crossing<Arguments>(*face->owner, arguments)...);
      told.End(result, arguments...);
      return result;
    } catch (...) {
      return E_OUTOFMEMORY;  // only the telling throws
    }
  }

 private:
  template <class... Crossings>
  static HRESULT Make(Any* real, Crossings&&... crossings) {
    const HRESULT result = (real->*Member)(crossings.Value()...);
    if (SUCCEEDED(result)) (crossings.Return(), ...);
    return result;
  }
};

}  // namespace quorvane::programs
