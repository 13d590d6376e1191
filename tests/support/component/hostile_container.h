#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "tests/support/component/module_under_test.h"

namespace quorvane::component {

/// Numbers that follow from their seed alone, so that a sequence can be repeated.
class Random {
 public:
  explicit Random(std::uint32_t seed) : state_(seed) {}
  std::uint32_t Next() {
    state_ += 0x9E37'79B9'7F4A'7C15;
    std::uint64_t mixed = (state_ ^ (state_ >> 30)) * 0xBF58'476D'1CE4'E5B9;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D0'49BB'1331'11EB;
    return static_cast<std::uint32_t>(mixed >> 32);
  }
  /// 0 to `limit` - 1.
  unsigned Below(unsigned limit) { return Next() % limit; }
  bool OneIn(unsigned n) { return Below(n) == 0; }
  template <class T, std::size_t kCount>
  const T& Of(const T (&list)[kCount]) {
    return list[Below(kCount)];
  }

 private:
  std::uint64_t state_;
};

/// A container that keeps to the rules of reference counting and to no other: it calls anything at
/// any time, with null and with nonsense; from each of its callbacks it does more of the same, up
/// to giving back the last reference and destroying windows; its answers fail when they like.
///
/// What it is made of (sites, sinks, streams, bags ...) lies in guarded memory and goes with its
/// last reference. Lives on a thread with an apartment.
class HostileContainer {
 public:
  /// The interfaces that a container holds of a control, one of which each reference is.
  enum class Kind {
    kControl,
    kMembers,
    kErrorSupport,
    kClassInfo,
    kStreamInit,
    kStorage,
    kPropertyBag,
    kPointContainer,
    kPoint,
    kConnections,
    kPoints,
    kView,
    kData,
    kInPlace,
    kActive,
    kOleObject,
    kOleControl,
    kAdvises,
    kTypeInfo,
    kAny,  ///< of which only the count is used
  };

  /// `window` is to be the parent of the control's windows; one container at a time has it.
  HostileContainer(const Module& module, HWND window, std::uint32_t seed);
  HostileContainer(const HostileContainer&) = delete;
  HostileContainer& operator=(const HostileContainer&) = delete;
  /// Gives everything back. What was not given back to it in turn is a failure of the test.
  ~HostileContainer();

  /// So many random calls, those from within callbacks included.
  void Run(int calls);

  /// A control's whole life in order, every callback answered with success unless `on_callback`
  /// says otherwise; what it wants to use and finds given back meanwhile it leaves out.
  /// `piece` is how many bytes its stream takes and gives at a time.
  void LiveOneLife();
  /// Its beginning: a control, and each of its interfaces.
  void Meet();
  /// In place of random calls: called at each callback with its number, from 1 on, and its name.
  std::function<HRESULT(int, std::string_view)> on_callback;
  [[nodiscard]] int Callbacks() const { return callbacks_; }

  // What a callback may want to do of purpose; `piece` is how many bytes the stream takes and gives
  // at a time.
  void ReleaseAll();
  void CloseAll();
  void LeaveSites();
  void DeactivateAll();
  void ShowAll();
  void PutAll();
  void UseStorages();
  void SaveAndLoadAll(ULONG piece = 1000);
  void DisconnectAll();
  void DestroyWindows();

  /// Stands for all that was called and answered: equal for equal sequences.
  [[nodiscard]] std::uint64_t Trace() const { return trace_; }
  [[nodiscard]] int Calls() const { return calls_; }

  // For its parts.
  HRESULT OnCallback(std::string_view name);
  [[nodiscard]] bool ChangesItsMind() { return on_callback == nullptr && random_.OneIn(12); }
  Random& Dice() { return random_; }
  [[nodiscard]] HWND Window() const { return window_; }
  void CountPart(int change) { parts_ += change; }
  void CountVisit(int entered, int refused, int left);
  void FillVariant(VARIANT* value);

 private:
  struct Held {
    Kind kind;
    IUnknown* pointer;
  };
  struct Given {
    Kind kind;
    HRESULT result;
  };

  void Note(std::uint64_t number) { trace_ = (trace_ ^ number) * 0x100'0000'01B3; }
  HRESULT Noted(HRESULT result);
  void Hold(Kind kind, void* pointer);
  void Step();
  void StepWithoutMemory();
  void CreateControl();
  void Release(std::size_t index);
  void AskFor(IUnknown& object);
  template <class Interface, class Call>
  void Receive(Kind kind, Call call);
  template <class Interface>
  Interface* Find(Kind kind);
  template <class Interface, class Body>
  void ForAll(Kind kind, Body body);

  void Use(const Held& one);
  void UseMembers(IUnknown* object);
  void Invoke(IDispatch& object);
  void UseClassInfo(IUnknown* object);
  void UseStreamInit(IPersistStreamInit& object);
  void UseStorage(IPersistStorage& object);
  void UseStorage(IPersistStorage& object, IStorage* given);
  void UsePropertyBag(IPersistPropertyBag& object);
  void UsePointContainer(IConnectionPointContainer& object);
  void UsePoint(IConnectionPoint& object);
  void UseView(IViewObject2& object);
  void UseData(IDataObject& object);
  void UseInPlace(IOleInPlaceObject& object);
  void UseActive(IOleInPlaceActiveObject& object);
  void UseOleObject(IOleObject& object);
  void UseOleControl(IOleControl& object);
  void UseWindows();
  template <class Enumerator, class Raw, class Forget>
  void UseEnumerator(Kind kind, Enumerator& object, Forget forget);
  const RECT* SomeRectangle(RECT& place);

  static LRESULT CALLBACK OnMessage(HWND handle, UINT message, WPARAM first, LPARAM second);

  const Module& module_;
  Random random_;
  HWND window_;
  WNDPROC below_ = nullptr;
  std::vector<Held> held_;
  std::vector<DWORD> cookies_;
  std::vector<unsigned char> saved_;
  Com<IStorage> storage_;  // one that comes again
  bool has_no_memory_ = false;
  int calls_left_ = 0;
  int depth_ = 0;
  int calls_ = 0;
  int callbacks_ = 0;
  int parts_ = 0;
  int entered_ = 0;
  int refused_ = 0;
  int left_ = 0;
  std::uint64_t trace_ = 0xCBF2'9CE4'8422'2325;
};

}  // namespace quorvane::component
