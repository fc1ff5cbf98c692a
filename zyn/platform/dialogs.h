// zyn/platform/dialogs.h
//
// The platform's dialog frame: reply values, TCommonDialog, and
// TFileSaveDialog, the standard save dialog of the desktop. On Linux the
// dialog is a real one: xdg-desktop-portal's file chooser, else zenity, else
// kdialog; a host or a test can put any other dialog in its place with
// SetSaveDialogRunner.

#ifndef ZYN_PLATFORM_DIALOGS_H_
#define ZYN_PLATFORM_DIALOGS_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zyn/platform/object.h"

namespace zyn::platform {

// The reply of a dialog or of a question put to the user.
using TModalResult = int;
inline constexpr TModalResult mrNone = 0;
inline constexpr TModalResult mrOk = 1;
inline constexpr TModalResult mrCancel = 2;
inline constexpr TModalResult mrAbort = 3;
inline constexpr TModalResult mrRetry = 4;
inline constexpr TModalResult mrIgnore = 5;
inline constexpr TModalResult mrYes = 6;
inline constexpr TModalResult mrNo = 7;

// Error codes of the last dialog call, as CommDlgExtendedError gives them.
inline constexpr std::uint32_t kDialogNoDesktop = 0x0002;  // no display or no dialog program
inline constexpr std::uint32_t kDialogFailure = 0xFFFF;    // the dialog program failed

// A component that shows a modal dialog.
class TCommonDialog : public TComponent {
 public:
  using TComponent::TComponent;
  // Shows the dialog; true if the user confirmed it.
  virtual bool Execute() = 0;
};

// One entry of a dialog's list of file types. FileMask holds one or more
// masks separated by ';', such as "*.txt;*.csv".
struct TFileTypeItem {
  std::u16string DisplayName;
  std::u16string FileMask;
};

// The edit box of an open file dialog.
class IFileDialog {
 public:
  virtual ~IFileDialog() = default;
  virtual std::u16string GetFileName() const = 0;
  virtual void SetFileName(std::u16string_view Name) = 0;
};

class TFileSaveDialog;

// What a save dialog gives back when it closes.
struct TSaveDialogReply {
  bool Confirmed = false;
  std::uint32_t ErrorCode = 0;  // 0 for a plain cancel
  std::u16string FileName;      // also after a cancel: what the dialog held
  int FileTypeIndex = 1;
};

// Runs a save dialog for the open `dialog`: reads its settings, may fire its
// OnTypeChange and use its Dialog() interface, and gives the reply.
using TSaveDialogRunner = std::function<TSaveDialogReply(TFileSaveDialog& dialog)>;

// Replaces the dialog that TFileSaveDialog::Execute runs, for this process;
// an empty runner restores the desktop's. Gives the runner it replaced.
TSaveDialogRunner SetSaveDialogRunner(TSaveDialogRunner runner);

// The desktop's save dialog: the portal's (RunPortalSaveDialog) where the
// session bus has one, else zenity, else kdialog, started without a shell.
// The programs need DISPLAY or WAYLAND_DISPLAY; neither, or no dialog
// program, gives kDialogNoDesktop; a program that fails gives
// kDialogFailure. Neither program reports the chosen file type, so with them
// FileTypeIndex comes back as it went in. OnTypeChange never fires.
TSaveDialogReply RunDesktopSaveDialog(TFileSaveDialog& dialog);

// The save dialog of xdg-desktop-portal (FileChooser.SaveFile on the session
// bus), with title, folder, name, file types and the chosen type handed over;
// the chosen file and type come back. Nothing if there is no session bus or
// no file chooser on it, or the library was built without D-Bus support: the
// caller then asks another dialog. A cancel is no error; a portal that fails,
// answers in a way that names no local file, or leaves the bus while the
// dialog is open gives kDialogFailure.
std::optional<TSaveDialogReply> RunPortalSaveDialog(TFileSaveDialog& dialog);

// The error code of the last TFileSaveDialog::Execute of the process; 0
// after a confirmation or a plain cancel.
std::uint32_t CommDlgExtendedError();

class TFileSaveDialog : public TCommonDialog {
 public:
  using TCommonDialog::TCommonDialog;

  std::vector<TFileTypeItem>& FileTypes() noexcept { return file_types_; }
  const std::vector<TFileTypeItem>& FileTypes() const noexcept { return file_types_; }
  const std::u16string& Title() const noexcept { return title_; }
  void SetTitle(std::u16string_view Value) { title_ = Value; }
  const std::u16string& DefaultFolder() const noexcept { return default_folder_; }
  void SetDefaultFolder(std::u16string_view Value) { default_folder_ = Value; }
  // 1-based index into FileTypes.
  int FileTypeIndex() const noexcept { return file_type_index_; }
  void SetFileTypeIndex(int Value) { file_type_index_ = Value; }
  const std::u16string& FileName() const noexcept { return file_name_; }
  void SetFileName(std::u16string_view Value) { file_name_ = Value; }
  const TNotifyEvent& OnTypeChange() const noexcept { return on_type_change_; }
  void SetOnTypeChange(TNotifyEvent Value) { on_type_change_ = std::move(Value); }

  // The edit box while Execute runs; null otherwise.
  IFileDialog* Dialog() noexcept { return open_ ? &edit_box_ : nullptr; }

  // Runs the dialog; on return FileName and FileTypeIndex hold what the
  // dialog held, after a cancel too. CommDlgExtendedError tells a failure.
  bool Execute() override;

 private:
  class EditBox : public IFileDialog {
   public:
    std::u16string GetFileName() const override { return name; }
    void SetFileName(std::u16string_view Name) override { name = Name; }
    std::u16string name;
  };

  std::vector<TFileTypeItem> file_types_;
  std::u16string title_;
  std::u16string default_folder_;
  int file_type_index_ = 1;
  std::u16string file_name_;
  TNotifyEvent on_type_change_;
  EditBox edit_box_;
  bool open_ = false;
};

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_DIALOGS_H_
