#pragma once

#include <functional>
#include <string>
#include <vector>

#include "programs/form_host/windows/interactive/calls_view.h"
#include "programs/form_host/windows/interactive/document.h"
#include "programs/form_host/windows/interactive/look.h"
#include "programs/form_host/windows/interactive/settings_list.h"

namespace quorvane::programs {

/// The top-level window as its parts need it: its handle lives before and after all of them. Raises
/// the system's error when there is no display.
class TopWindow {
 public:
  explicit TopWindow(WNDPROC procedure);
  TopWindow(const TopWindow&) = delete;
  TopWindow& operator=(const TopWindow&) = delete;
  ~TopWindow();

  [[nodiscard]] HWND Handle() const { return handle_; }

 private:
  HWND handle_;
};

/// The window for people: the form, its settings to edit, the log of the calls.
class MainWindow {
 public:
  explicit MainWindow(CallLog& log);
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;
  ~MainWindow();

  /// Opens the form, or a new one for an empty name; raises what that raises.
  void Start(const std::string& form);
  /// Shows the window and serves its messages until the user closes it.
  void Run();

 private:
  static LRESULT CALLBACK OnMessage(HWND handle, UINT message, WPARAM word, LPARAM value);
  [[nodiscard]] LRESULT Take(UINT message, WPARAM word, LPARAM value);
  [[nodiscard]] bool IsForUs(MSG& message);
  [[nodiscard]] bool LeavesCalls(const MSG& message) const;

  // Orders of the user, by their numbers in commands.h. Each failure is told.
  void OnCommand(int id, int notice);
  void Order(int id);
  void New();
  void Open();
  [[nodiscard]] bool Save();
  [[nodiscard]] bool SaveAs();
  [[nodiscard]] bool SaveTo(const std::string& file);
  void Exit();
  void Resize(const SIZE& pixels);
  void TellCrc();
  void ToggleCounts();
  void ShowHelp();
  void OnEnter();
  void OnEscape();

  /// Whether the present form may be given up: the user is asked when it needs saving.
  [[nodiscard]] bool MayLeave();
  /// Hands a typed value to the control; false when that refuses it, which is told.
  [[nodiscard]] bool HandOver(SettingsList::Index setting);
  [[nodiscard]] bool HandOverAll();
  void ShowSetting(SettingsList::Index setting);
  void ShowForm();
  void ShowTitle(bool is_changed);
  void Say(const std::string& line);
  /// Notes what is done in the log and does it; a failure is told, and gives false.
  bool Try(const std::string& what, const std::function<void()>& body);

  void MakeButtons();
  void Layout();
  [[nodiscard]] SIZE LeastSize() const;
  void OnSettingsOfSystem();
  void MoveFocus(WPARAM target, bool is_part) const;
  void KeepFocus(bool is_active);

  CallLog& log_;
  Look look_;
  TopWindow top_;
  std::vector<HWND> buttons_;
  SettingsList settings_;
  HWND calls_name_;
  CallsView calls_;
  HWND status_;
  Document document_;
  HACCEL keys_;
  HWND focus_ = nullptr;  // of the window, while another program has it
};

}  // namespace quorvane::programs
