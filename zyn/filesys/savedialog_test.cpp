#include "zyn/filesys/savedialog.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <deque>
#include <future>
#include <optional>
#include <string>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/filesys/unit.h"
#include "zyn/platform/text.h"

namespace Zyn_filesys {
namespace {

using namespace zyn::platform;
using zyn::testing::Utf8;

// A scripted standard dialog: each round takes the next answer from a queue
// and records what the dialog showed. An answer may also pick another file
// type, which fires OnTypeChange as the real dialog would.
struct ScriptedDialog {
  struct Answer {
    bool confirmed;
    std::u16string name;
    std::uint32_t error = 0;
    int type_index = 0;  // 0: leave it
  };
  struct Shown {
    std::vector<TFileTypeItem> types;
    std::u16string title, folder, name, edit_box_after_type_change;
    int type_index;
  };
  std::deque<Answer> answers;
  std::vector<Shown> shown;
  TSaveDialogRunner previous;

  ScriptedDialog() {
    previous = SetSaveDialogRunner([this](TFileSaveDialog& d) {
      Shown s{d.FileTypes(), d.Title(), d.DefaultFolder(), d.FileName(), u"", d.FileTypeIndex()};
      EXPECT_FALSE(answers.empty()) << "the dialog came up once too often";
      Answer a = answers.empty() ? Answer{false, u""} : answers.front();
      if (!answers.empty()) answers.pop_front();
      if (a.type_index != 0) {
        d.SetFileTypeIndex(a.type_index);
        d.Dialog()->SetFileName(a.name);
        if (d.OnTypeChange()) d.OnTypeChange()(&d);
        s.edit_box_after_type_change = d.Dialog()->GetFileName();
        a.name = s.edit_box_after_type_change;
      }
      shown.push_back(s);
      return TSaveDialogReply{a.confirmed, a.error, a.name,
                              a.type_index ? a.type_index : d.FileTypeIndex()};
    });
  }
  ~ScriptedDialog() { SetSaveDialogRunner(previous); }
};

TEST(SaveDialogTest, StandardDialogRounds) {
  zyn::testing::TempDir dir;
  zyn::testing::WriteFileBytes(dir / "taken.dat", "x");
  const std::u16string folder = FromUTF8(dir.path().string()) + u"/";
  // Each round the user confirms (or cancels) the next of `picked` in the folder.
  struct Case {
    std::u16string_view params;
    bool confirmed;
    std::vector<std::u16string_view> picked;
    std::vector<TModalResult> overwrite_replies;  // empty: no OnOverwrite
    bool result;
    std::u16string_view file_name;
  };
  const Case cases[] = {
      {u"ext=dat", true, {u"report.txt"}, {}, true, u"report.dat"},  // ext replaces the extension
      {u"ext=dat", false, {u"draft.txt"}, {}, false, u"draft.dat"},  // ext applies after a cancel
      {u"ext=dat", true, {u"taken.txt", u"fresh"}, {mrNo}, true, u"fresh.dat"},  // asks again
      {u"", true, {u"taken.dat"}, {mrYes}, true, u"taken.dat"},                  // overwrites
      {u"", true, {u"taken.dat"}, {mrCancel}, false, u"taken.dat"},              // gives up
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << Utf8(c.file_name) << " " << c.result);
    ScriptedDialog script;
    for (std::u16string_view name : c.picked)
      script.answers.push_back({c.confirmed, folder + std::u16string(name)});
    TUnivSaveDialog d;
    d.SetParameters(c.params);
    d.SetFileName(u"start.txt");
    std::vector<TModalResult> replies = c.overwrite_replies;
    if (!replies.empty()) {
      d.SetOnOverwrite([&](TObject*, std::u16string_view, TModalResult& r) {
        EXPECT_EQ(r, mrNo);
        r = replies.front();
        replies.erase(replies.begin());
      });
    }
    EXPECT_EQ(d.Execute(), c.result);
    EXPECT_EQ(Utf8(d.FileName()), Utf8(folder + std::u16string(c.file_name)));
    ASSERT_EQ(script.shown.size(), c.picked.size());
    EXPECT_EQ(script.shown[0].name, u"start.txt");
    // A second round starts from the name the first one settled on.
    EXPECT_TRUE(c.picked.size() < 2 || script.shown[1].name == folder + u"taken.dat");
  }
}

TEST(SaveDialogTest, WhatTheStandardDialogIsShown) {
  ScriptedDialog script;
  script.answers = {{true, u"/x/plot.png", 0, 2}};
  TUnivSaveDialog d;
  d.SetParameters(
      u"filter=\"Text|*.txt|Images|*.png;*.jpg|All\" caption=\"Save plot\" initialdir=/x");
  d.SetFilterIndex(1);
  EXPECT_TRUE(d.Execute());
  ASSERT_EQ(script.shown.size(), 1u);
  const auto& s = script.shown[0];
  ASSERT_EQ(s.types.size(), 2u);  // "All" has no mask and is dropped
  EXPECT_EQ(s.types[1].DisplayName + u"|" + s.types[1].FileMask, u"Images|*.png;*.jpg");
  EXPECT_EQ(s.title + u"|" + s.folder, u"Save plot|/x");
  EXPECT_EQ(s.type_index, 1);
  // The type change gave the edit box the new extension (from ".png;*.jpg"
  // minus nothing: the mask less its first character), without the folder.
  EXPECT_EQ(s.edit_box_after_type_change, u"plot.png;*.jpg");
  EXPECT_EQ(d.FilterIndex(), 2);
}

TEST(SaveDialogTest, FailuresAndMessages) {
  ScriptedDialog script;
  script.answers = {{false, u"", 0x2A}};
  TUnivSaveDialog d;
  d.SetName(u"Saver");
  auto message_of = [&](auto&& call) -> std::string {
    try {
      call();
    } catch (const EZYNFileSysError& e) {
      return e.what();
    }
    return "no exception";
  };
  EXPECT_EQ(message_of([&] { d.Execute(); }),
            "Component \"Saver\": Error in standard dialog (errnum = $002A).");
  d.SetUseStandardDialog(false);
  EXPECT_EQ(message_of([&] { d.Execute(); }),
            "Component \"Saver\": File select dialog is not assigned");
  d.SetOnFileSelect([](TObject*, std::u16string_view, TModalResult& a, std::u16string& name) {
    a = mrOk;
    name = u"/tmp/a.txt";
  });
  d.SetOnFileCheck([](TObject*, std::u16string_view, bool& exists) { exists = true; });
  EXPECT_EQ(message_of([&] { d.Execute(); }),
            "Component \"Saver\": Overwrite dialog is not assigned");
  d.SetOnOverwrite([](TObject*, std::u16string_view, TModalResult& r) { r = mrOk; });
  EXPECT_EQ(message_of([&] { d.Execute(); }),
            "Component \"Saver\": Invalid reply argument from overwrite dialog");
  d.SetParameters(u"n=\"12abc\" x=1,5 y=\"1.5\" e=\"\"");
  EXPECT_EQ(d.ExtractParamAsInt(u"N"), 12);
  EXPECT_EQ(d.ExtractParamAsDouble(u"x") + d.ExtractParamAsDouble(u"y"), 3.0);  // "," and "."
  EXPECT_EQ(d.ExtractParamAsString(u"missing"), u"");
  EXPECT_EQ(message_of([&] { d.ExtractParamAsInt(u"missing"); }),
            "Component \"Saver\": missing is not specified in property Parameters");
  EXPECT_EQ(message_of([&] { d.ExtractParamAsDouble(u"e"); }),
            "Component \"Saver\": e is not specified in property Parameters");
}

TEST(SaveDialogTest, HostDialogAndForbiddenDirectory) {
  TUnivSaveDialog d;
  d.SetUseStandardDialog(false);
  d.SetParameters(u"ext=dat");
  d.SetForbiddenDir(u"/Data");
  std::deque<std::pair<TModalResult, std::u16string>> picks;
  std::vector<std::u16string> offered;
  d.SetOnFileSelect([&](TObject*, std::u16string_view p, TModalResult& a, std::u16string& name) {
    EXPECT_EQ(p, u"ext=dat");
    offered.push_back(name);
    if (picks.empty()) return;  // leaves the action alone: a cancel
    a = picks.front().first;
    name = picks.front().second;
    picks.pop_front();
  });
  // No OnFileCheck: no file counts as existing, "ext" has no effect.
  picks = {{mrOk, u"/tmp/out.txt"}};
  EXPECT_TRUE(d.Execute());
  EXPECT_EQ(d.FileName(), u"/tmp/out.txt");
  EXPECT_FALSE(d.Execute());  // the handler left mrCancel

  // Without OnForbiddenDir a forbidden directory is let through.
  picks = {{mrOk, u"/database/x"}};
  EXPECT_TRUE(d.Execute());
  struct Case {
    TModalResult reply;
    bool result;
    std::size_t rounds;
  };
  for (const Case c : {Case{mrNo, true, 2}, Case{mrCancel, false, 1}, Case{mrYes, true, 1}}) {
    SCOPED_TRACE(c.reply);
    picks = {{mrOk, u"/DATA/x"}, {mrOk, u"/home/y"}};
    offered.clear();
    std::vector<std::u16string> paths;
    d.SetOnForbiddenDir([&](TObject*, std::u16string_view path, TModalResult& r) {
      EXPECT_EQ(r, mrYes);
      paths.push_back(std::u16string(path));
      r = c.reply;
    });
    EXPECT_EQ(d.Execute(), c.result);
    EXPECT_EQ(offered.size(), c.rounds);
    EXPECT_EQ(paths, std::vector<std::u16string>{u"/DATA/"});
  }
  EXPECT_FALSE(d.IsForbiddenDir(u""));
  d.SetForbiddenDir(u"");
  EXPECT_FALSE(d.IsForbiddenDir(u"/data"));
}

// Sets (or, with nullptr, removes) an environment variable for one scope.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : name_(name) {
    const char* old = std::getenv(name);
    had_ = old != nullptr;
    old_ = had_ ? old : "";
    value ? setenv(name, value, 1) : unsetenv(name);
  }
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;
  ~ScopedEnv() { had_ ? setenv(name_, old_.c_str(), 1) : unsetenv(name_); }

 private:
  const char* name_;
  bool had_;
  std::string old_;
};

