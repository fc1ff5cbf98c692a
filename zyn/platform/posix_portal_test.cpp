// The portal's save dialog against a portal of the test's own. A real
// xdg-desktop-portal needs a desktop session with its backends, which no CI
// machine has; the fake one here serves the same FileChooser.SaveFile on a
// private session bus (a dbus-daemon of the test, with no service
// activation, so that a portal installed on the machine can't step in),
// records what it was handed and answers with a scripted Response.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/dialogs.h"
#include "zyn/platform/text.h"

extern char** environ;

namespace zyn::platform {
namespace {

using zyn::testing::Utf8;

struct Filter {
  std::string name;
  std::vector<std::pair<std::uint32_t, std::string>> patterns;
  bool operator==(const Filter&) const = default;
};

// Sets an environment variable for the life of the object; null unsets it.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    value ? setenv(name, value, 1) : unsetenv(name);
  }
  ~ScopedEnv() { old_ ? setenv(name_, old_->c_str(), 1) : unsetenv(name_); }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

// A dbus-daemon of our own, its address in DBUS_SESSION_BUS_ADDRESS.
class PrivateBus {
 public:
  PrivateBus() {
    zyn::testing::WriteFileBytes(dir_ / "bus.conf", R"(<busconfig>
  <type>session</type>
  <listen>unix:path=)" + (dir_ / "bus").string() + R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)");
    int fds[2];
    if (pipe(fds) != 0) return;
    std::vector<std::string> argv = {"dbus-daemon", "--nofork", "--nopidfile",
                                     "--config-file=" + (dir_ / "bus.conf").string(),
                                     "--print-address=" + std::to_string(fds[1])};
    std::vector<char*> args;
    for (auto& a : argv) args.push_back(a.data());
    args.push_back(nullptr);
    // Its complaints (it can't raise its file limit in a container) would
    // only clutter the test's output.
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    const bool started =
        posix_spawnp(&pid_, "dbus-daemon", &actions, nullptr, args.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(fds[1]);
    pollfd p{fds[0], POLLIN, 0};
    char buffer[512] = {};
    if (started && poll(&p, 1, 10000) == 1) {
      const ssize_t n = read(fds[0], buffer, sizeof buffer - 1);
      if (n > 0) address_.assign(buffer, static_cast<std::size_t>(n));
      while (!address_.empty() && address_.back() == '\n') address_.pop_back();
    }
    close(fds[0]);
    if (!started) pid_ = 0;
    if (!address_.empty()) env_.emplace("DBUS_SESSION_BUS_ADDRESS", address_.c_str());
  }
  ~PrivateBus() { Stop(); }

  // Empty if the daemon didn't come up.
  const std::string& address() const { return address_; }

  void Stop() {
    if (pid_ <= 0) return;
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
    pid_ = 0;
  }

