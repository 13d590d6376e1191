#pragma once

#include <algorithm>
#include <memory>

#include "tests/support/component/fake_storage.h"
#include "tests/support/component/guarded_memory.h"
#include "tests/support/component/hostile_container.h"

namespace quorvane::component {

/// A part of the hostile container that the control holds or calls: in guarded memory, gone with
/// its last reference, and calling its container back from each of its methods, those of IUnknown
/// included.
template <class... Interfaces>
class HostilePart : public Interfaces... {
 public:
  explicit HostilePart(HostileContainer& container) : container_(container) {
    container_.CountPart(1);
  }
  HostilePart(const HostilePart&) = delete;
  HostilePart& operator=(const HostilePart&) = delete;

  static void* operator new(std::size_t size) { return guarded_memory::Take(size); }
  static void operator delete(void* block) { guarded_memory::Give(block); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    *out = nullptr;
    ++references_;
    HRESULT answer = container_.OnCallback("QueryInterface");
    answer = FAILED(answer) ? E_NOINTERFACE : Answer(id, out);
    Drop();
    return answer;
  }
  ULONG STDMETHODCALLTYPE AddRef() override {
    const ULONG now = ++references_;
    if (CountsAloud() && container_.ChangesItsMind()) Call("AddRef");
    return now;
  }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    HostileContainer& container = container_;
    const bool is_loud = CountsAloud() && container.ChangesItsMind();
    if (left == 0) End();
    if (is_loud) container.OnCallback("Release");
    return left;
  }

 protected:
  virtual ~HostilePart() { container_.CountPart(-1); }
  /// The interface of that id, uncounted, or null.
  virtual void* Find(REFIID id) = 0;
  /// Whether it lets the container run when it is counted.
  virtual bool CountsAloud() const { return true; }
  /// What it answers to QueryInterface.
  virtual HRESULT Answer(REFIID id, void** out) {
    *out = Find(id);
    if (*out == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

  /// Lets the container run, which may let go of this part meanwhile.
  HRESULT Call(std::string_view name) {
    ++references_;
    const HRESULT answer = container_.OnCallback(name);
    Drop();
    return answer;
  }
  HostileContainer& Container() { return container_; }

 private:
  void Drop() {
    if (--references_ == 0) End();
  }
  // References that come and go meanwhile do not end it again.
  void End() {
    references_ = 1'000'000;
    delete this;
  }

  HostileContainer& container_;
  ULONG references_ = 1;
};

/// The interface of the id among those of an object, uncounted, or null.
template <class... Interfaces, class Object>
void* FindAmong(Object& object, REFIID id) {
  void* found = nullptr;
  (void)((IsEqualIID(id, __uuidof(Interfaces)) &&
          (found = static_cast<Interfaces*>(&object), true)) ||
         ...);
  return found;
}

/// Frame and document window, which a control has no business with.
class HostileFrame final : public HostilePart<IOleInPlaceFrame> {
 public:
  using HostilePart::HostilePart;

  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override {
    *window = Container().Window();
    return Call("frame GetWindow");
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return Call("frame Help"); }
  HRESULT STDMETHODCALLTYPE GetBorder(LPRECT) override { return Call("GetBorder"); }
  HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS) override {
    return Call("RequestBorderSpace");
  }
  HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS) override {
    return Call("SetBorderSpace");
  }
  HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject*, LPCOLESTR) override {
    return Call("SetActiveObject");
  }
  HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override {
    return Call("InsertMenus");
  }
  HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) override { return Call("SetMenu"); }
  HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) override { return Call("RemoveMenus"); }
  HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR) override { return Call("SetStatusText"); }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return Call("EnableModeless"); }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG, WORD) override {
    return Call("frame TranslateAccelerator");
  }

 private:
  void* Find(REFIID id) override {
    return FindAmong<IOleInPlaceFrame, IOleInPlaceUIWindow, IOleWindow, IUnknown>(*this, id);
  }
};