// A session bus address where no bus can be: no portal answers there.
constexpr const char* kNoBus = "unix:path=/nonexistent/zyn-test-bus";

// The desktop's own dialog, end to end: a real X server (Xvfb), the real
// zenity, and xdotool typing as a user would.
class DesktopDialogTest : public ::testing::Test {
 protected:
  void SetUp() override {
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    const std::string fd = std::to_string(fds[1]);
    std::vector<std::string> argv = {"Xvfb", "-displayfd",  fd,          "-screen",
                                     "0",    "1024x768x24", "-nolisten", "tcp"};
    std::vector<char*> args;
    for (auto& a : argv) args.push_back(a.data());
    args.push_back(nullptr);
    const int rc = posix_spawnp(&xvfb_, "Xvfb", nullptr, nullptr, args.data(), environ);
    close(fds[1]);
    ASSERT_EQ(rc, 0) << "Xvfb could not be started: the desktop dialog test needs it "
                        "(Debian package xvfb, installed by tools/bootstrap.sh)";
    pollfd p{fds[0], POLLIN, 0};
    char number[16] = {};
    const bool ready = poll(&p, 1, 20000) == 1 && read(fds[0], number, sizeof number - 1) > 0;
    close(fds[0]);
    ASSERT_TRUE(ready) << "Xvfb gave no display within 20 s";
    display_ = ":" + std::string(number, strcspn(number, "\n"));
    display_env_.emplace("DISPLAY", display_.c_str());
    // zenity is under test: a portal on the developer's session bus would
    // take its place.
    bus_env_.emplace("DBUS_SESSION_BUS_ADDRESS", kNoBus);
    ASSERT_EQ(std::system("command -v zenity >/dev/null && command -v xdotool >/dev/null"), 0)
        << "zenity and xdotool are needed (installed by tools/bootstrap.sh)";
  }
  void TearDown() override {
    bus_env_.reset();
    display_env_.reset();
    if (xvfb_ > 0) {
      kill(xvfb_, SIGTERM);
      waitpid(xvfb_, nullptr, 0);
    }
  }