 private:
  zyn::testing::TempDir dir_;
  pid_t pid_ = 0;
  std::string address_;
  std::optional<ScopedEnv> env_;
};

// What the fake portal answers to one SaveFile.
struct Script {
  std::uint32_t response = 0;
  std::optional<std::string> uri;
  std::optional<Filter> current_filter;
  bool vanish = false;  // leave the bus instead of answering
};

// What the fake portal was handed.
struct Seen {
  std::string parent_window, title, current_name, current_folder;
  bool modal = false;
  std::vector<Filter> filters;
  std::optional<Filter> current_filter;
  std::map<std::string, std::string> signatures;  // option -> its value's type
};

int ReadFilter(sd_bus_message* m, Filter& f) {
  const char* name = nullptr;
  std::uint32_t kind = 0;
  const char* pattern = nullptr;
  int r = sd_bus_message_enter_container(m, 'r', "sa(us)");
  if (r <= 0) return r;  // 0: the end of an array of filters
  r = sd_bus_message_read(m, "s", &name);
  if (r > 0) f.name = name;
  if (r >= 0) r = sd_bus_message_enter_container(m, 'a', "(us)");
  while (r >= 0 && (r = sd_bus_message_read(m, "(us)", &kind, &pattern)) > 0)
    f.patterns.emplace_back(kind, pattern);
  if (r >= 0) r = sd_bus_message_exit_container(m);
  if (r >= 0) r = sd_bus_message_exit_container(m);
  return r < 0 ? r : 1;
}

void AppendFilter(sd_bus_message* m, const Filter& f) {
  sd_bus_message_open_container(m, 'r', "sa(us)");
  sd_bus_message_append(m, "s", f.name.c_str());
  sd_bus_message_open_container(m, 'a', "(us)");
  for (const auto& [kind, pattern] : f.patterns)
    sd_bus_message_append(m, "(us)", kind, pattern.c_str());
  sd_bus_message_close_container(m);
  sd_bus_message_close_container(m);
}

// org.freedesktop.portal.Desktop with a FileChooser, served in a thread.
class FakePortal {
 public:
  FakePortal(const std::string& address, Script script) : script_(std::move(script)) {
    std::promise<bool> ready;
    auto up = ready.get_future();
    thread_ = std::thread([this, address, &ready] { Serve(address, ready); });
    up_ = up.wait_for(std::chrono::seconds(10)) == std::future_status::ready && up.get();
  }
  ~FakePortal() {
    stop_ = true;
    thread_.join();
  }

  bool up() const { return up_; }
  Seen seen() {
    std::lock_guard lock(mutex_);
    return seen_;
  }

