#include "zyn/platform/dialogs.h"

#include <atomic>
#include <mutex>
#include <utility>

namespace zyn::platform {

namespace {

std::mutex runner_mutex;
TSaveDialogRunner& Runner() {
  static TSaveDialogRunner runner;
  return runner;
}

std::atomic<std::uint32_t> last_dialog_error{0};

}  // namespace

TSaveDialogRunner SetSaveDialogRunner(TSaveDialogRunner runner) {
  std::lock_guard lock(runner_mutex);
  return std::exchange(Runner(), std::move(runner));
}

std::uint32_t CommDlgExtendedError() { return last_dialog_error; }

bool TFileSaveDialog::Execute() {
  TSaveDialogRunner runner;
  {
    std::lock_guard lock(runner_mutex);
    runner = Runner();
  }
  if (!runner) runner = RunDesktopSaveDialog;
  edit_box_.name = file_name_;
  open_ = true;
  TSaveDialogReply reply;
  try {
    reply = runner(*this);
  } catch (...) {
    open_ = false;
    throw;
  }
  open_ = false;
  last_dialog_error = reply.Confirmed ? 0 : reply.ErrorCode;
  file_name_ = std::move(reply.FileName);
  file_type_index_ = reply.FileTypeIndex;
  return reply.Confirmed;
}

}  // namespace zyn::platform
