#pragma once

#include <array>
#include <functional>
#include <optional>

#include "programs/form_host/settings.h"
#include "programs/form_host/windows/com.h"
#include "programs/form_host/windows/interactive/look.h"

namespace quorvane::programs {

/// The seven settings as rows of name, type and value. A value is edited in its place; Enter, the
/// way out of the field, or an order that needs it hands it over, and Escape brings back the old
/// one.
class SettingsList {
 public:
  using Index = std::size_t;

  /// Its parts become children of the window, which sends on their notices: see OnCommand().
  explicit SettingsList(HWND window);

  /// The longest text that can be typed, in 16-bit characters.
  static constexpr std::size_t kLongest = 32767;

  /// Shows a value and forgets what was typed.
  void Show(Index setting, const TaggedValue& value);
  /// Shows again what Show() has shown.
  void Restore(Index setting) const;
  /// What was typed since, or nothing. Raises FormFileError for what is no value or too long.
  [[nodiscard]] std::optional<TaggedValue> Typed(Index setting) const;
  /// Whether anything was typed since.
  [[nodiscard]] bool IsTyped(Index setting) const;
  /// The one whose value has the keyboard.
  [[nodiscard]] std::optional<Index> Focused() const;
  void Focus(Index setting) const;

  /// A notice of one of its fields, by the field's number; the setting whose field was left.
  [[nodiscard]] std::optional<Index> OnCommand(int id, int notice) const;

  /// Lays the rows out from there on; gives their height.
  int Place(const Look& look, int left, int top, int width) const;
  [[nodiscard]] int LeastWidth(const Look& look) const;

 private:
  struct Row {
    HWND name;
    HWND value;
    HWND type;
  };
  [[nodiscard]] int WidthOf(const Look& look, HWND Row::*column) const;

  std::array<Row, kSettings.size()> rows_;
  std::array<Text, kSettings.size()> shown_;
};

}  // namespace quorvane::programs