class HostileSite final : public HostilePart<IOleClientSite, IOleInPlaceSiteEx> {
 public:
  explicit HostileSite(HostileContainer& container)
      : HostilePart(container), kind_(container.Dice().Below(4)) {}

  HRESULT STDMETHODCALLTYPE SaveObject() override { return Call("SaveObject"); }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** out) override {
    *out = nullptr;
    return Call("GetMoniker");
  }
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** out) override {
    *out = nullptr;
    return Call("GetContainer");
  }
  HRESULT STDMETHODCALLTYPE ShowObject() override { return Call("ShowObject"); }
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return Call("OnShowWindow"); }
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return Call("RequestLayout"); }

  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override {
    *window = Container().ChangesItsMind() ? reinterpret_cast<HWND>(0xBAD) : Container().Window();
    return Call("GetWindow");
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return Call("site Help"); }

  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return Call("CanInPlaceActivate"); }
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override {
    return Entered(Call("OnInPlaceActivate"));
  }
  HRESULT STDMETHODCALLTYPE OnUIActivate() override { return Call("OnUIActivate"); }
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame,
                                             IOleInPlaceUIWindow** document, RECT* place,
                                             RECT* clip, OLEINPLACEFRAMEINFO*) override {
    *frame = kind_ % 2 == 0 ? new HostileFrame(Container()) : nullptr;
    *document = kind_ == 0 ? new HostileFrame(Container()) : nullptr;
    *place = {5, 5, 33, 33};
    *clip = {0, 0, 500, 500};
    return Call("GetWindowContext");
  }
  HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return Call("Scroll"); }
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return Call("OnUIDeactivate"); }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override {
    Container().CountVisit(0, 0, 1);
    return Call("OnInPlaceDeactivate");
  }
  HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return Call("DiscardUndoState"); }
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return Call("DeactivateAndUndo"); }
  HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT) override { return Call("OnPosRectChange"); }

  HRESULT STDMETHODCALLTYPE OnInPlaceActivateEx(BOOL* no_redraw, DWORD) override {
    if (no_redraw != nullptr) *no_redraw = TRUE;
    return Entered(Call("OnInPlaceActivateEx"));
  }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivateEx(BOOL) override {
    HostileContainer& container = Container();
    const HRESULT answer = Call("OnInPlaceDeactivateEx");
    container.CountVisit(0, 0, SUCCEEDED(answer) ? 1 : 0);
    return answer;
  }
  HRESULT STDMETHODCALLTYPE RequestUIActivate() override { return Call("RequestUIActivate"); }

 private:
  HRESULT Entered(HRESULT answer) {
    Container().CountVisit(SUCCEEDED(answer) ? 1 : 0, FAILED(answer) ? 1 : 0, 0);
    return answer;
  }
  void* Find(REFIID id) override {
    if (kind_ != 3 && IsEqualIID(id, IID_IOleInPlaceSiteEx))
      return static_cast<IOleInPlaceSiteEx*>(this);
    return FindAmong<IOleClientSite, IOleInPlaceSite>(*this, id);
  }
  unsigned kind_;
};

class HostilePropertySink final : public HostilePart<IPropertyNotifySink> {
 public:
  using HostilePart::HostilePart;
  HRESULT STDMETHODCALLTYPE OnChanged(DISPID) override;
  HRESULT STDMETHODCALLTYPE OnRequestEdit(DISPID) override { return Call("OnRequestEdit"); }

 private:
  void* Find(REFIID id) override { return FindAmong<IPropertyNotifySink, IUnknown>(*this, id); }
};