 private:
  void Serve(const std::string& address, std::promise<bool>& ready) {
    sd_bus* bus = nullptr;
    sd_bus_slot* slot = nullptr;
    const bool ok =
        sd_bus_new(&bus) >= 0 && sd_bus_set_address(bus, address.c_str()) >= 0 &&
        sd_bus_set_bus_client(bus, 1) >= 0 && sd_bus_start(bus) >= 0 &&
        sd_bus_request_name(bus, "org.freedesktop.portal.Desktop", 0) >= 0 &&
        sd_bus_add_object(bus, &slot, "/org/freedesktop/portal/desktop", OnMessage, this) >= 0;
    ready.set_value(ok);
    while (ok && !stop_ && !gone_) {
      if (sd_bus_process(bus, nullptr) > 0) continue;
      sd_bus_wait(bus, 100'000);  // 0.1 s, to see stop_
    }
    sd_bus_slot_unref(slot);
    sd_bus_flush_close_unref(bus);
  }

  static int OnMessage(sd_bus_message* m, void* userdata, sd_bus_error*) {
    auto& self = *static_cast<FakePortal*>(userdata);
    if (!sd_bus_message_is_method_call(m, "org.freedesktop.portal.FileChooser", "SaveFile"))
      return 0;
    Seen seen;
    std::string token;
    const char *parent = nullptr, *title = nullptr;
    int r = sd_bus_message_read(m, "ss", &parent, &title);
    if (r >= 0) seen.parent_window = parent, seen.title = title;
    if (r >= 0) r = sd_bus_message_enter_container(m, 'a', "{sv}");
    while (r >= 0 && (r = sd_bus_message_enter_container(m, 'e', "sv")) > 0) {
      const char* key = nullptr;
      char type = 0;
      const char* contents = nullptr;
      sd_bus_message_read(m, "s", &key);
      sd_bus_message_peek_type(m, &type, &contents);
      const std::string k = key, signature = contents;
      seen.signatures[k] = signature;
      sd_bus_message_enter_container(m, 'v', contents);
      const char* s = nullptr;
      if (signature == "s") {
        sd_bus_message_read(m, "s", &s);
        if (k == "handle_token") token = s;
        if (k == "current_name") seen.current_name = s;
      } else if (signature == "b") {
        int b = 0;
        sd_bus_message_read(m, "b", &b);
        seen.modal = b != 0;
      } else if (signature == "ay") {
        const void* bytes = nullptr;
        std::size_t size = 0;
        sd_bus_message_read_array(m, 'y', &bytes, &size);
        seen.current_folder.assign(static_cast<const char*>(bytes), size);
      } else if (signature == "(sa(us))") {
        seen.current_filter.emplace();
        ReadFilter(m, *seen.current_filter);
      } else if (signature == "a(sa(us))") {
        sd_bus_message_enter_container(m, 'a', "(sa(us))");
        for (Filter f; ReadFilter(m, f) > 0; f = Filter{}) seen.filters.push_back(f);
        sd_bus_message_exit_container(m);
      } else {
        sd_bus_message_skip(m, contents);
      }
      sd_bus_message_exit_container(m);
      sd_bus_message_exit_container(m);
    }
    {
      std::lock_guard lock(self.mutex_);
      self.seen_ = seen;
    }
    std::string sender = sd_bus_message_get_sender(m) + 1;
    std::replace(sender.begin(), sender.end(), '.', '_');
    const std::string handle = "/org/freedesktop/portal/desktop/request/" + sender + "/" + token;
    sd_bus_reply_method_return(m, "o", handle.c_str());
    if (self.script_.vanish) {
      self.gone_ = true;
      return 1;
    }
    sd_bus_message* signal = nullptr;
    sd_bus_message_new_signal(sd_bus_message_get_bus(m), &signal, handle.c_str(),
                              "org.freedesktop.portal.Request", "Response");
    sd_bus_message_append(signal, "u", self.script_.response);
    sd_bus_message_open_container(signal, 'a', "{sv}");
    // A result the library doesn't ask for, which it has to pass over.
    sd_bus_message_append(signal, "{sv}", "choices", "a(ss)", 1, "encoding", "utf8");
    if (self.script_.uri)
      sd_bus_message_append(signal, "{sv}", "uris", "as", 1, self.script_.uri->c_str());
    if (self.script_.current_filter) {
      sd_bus_message_open_container(signal, 'e', "sv");
      sd_bus_message_append(signal, "s", "current_filter");
      sd_bus_message_open_container(signal, 'v', "(sa(us))");
      AppendFilter(signal, *self.script_.current_filter);
      sd_bus_message_close_container(signal);
      sd_bus_message_close_container(signal);
    }
    sd_bus_message_close_container(signal);
    sd_bus_send(nullptr, signal, nullptr);
    sd_bus_message_unref(signal);
    return 1;
  }

  Script script_;
  std::thread thread_;
  std::atomic<bool> stop_{false}, gone_{false};
  bool up_ = false;
  std::mutex mutex_;
  Seen seen_;
};

// The dialog programs must never come up here: without a display the
// fall-through ends in kDialogNoDesktop at once.
class PortalDialogTest : public ::testing::Test {
 protected:
  // Execute, bounded: a dialog still open after 30 s loses its bus.
  bool ExecuteBounded(TFileSaveDialog& d) {
    auto running = std::async(std::launch::async, [&] { return d.Execute(); });
    if (running.wait_for(std::chrono::seconds(30)) != std::future_status::ready) {
      ADD_FAILURE() << "the dialog did not return within 30 s";
      bus_.Stop();
    }
    return running.get();
  }

