#include "programs/form_host/windows/interactive/document.h"

#include "programs/form_host/form_file.h"
#include "runtime/utf8.h"

namespace quorvane::programs {

std::unique_ptr<Document::Shown> Document::Make() {
  const ChangeListener note_change = [this](const Text& /*property*/) { was_changed_ = true; };
  return std::make_unique<Shown>(window_, log_, note_change, on_resize_);
}

void Document::Take(std::unique_ptr<Shown> next, const std::string& file) {
  shown_ = std::move(next);
  file_ = file;
  was_not_written_ = false;
  was_changed_ = false;
  shown_->form.Activate();
}

void Document::New() {
  auto next = Make();
  next->form.InitNew();
  Take(std::move(next), "");
}

void Document::Open(const std::string& file) {
  FormBag bag(LoadForm(file));
  auto next = Make();
  next->form.Load(bag);
  for (const Text& name : bag.Unread())
    log_.Note("the control has not read the entry " + ToUtf8(name));
  Take(std::move(next), file);
}

// The control counts as clean once it has written to the bag.
void Document::SaveTo(const std::string& file) {
  FormBag bag;
  was_not_written_ = true;
  shown_->form.Save(bag);
  SaveForm(file, bag.Entries());
  was_not_written_ = false;
  file_ = file;
}

// A control that was never saved says that it needs to be, though there is nothing to lose yet.
bool Document::NeedsSaving() {
  if (file_.empty() && !was_changed_) return false;
  return was_not_written_ || shown_->form.NeedsSaving();
}

std::string Document::Name() const {
  if (file_.empty()) return "a new form";
  return file_.substr(file_.find_last_of("/\\") + 1);
}

}  // namespace quorvane::programs
