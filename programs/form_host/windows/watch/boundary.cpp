#include "programs/form_host/windows/watch/boundary.h"

#include "programs/form_host/windows/watch/names.h"

namespace quorvane::programs {

IUnknown* Boundary::Home(void* pointer) const {
  return faces_.contains(pointer) ? static_cast<Face*>(pointer)->real.Get() : nullptr;
}

Face* Boundary::Keep(REFIID id, IUnknown* object, Side lives_on) {
  const Interface* const description = FindInterface(id);
  if (object == nullptr || description == nullptr || Home(object) != nullptr) return nullptr;
  const ComPtr<IUnknown> identity = Query<IUnknown>(object);
  Watched*& watched = objects_[identity.Get()];
  if (watched == nullptr) watched = new Watched(*this, identity, lives_on);
  watched->Hold();
  return &watched->FaceOf(*description, object);
}

void* Boundary::PassForGood(REFIID id, IUnknown* object, Side lives_on) {
  if (Face* const face = Keep(id, object, lives_on)) {
    face->owner->AddUser();
    face->owner->LetGo();
    return face;
  }
  IUnknown* const home = object != nullptr ? Home(object) : nullptr;
  IUnknown* const same = home != nullptr ? home : object;
  if (same != nullptr) same->AddRef();
  return same;
}

Watched::Watched(Boundary& boundary, ComPtr<IUnknown> identity, Side lives_on)
    : boundary_(boundary), identity_(std::move(identity)), lives_on_(lives_on) {}

// Off the lists first: what ends here may call back.
Watched::~Watched() {
  boundary_.objects_.erase(identity_.Get());
  for (const auto& [description, face] : faces_) boundary_.faces_.erase(face.get());
}

Face& Watched::FaceOf(const Interface& description, IUnknown* real) {
  std::unique_ptr<Face>& face = faces_[&description];
  if (!face) {
    face.reset(new Face{description.table.data(), this, ComPtr<IUnknown>(real), &description});
    boundary_.faces_.insert(face.get());
  }
  return *face;
}

void Watched::LetGo() {
  if (--holds_ == 0 && users_ == 0) delete this;
}

namespace {

std::string NameOfCall(const Face& face, const char* method) {
  return std::string(face.owner->Arrow()) + face.description->name + "." + method;
}

// The interface by the same road as the object's own, wrapped on its way out.
HRESULT AskObject(Face& face, REFIID id, void** out) {
  void* answer = nullptr;
  const HRESULT result = face.real->QueryInterface(id, &answer);
  *out = nullptr;
  if (FAILED(result) || answer == nullptr) return result;
  ComPtr<IUnknown> real;
  *real.Receive() = static_cast<IUnknown*>(answer);
  const Interface* const description = FindInterface(id);
  if (description != nullptr) {
    *out = &face.owner->FaceOf(*description, real.Get());
    face.owner->AddUser();
  } else {
    ComPtr<IUnknown>(real).CopyTo(reinterpret_cast<IUnknown**>(out));
  }
  return result;
}

}  // namespace

HRESULT STDMETHODCALLTYPE FaceQueryInterface(Face* face, REFIID id, void** out) {
  if (out == nullptr) return E_POINTER;
  try {
    const Stay stay(*face->owner);
    CallLog& log = face->owner->Border().Log();
    const std::string name = NameOfCall(*face, "QueryInterface");
    log.Begin(name + "(" + NameOfInterface(id) + ")");
    const HRESULT result = AskObject(*face, id, out);
    const bool goes_unseen = SUCCEEDED(result) && FindInterface(id) == nullptr;
    log.End(name, NameOfResult(result) + (goes_unseen ? ", its calls are not seen" : ""));
    return result;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

ULONG STDMETHODCALLTYPE FaceAddRef(Face* face) {
  const ULONG users = face->owner->AddUser();
  face->owner->Border().Log().Count(NameOfCall(*face, "AddRef()"), std::to_string(users));
  return users;
}

ULONG STDMETHODCALLTYPE FaceRelease(Face* face) {
  const Stay stay(*face->owner);
  const ULONG users = face->owner->RemoveUser();
  face->owner->Border().Log().Count(NameOfCall(*face, "Release()"), std::to_string(users));
  return users;
}

}  // namespace quorvane::programs