  // Runs Execute while xdotool finds the dialog by its title, focuses it and
  // `keys` (shell commands) type into it; gives Execute's result. Bounded: a dialog that doesn't
  // come up is closed by force and the test fails.
  bool RunWithKeys(TUnivSaveDialog& d, const std::string& title, const std::string& keys) {
    auto running = std::async(std::launch::async, [&] { return d.Execute(); });
    const std::string find = "timeout 30 xdotool search --sync --onlyvisible --name '" + title +
                             "' > /tmp/zyn_dialog_window_" + std::to_string(getpid());
    const bool found = std::system(find.c_str()) == 0;
    EXPECT_TRUE(found) << "the save dialog did not come up on " << display_;
    if (found) {
      const std::string window =
          "$(head -n 1 /tmp/zyn_dialog_window_" + std::to_string(getpid()) + ")";
      std::system(("sleep 1; xdotool windowfocus --sync " + window + "; sleep 1; " + keys).c_str());
    }
    if (running.wait_for(std::chrono::seconds(30)) != std::future_status::ready)
      std::system("pkill -f 'zenity --file-selection'");
    std::remove(("/tmp/zyn_dialog_window_" + std::to_string(getpid())).c_str());
    try {
      return running.get();
    } catch (const std::exception& e) {
      ADD_FAILURE() << e.what();
      return false;
    }
  }

