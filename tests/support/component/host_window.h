#pragma once

#include <gtest/gtest.h>

#include "tests/support/component/com.h"

namespace quorvane::component {

/// A container's window, shown nowhere.
class HostWindow {
 public:
  HostWindow()
      : window_(::CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0,
                                  0, 300, 300, nullptr, nullptr, ::GetModuleHandleW(nullptr),
                                  nullptr)) {
    EXPECT_NE(window_, nullptr) << "needs a display";
  }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;
  ~HostWindow() { ::DestroyWindow(window_); }
  HWND Get() const { return window_; }

 private:
  HWND window_;
};

}  // namespace quorvane::component
