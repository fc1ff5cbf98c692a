// zyn/filesys/savedialog.h
//
// TUnivSaveDialog asks the user for a name to save a file under, through the
// desktop's standard save dialog or a dialog of the host's own, and runs the
// same loop around either: a forbidden directory, an existing file, and the
// question whether to overwrite it.

#ifndef ZYN_FILESYS_SAVEDIALOG_H_
#define ZYN_FILESYS_SAVEDIALOG_H_

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "zyn/platform/dialogs.h"

namespace Zyn_filesys {

using zyn::platform::TCommonDialog;
using zyn::platform::TComponent;
using zyn::platform::TFileSaveDialog;
using zyn::platform::TModalResult;
using zyn::platform::TObject;

// The host's own dialog: sets UserAction (mrOk to accept) and the name.
using TOnFileSelectEvent =
    std::function<void(TObject* Sender, std::u16string_view Parameters, TModalResult& UserAction,
                       std::u16string& SelectedFileName)>;
// Tells whether the file exists, for the host's own dialog.
using TOnFileCheckEvent =
    std::function<void(TObject* Sender, std::u16string_view FileName, bool& FileDoesExist)>;
// Asks whether to overwrite: mrYes, mrNo (ask for another name) or mrCancel.
using TOnOverwriteEvent = std::function<void(TObject* Sender, std::u16string_view FileName,
                                             TModalResult& OverwriteReply)>;
// Asks about a name in the forbidden directory: mrYes lets it through,
// mrCancel gives up, anything else asks for another name.
using TOnForbiddenDirEvent =
    std::function<void(TObject* Sender, std::u16string_view Path, TModalResult& ForbiddenDirReply)>;

class TUnivSaveDialog : public TCommonDialog {
 public:
  explicit TUnivSaveDialog(TComponent* AOwner = nullptr);
  ~TUnivSaveDialog() override;

  // Attribute text such as `filter="Text|*.txt" ext=txt caption="Save"`.
  // The standard dialog reads "filter" (display names and masks separated by
  // "|"), "ext" (the extension every result takes), "caption" and
  // "initialdir"; a host's dialog gets the whole text.
  const std::u16string& Parameters() const noexcept { return FParams; }
  void SetParameters(std::u16string_view Value) { FParams = Value; }
  const std::u16string& FileName() const noexcept { return FFileName; }
  void SetFileName(std::u16string_view Value) { FFileName = Value; }
  bool UseStandardDialog() const noexcept { return FUseStdDiag; }
  void SetUseStandardDialog(bool Value) { FUseStdDiag = Value; }
  int FilterIndex() const noexcept { return FFilterIndex; }
  void SetFilterIndex(int Value) { FFilterIndex = Value; }
  const std::u16string& ForbiddenDir() const noexcept { return FForbiddenDir; }
  void SetForbiddenDir(std::u16string_view Value) { FForbiddenDir = Value; }
  void SetOnFileSelect(TOnFileSelectEvent Value) { FOnFileSelect = std::move(Value); }
  void SetOnFileCheck(TOnFileCheckEvent Value) { FOnFileCheck = std::move(Value); }
  void SetOnOverwrite(TOnOverwriteEvent Value) { FOnOverwrite = std::move(Value); }
  void SetOnForbiddenDir(TOnForbiddenDirEvent Value) { FOnForbiddenDir = std::move(Value); }

  // Asks until a name is settled (true, FileName holds it) or the user gives
  // up (false). Raises EZYNFileSysError when the standard dialog fails, a
  // needed event is not assigned, or OnOverwrite gives another reply.
  bool Execute() override;

  // The value of a key of Parameters; "" if it isn't there.
  std::u16string ExtractParamAsString(std::u16string_view ParName) const;
  // The value scanned as a decimal ("12abc" gives 12); a missing or empty
  // value raises "<ParName> is not specified in property Parameters".
  int ExtractParamAsInt(std::u16string_view ParName) const;
  // The same for a float, "." or "," as the decimal separator.
  double ExtractParamAsDouble(std::u16string_view ParName) const;

  // True if the lower-cased ForbiddenDir is a plain prefix of the
  // lower-cased path ("/data" also catches "/database/"); false for an empty
  // path or an empty ForbiddenDir.
  bool IsForbiddenDir(std::u16string_view path) const;

  // OnTypeChange of the standard dialog: gives the name in its edit box the
  // extension of the chosen file type (none for ".*").
  void SaveDiagTypeChange(TObject* sender);

 private:
  enum class Step { kAskAgain, kDone, kGiveUp };
  Step OverwriteCheck();
  [[noreturn]] void Fail(std::u16string_view text) const;

  std::u16string FParams;
  std::u16string FFileName;
  TOnFileSelectEvent FOnFileSelect;
  TOnFileCheckEvent FOnFileCheck;
  TOnOverwriteEvent FOnOverwrite;
  TOnForbiddenDirEvent FOnForbiddenDir;
  bool FUseStdDiag = true;
  int FFilterIndex = 1;
  std::u16string FForbiddenDir;
  TFileSaveDialog* SDiag = nullptr;  // the standard dialog while one is open
};

}  // namespace Zyn_filesys

#endif  // ZYN_FILESYS_SAVEDIALOG_H_