/// An object of automation: a sink of events, and the value of an argument or of a form's entry.
class HostileDispatch final : public HostilePart<IDispatch> {
 public:
  using HostilePart::HostilePart;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return Call("GetTypeInfoCount"); }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** out) override {
    *out = nullptr;
    return FAILED(Call("GetTypeInfo")) ? E_FAIL : E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return FAILED(Call("GetIDsOfNames")) ? E_FAIL : E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (result != nullptr) {
      V_VT(result) = VT_I2;
      V_I2(result) = 7;
    }
    return Call("Invoke");
  }

 private:
  void* Find(REFIID id) override {
    const bool is_source = IsEqualIID(id, kSourceId);
    return is_source ? static_cast<IDispatch*>(this) : FindAmong<IDispatch, IUnknown>(*this, id);
  }
};

class HostileAdviseSink final : public HostilePart<IAdviseSink> {
 public:
  using HostilePart::HostilePart;
  void STDMETHODCALLTYPE OnDataChange(FORMATETC*, STGMEDIUM*) override { Call("OnDataChange"); }
  void STDMETHODCALLTYPE OnViewChange(DWORD, LONG) override { Call("OnViewChange"); }
  void STDMETHODCALLTYPE OnRename(IMoniker*) override { Call("OnRename"); }
  void STDMETHODCALLTYPE OnSave() override { Call("OnSave"); }
  void STDMETHODCALLTYPE OnClose() override { Call("OnClose"); }

 private:
  void* Find(REFIID id) override { return FindAmong<IAdviseSink, IUnknown>(*this, id); }
};

/// What a failing sink leaves on the thread for its caller to read.
class HostileErrorInfo final : public HostilePart<IErrorInfo> {
 public:
  using HostilePart::HostilePart;
  HRESULT STDMETHODCALLTYPE GetGUID(GUID* out) override {
    *out = {};
    return Call("GetGUID");
  }
  HRESULT STDMETHODCALLTYPE GetSource(BSTR* out) override { return GiveText("GetSource", out); }
  HRESULT STDMETHODCALLTYPE GetDescription(BSTR* out) override {
    return GiveText("GetDescription", out);
  }
  HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* out) override { return GiveText("GetHelpFile", out); }
  HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* out) override {
    *out = 0;
    return Call("GetHelpContext");
  }

 private:
  HRESULT GiveText(std::string_view call, BSTR* out) {
    const HRESULT answer = Call(call);
    *out = FAILED(answer) ? nullptr : ::SysAllocString(L"sink");
    return answer;
  }
  void* Find(REFIID id) override { return FindAmong<IErrorInfo, IUnknown>(*this, id); }
  // Wine's SetErrorInfo still has at hand what it has just given back.
  bool CountsAloud() const override { return false; }
};

inline HRESULT STDMETHODCALLTYPE HostilePropertySink::OnChanged(DISPID) {
  if (Container().ChangesItsMind()) {
    const Com<IErrorInfo> error(new HostileErrorInfo(Container()));
    ::SetErrorInfo(0, error.Get());
  }
  return Call("OnChanged");
}

/// A stream over bytes that come and go in small pieces and that lies about their count. Shares
/// them with others of its kind.
class HostileStream final : public OtherStreamCalls<HostilePart<IStream>> {
 public:
  using Bytes = std::shared_ptr<std::vector<unsigned char>>;

  HostileStream(HostileContainer& container, Bytes bytes, ULONG piece)
      : OtherStreamCalls(container), bytes_(std::move(bytes)), piece_(piece) {}

