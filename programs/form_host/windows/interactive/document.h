#pragma once

#include <memory>
#include <string>

#include "programs/form_host/windows/container_form.h"
#include "programs/form_host/windows/interactive/sizing_border.h"

namespace quorvane::programs {

/// The form that is open in the window for people, and its file. There is always one, from the
/// first New() or Open() on.
class Document {
 public:
  /// The forms become children of the window. `on_resize`: see SizingBorder.
  Document(HWND window, CallLog& log, SizingBorder::Listener on_resize)
      : window_(window), log_(log), on_resize_(std::move(on_resize)) {}

  /// Each puts another form in the place of the present one, which is given up; a failure is raised
  /// and leaves that one as it is. The new control is activated.
  void New();
  void Open(const std::string& file);
  /// Saves to that file, which becomes the form's own. Raises FormFileError; the form needs saving
  /// then as before.
  void SaveTo(const std::string& file);
  /// Gives up the form, before its window goes.
  void Close() { shown_.reset(); }

  /// Whether something would be lost. Asks the control, so the log tells it.
  [[nodiscard]] bool NeedsSaving();

  [[nodiscard]] ContainerForm& Form() { return shown_->form; }
  [[nodiscard]] bool IsOpen() const { return shown_ != nullptr; }
  /// Its name, UTF-8; empty for a new form.
  [[nodiscard]] const std::string& File() const { return file_; }
  /// The same without folders, as titles show it.
  [[nodiscard]] std::string Name() const;

 private:
  struct Shown {
    Shown(HWND window, CallLog& log, ChangeListener on_change, SizingBorder::Listener on_resize)
        : form(std::move(on_change), &log, window), border(form.Window(), std::move(on_resize)) {}
    ContainerForm form;
    SizingBorder border;
  };
  [[nodiscard]] std::unique_ptr<Shown> Make();
  void Take(std::unique_ptr<Shown> next, const std::string& file);

  HWND window_;
  CallLog& log_;
  SizingBorder::Listener on_resize_;
  std::unique_ptr<Shown> shown_;
  std::string file_;
  bool was_changed_ = false;      // since it was opened
  bool was_not_written_ = false;  // what the control believes to be saved
};

}  // namespace quorvane::programs
