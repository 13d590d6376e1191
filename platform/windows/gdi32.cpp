#include "platform/gdi32.h"

#include "platform/windows/os_headers.h"

namespace quorvane {
namespace {

static_assert(sizeof(Rect) == sizeof(RECT));

template <class System, class Handle>
System SystemHandle(Handle handle) {
  return reinterpret_cast<System>(static_cast<std::intptr_t>(handle));
}

class WindowsGdi32 final : public Gdi32 {
 public:
  Brush CreateSolidBrush(Colour colour) override {
    return static_cast<Brush>(
        reinterpret_cast<std::intptr_t>(::CreateSolidBrush(static_cast<COLORREF>(colour))));
  }

  std::int32_t FillRect(DeviceContext hDC, const Rect& rectangle, Brush brush) override {
    return ::FillRect(SystemHandle<HDC>(hDC), reinterpret_cast<const RECT*>(&rectangle),
                      SystemHandle<HBRUSH>(brush));
  }

  std::int32_t DeleteObject(Brush brush) override {
    return ::DeleteObject(SystemHandle<HGDIOBJ>(brush));
  }
};

}  // namespace

Gdi32& gdi32() noexcept {
  static WindowsGdi32 instance;
  return instance;
}

}  // namespace quorvane