  HRESULT STDMETHODCALLTYPE Read(void* target, ULONG count, ULONG* read) override {
    const ULONG left = static_cast<ULONG>(bytes_->size() - std::min(bytes_->size(), position_));
    const ULONG n = std::min({count, left, piece_});
    if (n > 0) std::copy_n(bytes_->data() + position_, n, static_cast<unsigned char*>(target));
    position_ += n;
    if (read != nullptr) *read = Container().ChangesItsMind() ? count + 1 : n;
    return Call("Read");
  }
  HRESULT STDMETHODCALLTYPE Write(const void* source, ULONG count, ULONG* written) override {
    const ULONG n = std::min(count, piece_);
    if (bytes_->size() < position_ + n) bytes_->resize(position_ + n);
    std::copy_n(static_cast<const unsigned char*>(source), n, bytes_->data() + position_);
    position_ += n;
    if (written != nullptr) *written = n;
    return Call("Write");
  }
  HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD, ULARGE_INTEGER*) override {
    position_ = move.LowPart % 1000;
    return Call("Seek");
  }
  HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) override {
    bytes_->resize(size.LowPart % 100'000);
    return Call("SetSize");
  }

 private:
  HRESULT Other() override { return FAILED(Call("stream")) ? E_FAIL : E_NOTIMPL; }
  void* Find(REFIID id) override {
    return FindAmong<IStream, ISequentialStream, IUnknown>(*this, id);
  }
  Bytes bytes_;
  ULONG piece_;
  std::size_t position_ = 0;
};

/// A storage with one stream, whatever it is called.
class HostileStorage final : public OtherStorageCalls<HostilePart<IStorage>> {
 public:
  HostileStorage(HostileContainer& container, std::vector<unsigned char> bytes)
      : OtherStorageCalls(container),
        bytes_(std::make_shared<std::vector<unsigned char>>(std::move(bytes))) {}

  HRESULT STDMETHODCALLTYPE CreateStream(const OLECHAR*, DWORD, DWORD, DWORD,
                                         IStream** out) override {
    bytes_->clear();
    return GiveStream("CreateStream", out);
  }
  HRESULT STDMETHODCALLTYPE OpenStream(const OLECHAR*, void*, DWORD, DWORD,
                                       IStream** out) override {
    return GiveStream("OpenStream", out);
  }
  HRESULT STDMETHODCALLTYPE SetClass(REFCLSID) override { return Call("SetClass"); }

 private:
  HRESULT GiveStream(std::string_view call, IStream** out) {
    *out = nullptr;
    const Com<IStream> stream(new HostileStream(Container(), bytes_, 50));
    const HRESULT answer = Call(call);
    if (SUCCEEDED(answer)) *out = Com<IStream>(stream).Detach();
    return answer;
  }
  HRESULT Other() override { return FAILED(Call("storage")) ? E_FAIL : E_NOTIMPL; }
  void* Find(REFIID id) override { return FindAmong<IStorage, IUnknown>(*this, id); }
  HostileStream::Bytes bytes_;
};

class HostileErrorLog final : public HostilePart<IErrorLog> {
 public:
  using HostilePart::HostilePart;
  HRESULT STDMETHODCALLTYPE AddError(LPCOLESTR, EXCEPINFO*) override { return Call("AddError"); }

 private:
  void* Find(REFIID id) override { return FindAmong<IErrorLog, IUnknown>(*this, id); }
};

class HostileBag final : public HostilePart<IPropertyBag> {
 public:
  using HostilePart::HostilePart;
  HRESULT STDMETHODCALLTYPE Read(LPCOLESTR, VARIANT* value, IErrorLog*) override {
    if (!Container().ChangesItsMind()) Container().FillVariant(value);
    return Call("bag Read");
  }
  HRESULT STDMETHODCALLTYPE Write(LPCOLESTR, VARIANT*) override { return Call("bag Write"); }

 private:
  void* Find(REFIID id) override { return FindAmong<IPropertyBag, IUnknown>(*this, id); }
};

/// A container's object around the control: asked for what it does not have, it asks the control.
class HostileOuter final : public HostilePart<IUnknown> {
 public:
  using HostilePart::HostilePart;
  Com<IUnknown> inner;

 private:
  HRESULT Answer(REFIID id, void** out) override {
    const bool is_own = IsEqualIID(id, IID_IUnknown);
    return is_own || !inner ? HostilePart::Answer(id, out) : inner->QueryInterface(id, out);
  }
  void* Find(REFIID id) override { return FindAmong<IUnknown>(*this, id); }
};

}  // namespace quorvane::component