  ScopedEnv display_{"DISPLAY", nullptr};
  ScopedEnv wayland_{"WAYLAND_DISPLAY", nullptr};
  PrivateBus bus_;
};

TEST_F(PortalDialogTest, AnswersOfThePortal) {
  ASSERT_FALSE(bus_.address().empty()) << "dbus-daemon (Debian package dbus-daemon) is needed";
  const Filter text{"Text", {{0, "*.txt"}}};
  const Filter images{"Images", {{0, "*.png"}, {0, "*.jpg"}}};
  const Filter all{"All", {{0, "*"}}};
  struct Case {
    const char* name;
    std::u16string file_name;
    int type_index;
    Script script;
    bool confirmed;
    std::uint32_t error;
    std::u16string result_name;
    int result_index;
    std::string folder_seen, name_seen;  // folder without its closing NUL
    std::optional<Filter> filter_seen;
  };
  const Case cases[] = {
      {"confirmed with another type", u"plot.txt", 1,
       Script{0, "file:///tmp/zyn%20portal/pl%C3%A4t.png", images}, true, 0,
       u"/tmp/zyn portal/plät.png", 2, "/tmp/zyn portal", "plot.txt", text},
      {"cancelled: name and type stay", u"/data/old/report.txt", 4, Script{1, {}, std::nullopt},
       false, 0, u"/data/old/report.txt", 4, "/data/old", "report.txt", all},
      {"the portal failed", u"a.txt", 2, Script{2, {}, std::nullopt}, false, kDialogFailure,
       u"a.txt", 2, "/tmp/zyn portal", "a.txt", images},
      {"confirmed with no local file", u"a.txt", 1, Script{0, "sftp://host/a.txt", std::nullopt},
       false, kDialogFailure, u"a.txt", 1, "/tmp/zyn portal", "a.txt", text},
      {"the portal left without an answer", u"b.txt", 1, Script{0, {}, std::nullopt, true}, false,
       kDialogFailure, u"b.txt", 1, "/tmp/zyn portal", "b.txt", text},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    FakePortal portal(bus_.address(), c.script);
    ASSERT_TRUE(portal.up());
    TFileSaveDialog d;
    // A lone surrogate standing for a byte outside UTF-8 can't travel in a
    // D-Bus string.
    d.SetTitle(u"Save plot\xDCFF");
    d.SetDefaultFolder(u"/tmp/zyn portal");
    d.FileTypes() = {{u"Text", u"*.txt"},
                     {u"Images", u"*.png; *.jpg"},
                     {u"Nothing", u""},  // no mask: not listed
                     {u"All", u"*.*"}};
    d.SetFileTypeIndex(c.type_index);
    d.SetFileName(c.file_name);
    EXPECT_EQ(ExecuteBounded(d), c.confirmed);
    EXPECT_EQ(CommDlgExtendedError(), c.error);
    EXPECT_EQ(Utf8(d.FileName()), Utf8(c.result_name));
    EXPECT_EQ(d.FileTypeIndex(), c.result_index);

    const Seen seen = portal.seen();
    EXPECT_EQ(seen.parent_window, "");
    EXPECT_EQ(seen.title, "Save plot\xEF\xBF\xBD");
    EXPECT_TRUE(seen.modal);
    EXPECT_EQ(seen.current_name, c.name_seen);
    EXPECT_EQ(seen.current_folder, c.folder_seen + '\0');
    EXPECT_EQ(seen.filters, (std::vector<Filter>{text, images, all}));
    EXPECT_EQ(seen.current_filter, c.filter_seen);
    EXPECT_EQ(seen.signatures, (std::map<std::string, std::string>{{"current_filter", "(sa(us))"},
                                                                   {"current_folder", "ay"},
                                                                   {"current_name", "s"},
                                                                   {"filters", "a(sa(us))"},
                                                                   {"handle_token", "s"},
                                                                   {"modal", "b"}}));
  }
}

TEST_F(PortalDialogTest, WithoutAPortalTheDialogProgramsAreAsked) {
  ASSERT_FALSE(bus_.address().empty()) << "dbus-daemon (Debian package dbus-daemon) is needed";
  struct Case {
    const char* name;
    const char* bus_address;  // null: the private bus, with nobody on it
  };
  const Case cases[] = {{"nobody owns the portal's name", nullptr},
                        {"no session bus", "unix:path=/nonexistent/zyn-bus"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::optional<ScopedEnv> address;
    if (c.bus_address) address.emplace("DBUS_SESSION_BUS_ADDRESS", c.bus_address);
    TFileSaveDialog d;
    d.SetFileName(u"kept.txt");
    EXPECT_FALSE(ExecuteBounded(d));
    EXPECT_EQ(CommDlgExtendedError(), kDialogNoDesktop);
    EXPECT_EQ(d.FileName(), u"kept.txt");
  }
}

}  // namespace
}  // namespace zyn::platform
