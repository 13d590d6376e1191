#pragma once

#include <map>
#include <memory>
#include <set>

#include "programs/form_host/call_log.h"
#include "programs/form_host/windows/com.h"
#include "programs/form_host/windows/watch/interface.h"

// The boundary between container and control. What passes it is seen from the other side as a
// watched object, which hands each call on and tells the log; nobody else writes calls down. It
// works as a marshaller does: the container lets its one reference to the control pass, and each
// interface that goes in or out as an argument of a watched call passes of itself.
namespace quorvane::programs {

class Watched;

/// Where an object lives.
enum class Side { kContainer, kControl };

/// One interface of a watched object. To its users it is that interface; its virtual table is that
/// of the description.
struct Face {
  void* const* table;
  Watched* owner;
  ComPtr<IUnknown> real;  ///< the interface itself, whatever it is
  const Interface* description;
};

class Boundary {
 public:
  /// The log must outlive the boundary, and the boundary all that passes it.
  explicit Boundary(CallLog& log) : log_(log) {}
  Boundary(const Boundary&) = delete;
  Boundary& operator=(const Boundary&) = delete;
  ~Boundary() = default;

  /// The control's interface as its container is to see it; it must be a watched one.
  template <class Any>
  [[nodiscard]] ComPtr<Any> PassControl(Any* control) {
    ComPtr<Any> passed;
    *passed.Receive() = static_cast<Any*>(PassForGood(__uuidof(Any), control, Side::kControl));
    return passed;
  }

  /// The interface with that id as the other side sees it, with a reference for a user there. An
  /// object that comes home is itself again; one that has passed before is the same watched object,
  /// so that identities hold. Null, and what is not watched, stay what they are.
  [[nodiscard]] void* PassForGood(REFIID id, IUnknown* object, Side lives_on);

  /// The face by which the other side sees it, kept by the boundary until LetGo() of its owner;
  /// null for what is no stranger there or is not watched.
  [[nodiscard]] Face* Keep(REFIID id, IUnknown* object, Side lives_on);
  /// The object behind a face, or null when the pointer is no face.
  [[nodiscard]] IUnknown* Home(void* pointer) const;

  [[nodiscard]] CallLog& Log() { return log_; }

 private:
  friend class Watched;

  CallLog& log_;
  std::map<IUnknown*, Watched*> objects_;  // by their identities
  std::set<void*> faces_;
};

/// An object of one side as the other sees it. It counts two kinds of references: those of its
/// users, which the log tells, and those that the boundary holds for the length of a call.
class Watched {
 public:
  Watched(Boundary& boundary, ComPtr<IUnknown> identity, Side lives_on);
  Watched(const Watched&) = delete;
  Watched& operator=(const Watched&) = delete;

  /// How calls to this object begin in the log: "> " into the control, "< " out of it.
  [[nodiscard]] const char* Arrow() const { return lives_on_ == Side::kControl ? "> " : "< "; }
  [[nodiscard]] Side LivesOn() const { return lives_on_; }
  [[nodiscard]] Side Opposite() const {
    return lives_on_ == Side::kControl ? Side::kContainer : Side::kControl;
  }
  [[nodiscard]] Boundary& Border() { return boundary_; }

  /// The face of that interface; `real` is the object's.
  [[nodiscard]] Face& FaceOf(const Interface& description, IUnknown* real);

  ULONG AddUser() { return ++users_; }
  ULONG RemoveUser() { return --users_; }
  void Hold() { ++holds_; }
  /// Ends the object when nobody needs it any more.
  void LetGo();

 private:
  ~Watched();

  Boundary& boundary_;
  ComPtr<IUnknown> identity_;
  Side lives_on_;
  ULONG users_ = 0;
  ULONG holds_ = 0;
  std::map<const Interface*, std::unique_ptr<Face>> faces_;
};

/// Keeps a watched object while a call on it runs.
class Stay {
 public:
  explicit Stay(Watched& object) : object_(object) { object_.Hold(); }
  Stay(const Stay&) = delete;
  Stay& operator=(const Stay&) = delete;
  ~Stay() { object_.LetGo(); }

 private:
  Watched& object_;
};

// IUnknown of every face.
HRESULT STDMETHODCALLTYPE FaceQueryInterface(Face* face, REFIID id, void** out);
ULONG STDMETHODCALLTYPE FaceAddRef(Face* face);
ULONG STDMETHODCALLTYPE FaceRelease(Face* face);

}  // namespace quorvane::programs