  pid_t xvfb_ = 0;
  std::string display_;
  std::optional<ScopedEnv> display_env_, bus_env_;
};

TEST_F(DesktopDialogTest, TypedNameIsTakenAndEscapeCancels) {
  zyn::testing::TempDir dir;
  const std::u16string folder = FromUTF8(dir.path().string());
  TUnivSaveDialog d;
  d.SetParameters(u"caption=\"Zyn save test\" filter=\"Text|*.txt\" initialdir=\"" + folder +
                  u"\"");
  EXPECT_TRUE(RunWithKeys(d, "Zyn save test",
                          "xdotool type --delay 40 typed.txt; sleep 1; xdotool key Return"));
  EXPECT_EQ(Utf8(d.FileName()), Utf8(folder + u"/typed.txt"));

  d.SetFileName(u"kept.txt");
  EXPECT_FALSE(RunWithKeys(d, "Zyn save test", "xdotool key Escape"));
  EXPECT_EQ(d.FileName(), u"kept.txt");
  EXPECT_EQ(CommDlgExtendedError(), 0u);
}

TEST(SaveDialogTest, NoDesktopIsAnErrorNotAHang) {
  const ScopedEnv display("DISPLAY", nullptr), wayland("WAYLAND_DISPLAY", nullptr),
      bus("DBUS_SESSION_BUS_ADDRESS", kNoBus);
  TUnivSaveDialog d;
  try {
    d.Execute();
    ADD_FAILURE() << "no exception";
  } catch (const EZYNFileSysError& e) {
    EXPECT_EQ(std::string(e.what()), "Component \"\": Error in standard dialog (errnum = $0002).");
  }
}

}  // namespace
}  // namespace Zyn_filesys
