// The desktop's save dialog on Linux: the portal's if the session bus has
// one, else a dialog program run as a child process, with its arguments
// passed directly (no shell), its standard output read back as the chosen
// name.

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "zyn/platform/dialogs.h"
#include "zyn/platform/text.h"

extern char** environ;

namespace zyn::platform {

namespace {

struct ChildOutput {
  int exit_status = -1;  // -1 if the child didn't exit normally
  std::string out;
  std::string err;
};

// Runs `argv` with standard input from /dev/null and both outputs captured;
// nothing if the program can't be started.
std::optional<ChildOutput> RunChild(const std::vector<std::string>& argv) {
  int out_pipe[2], err_pipe[2];
  if (pipe2(out_pipe, O_CLOEXEC) != 0) return std::nullopt;
  if (pipe2(err_pipe, O_CLOEXEC) != 0) {
    close(out_pipe[0]);
    close(out_pipe[1]);
    return std::nullopt;
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, out_pipe[1], 1);
  posix_spawn_file_actions_adddup2(&actions, err_pipe[1], 2);
  std::vector<char*> args;
  for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);
  pid_t pid = 0;
  const int rc = posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(out_pipe[1]);
  close(err_pipe[1]);
  if (rc != 0) {
    close(out_pipe[0]);
    close(err_pipe[0]);
    return std::nullopt;
  }
  ChildOutput result;
  pollfd fds[2] = {{out_pipe[0], POLLIN, 0}, {err_pipe[0], POLLIN, 0}};
  std::string* sinks[2] = {&result.out, &result.err};
  int open_count = 2;
  char buffer[4096];
  while (open_count > 0) {
    if (poll(fds, 2, -1) < 0) {
      if (errno == EINTR) continue;
      break;
    }
    for (int i = 0; i < 2; ++i) {
      if (fds[i].fd < 0 || fds[i].revents == 0) continue;
      const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
      if (n > 0) {
        // A dialog answers with one name; more than that is not kept.
        if (sinks[i]->size() < (1u << 20)) sinks[i]->append(buffer, static_cast<std::size_t>(n));
      } else if (n == 0 || errno != EINTR) {
        close(fds[i].fd);
        fds[i].fd = -1;
        --open_count;
      }
    }
  }
  for (const pollfd& p : fds)
    if (p.fd >= 0) close(p.fd);
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(status)) result.exit_status = WEXITSTATUS(status);
  return result;
}

bool HasDesktop() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return true;
  }
  return false;
}

// The name the dialog starts with: the file name in the default folder,
// unless the name has a folder of its own.
std::string StartPath(const TFileSaveDialog& d) {
  std::string name = ToUTF8(d.FileName());
  std::string folder = ToUTF8(d.DefaultFolder());
  if (!name.empty() && name.front() == '/') return name;
  if (folder.empty()) return name;
  if (folder.back() != '/') folder += '/';
  return folder + name;
}

// The file types with the chosen one first: neither program takes an index.
std::vector<TFileTypeItem> TypesChosenFirst(const TFileSaveDialog& d) {
  std::vector<TFileTypeItem> types = d.FileTypes();
  const int i = d.FileTypeIndex() - 1;
  if (i > 0 && i < static_cast<int>(types.size()))
    std::rotate(types.begin(), types.begin() + i, types.begin() + i + 1);
  return types;
}

std::string MasksWithBlanks(std::u16string_view masks) {
  std::string s = ToUTF8(masks);
  std::replace(s.begin(), s.end(), ';', ' ');
  return s;
}

std::vector<std::string> ZenityCommand(const TFileSaveDialog& d) {
  std::vector<std::string> argv = {"zenity", "--file-selection", "--save",
                                   "--title=" + ToUTF8(d.Title())};
  const std::string start = StartPath(d);
  if (!start.empty()) argv.push_back("--filename=" + start);
  for (const TFileTypeItem& t : TypesChosenFirst(d))
    argv.push_back("--file-filter=" + ToUTF8(t.DisplayName) + " | " + MasksWithBlanks(t.FileMask));
  return argv;
}

std::vector<std::string> KdialogCommand(const TFileSaveDialog& d) {
  std::string filter;
  for (const TFileTypeItem& t : TypesChosenFirst(d)) {
    if (!filter.empty()) filter += '\n';
    filter += MasksWithBlanks(t.FileMask) + "|" + ToUTF8(t.DisplayName);
  }
  std::string start = StartPath(d);
  if (start.empty()) start = ".";
  return {"kdialog", "--title", ToUTF8(d.Title()), "--getsavefilename", start, filter};
}

}  // namespace

TSaveDialogReply RunDesktopSaveDialog(TFileSaveDialog& dialog) {
  TSaveDialogReply reply;
  reply.FileName = dialog.FileName();
  reply.FileTypeIndex = dialog.FileTypeIndex();
  if (std::optional<TSaveDialogReply> portal = RunPortalSaveDialog(dialog)) return *portal;
  if (!HasDesktop()) {
    reply.ErrorCode = kDialogNoDesktop;
    return reply;
  }
  for (const auto& command : {ZenityCommand(dialog), KdialogCommand(dialog)}) {
    const std::optional<ChildOutput> child = RunChild(command);
    if (!child) continue;  // not installed: try the next program
    if (child->exit_status == 0) {
      std::string name = child->out;
      if (!name.empty() && name.back() == '\n') name.pop_back();
      reply.Confirmed = true;
      reply.FileName = FromUTF8(name);
    } else if (child->exit_status != 1 ||
               child->err.find("cannot open display") != std::string::npos) {
      // 1 is the programs' cancel; anything else, or a display that isn't
      // there, is a failure.
      reply.ErrorCode = kDialogFailure;
    }
    return reply;
  }
  reply.ErrorCode = kDialogNoDesktop;
  return reply;
}

}  // namespace zyn::platform
