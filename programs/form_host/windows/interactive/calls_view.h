#pragma once

#include <string>
#include <string_view>

#include "programs/form_host/call_log.h"
#include "programs/form_host/windows/com.h"

namespace quorvane::programs {

/// The log of calls in the window: text that can be selected and copied, not changed. It keeps the
/// latest two million characters; a log file keeps all.
class CallsView {
 public:
  explicit CallsView(HWND window);

  /// A piece of the log. It is kept until Update(), which the window is asked for by a message.
  void Add(std::string_view piece, CallLog::Kind kind);
  /// Shows what has come since. A selection stays where it is; without one the end is shown.
  void Update();
  void Clear();
  void SelectAll() const;

  void ShowCounts(bool shows) { shows_counts_ = shows; }
  [[nodiscard]] bool ShowsCounts() const { return shows_counts_; }
  [[nodiscard]] HWND Handle() const { return handle_; }

  /// The message that asks the window for Update().
  static constexpr UINT kUpdate = WM_APP + 1;

 private:
  HWND handle_;
  std::string added_;
  bool shows_counts_ = false;
};

}  // namespace quorvane::programs
