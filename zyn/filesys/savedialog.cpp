#include "zyn/filesys/savedialog.h"

#include <cstdio>

#include "zyn/base/scanners.h"
#include "zyn/filesys/paths.h"
#include "zyn/filesys/unit.h"
#include "zyn/platform/casefold.h"
#include "zyn/platform/files.h"
#include "zyn/streams/tagscan.h"
#include "zyn/stringl/words.h"

namespace Zyn_filesys {

using zyn::platform::mrCancel;
using zyn::platform::mrNo;
using zyn::platform::mrOk;
using zyn::platform::mrYes;

TUnivSaveDialog::TUnivSaveDialog(TComponent* AOwner) : TCommonDialog(AOwner) {}

TUnivSaveDialog::~TUnivSaveDialog() = default;

void TUnivSaveDialog::Fail(std::u16string_view text) const {
  throw EZYNFileSysError(Zyn_zynbase::ComponentMessage(*this, text));
}

std::u16string TUnivSaveDialog::ExtractParamAsString(std::u16string_view ParName) const {
  return Zyn_streams::ScanForXMLAttrib(FParams, ParName);
}

int TUnivSaveDialog::ExtractParamAsInt(std::u16string_view ParName) const {
  const std::u16string value = ExtractParamAsString(ParName);
  if (value.empty()) Fail(std::u16string(ParName) + u" is not specified in property Parameters");
  int pos = 1;
  return zyn::internal::ScanDecimal(value, pos);
}

double TUnivSaveDialog::ExtractParamAsDouble(std::u16string_view ParName) const {
  const std::u16string value = ExtractParamAsString(ParName);
  if (value.empty()) Fail(std::u16string(ParName) + u" is not specified in property Parameters");
  int pos = 1;
  return zyn::internal::ScanFPNum(value, true, Zyn_zynbase::dsBoth, pos);
}

bool TUnivSaveDialog::IsForbiddenDir(std::u16string_view path) const {
  if (path.empty() || FForbiddenDir.empty()) return false;
  return zyn::platform::AnsiLowerCase(path).starts_with(
      zyn::platform::AnsiLowerCase(FForbiddenDir));
}

void TUnivSaveDialog::SaveDiagTypeChange(TObject* /*sender*/) {
  if (SDiag == nullptr) return;
  const int index = SDiag->FileTypeIndex();
  const auto& types = SDiag->FileTypes();
  if (index < 1 || index > static_cast<int>(types.size())) return;
  const std::u16string& mask = types[static_cast<std::size_t>(index - 1)].FileMask;
  const std::u16string ext = mask.empty() ? std::u16string() : mask.substr(1);
  if (ext == u".*") return;
  zyn::platform::IFileDialog* box = SDiag->Dialog();
  std::u16string name = box != nullptr ? box->GetFileName() : std::u16string();
  if (name.empty()) name = SDiag->FileName();
  if (name.empty() || box == nullptr) return;
  box->SetFileName(zyn::platform::ChangeFileExt(zyn::platform::ExtractFileName(name), ext));
}

TUnivSaveDialog::Step TUnivSaveDialog::OverwriteCheck() {
  bool exists = false;
  if (FUseStdDiag) {
    exists = zyn::platform::FileExists(FFileName);
  } else if (FOnFileCheck) {
    FOnFileCheck(this, FFileName, exists);
  }
  if (!exists) return Step::kDone;
  if (!FOnOverwrite) Fail(u"Overwrite dialog is not assigned");
  TModalResult reply = mrNo;
  FOnOverwrite(this, FFileName, reply);
  if (reply == mrYes) return Step::kDone;
  if (reply == mrCancel) return Step::kGiveUp;
  if (reply == mrNo) return Step::kAskAgain;
  Fail(u"Invalid reply argument from overwrite dialog");
}

bool TUnivSaveDialog::Execute() {
  while (true) {
    TModalResult action = mrCancel;
    if (FUseStdDiag) {
      auto dialog = std::make_unique<TFileSaveDialog>();
      SDiag = dialog.get();
      struct Forget {
        TFileSaveDialog*& p;
        ~Forget() { p = nullptr; }
      } forget{SDiag};
      Zyn_stringl::TOpenStringArray tokens;
      const int count = Zyn_stringl::Tokenize(ExtractParamAsString(u"filter"), u"|", tokens);
      for (int i = 0; i + 1 < count; i += 2)
        dialog->FileTypes().push_back(
            {tokens[static_cast<std::size_t>(i)], tokens[static_cast<std::size_t>(i + 1)]});
      const std::u16string ext = ExtractParamAsString(u"ext");
      dialog->SetTitle(ExtractParamAsString(u"caption"));
      dialog->SetDefaultFolder(ExtractParamAsString(u"initialdir"));
      dialog->SetFileTypeIndex(FFilterIndex);
      dialog->SetFileName(FFileName);
      dialog->SetOnTypeChange([this](TObject* sender) { SaveDiagTypeChange(sender); });
      if (dialog->Execute()) {
        action = mrOk;
      } else if (const std::uint32_t code = zyn::platform::CommDlgExtendedError(); code != 0) {
        char hex[16];
        std::snprintf(hex, sizeof hex, "%04X", code);
        Fail(u"Error in standard dialog (errnum = $" + zyn::platform::FromUTF8(hex) + u").");
      }
      FFileName = dialog->FileName();
      FFilterIndex = dialog->FileTypeIndex();
      if (!ext.empty()) FFileName = StripExtension(FFileName) + u"." + ext;
    } else {
      if (!FOnFileSelect) Fail(u"File select dialog is not assigned");
      FOnFileSelect(this, FParams, action, FFileName);
    }
    if (action != mrOk) return false;

    const std::u16string path = zyn::platform::ExtractFilePath(FFileName);
    if (IsForbiddenDir(path)) {
      TModalResult reply = mrYes;
      if (FOnForbiddenDir) FOnForbiddenDir(this, path, reply);
      if (reply == mrCancel) return false;
      if (reply != mrYes) continue;
    }
    switch (OverwriteCheck()) {
      case Step::kDone:
        return true;
      case Step::kGiveUp:
        return false;
      case Step::kAskAgain:
        break;
    }
  }
}

}  // namespace Zyn_filesys
