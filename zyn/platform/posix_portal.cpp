// The save dialog of xdg-desktop-portal: one SaveFile call to the
// FileChooser on the session bus, then the Response signal of the request
// object it made. Spoken with sd-bus over a connection of our own, so that
// nothing is shared with a host that uses the bus itself.

#include "zyn/platform/dialogs.h"

#ifdef ZYN_HAVE_SD_BUS

#include <systemd/sd-bus.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "zyn/platform/file_uri.h"
#include "zyn/platform/text.h"

namespace zyn::platform {

namespace {

struct BusCloser {
  void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
};
struct MessageUnref {
  void operator()(sd_bus_message* m) const { sd_bus_message_unref(m); }
};
struct SlotUnref {
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};
using Bus = std::unique_ptr<sd_bus, BusCloser>;
using Message = std::unique_ptr<sd_bus_message, MessageUnref>;
using Slot = std::unique_ptr<sd_bus_slot, SlotUnref>;

class BusError {
 public:
  BusError() = default;
  BusError(const BusError&) = delete;
  BusError& operator=(const BusError&) = delete;
  ~BusError() { sd_bus_error_free(&error_); }
  sd_bus_error* get() noexcept { return &error_; }

 private:
  // SD_BUS_ERROR_NULL is a C compound literal; this is the same empty error.
  sd_bus_error error_{nullptr, nullptr, 0};
};

// Any failed step of the conversation; the dialog then counts as failed.
struct BusFailure {
  int code;
};

void Ok(int r) {
  if (r < 0) throw BusFailure{r};
}

constexpr char kPortalName[] = "org.freedesktop.portal.Desktop";
constexpr char kPortalPath[] = "/org/freedesktop/portal/desktop";
// The first call may start the portal and its desktop's backend.
constexpr std::uint64_t kCallTimeoutUsec = 25'000'000;

// UTF-8 for a D-Bus string, which must be valid: the lone surrogates that
// stand for bytes outside UTF-8 become U+FFFD instead of those bytes.
std::string BusText(std::u16string_view s) {
  std::u16string text(s);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = text[i] >= 0xD800 && text[i] <= 0xDBFF && i + 1 < text.size() &&
                      text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
    if (pair) {
      ++i;
    } else if (text[i] >= 0xDC80 && text[i] <= 0xDCFF) {
      text[i] = 0xFFFD;
    }
  }
  return ToUTF8(text);
}

// A file type as the portal lists it: a name and (kind, pattern) pairs,
// kind 0 being a glob and 1 a MIME type.
struct PortalFilter {
  std::string name;
  std::vector<std::pair<std::uint32_t, std::string>> patterns;
  int type_index = 0;  // into the dialog's FileTypes, 1-based

  bool SameAs(const PortalFilter& o) const { return name == o.name && patterns == o.patterns; }
};

// The dialog's file types with at least one mask. Masks are split at ';'
// and trimmed; "*.*", everything on the original desktop, becomes "*".
std::vector<PortalFilter> FiltersOf(const TFileSaveDialog& d) {
  std::vector<PortalFilter> filters;
  int index = 0;
  for (const TFileTypeItem& type : d.FileTypes()) {
    ++index;
    PortalFilter f{BusText(type.DisplayName), {}, index};
    const std::string masks = BusText(type.FileMask);
    std::size_t start = 0;
    while (start <= masks.size()) {
      std::size_t end = masks.find(';', start);
      if (end == std::string::npos) end = masks.size();
      std::string mask = masks.substr(start, end - start);
      mask.erase(0, mask.find_first_not_of(" \t"));
      mask.erase(mask.find_last_not_of(" \t") + 1);
      if (mask == "*.*") mask = "*";
      if (!mask.empty()) f.patterns.emplace_back(0, std::move(mask));
      start = end + 1;
    }
    if (!f.patterns.empty()) filters.push_back(std::move(f));
  }
  return filters;
}

// Folder and name the dialog opens with: a name with a folder of its own
// brings it along, else the default folder serves. Relative folders are
// made absolute, since the portal runs in a directory of its own.
std::pair<std::string, std::string> FolderAndName(const TFileSaveDialog& d) {
  std::string name = ToUTF8(d.FileName());
  std::string folder = ToUTF8(d.DefaultFolder());
  if (const std::size_t slash = name.rfind('/'); slash != std::string::npos) {
    std::string own = name.substr(0, slash == 0 ? 1 : slash);
    if (own.front() != '/' && !folder.empty()) own = folder + "/" + own;
    folder = std::move(own);
    name.erase(0, slash + 1);
  }
  if (!folder.empty() && folder.front() != '/') {
    std::error_code ec;
    const std::filesystem::path absolute = std::filesystem::absolute(folder, ec);
    if (!ec) folder = absolute.string();
  }
  return {folder, name};
}

void AppendFilter(sd_bus_message* m, const PortalFilter& f) {
  Ok(sd_bus_message_open_container(m, 'r', "sa(us)"));
  Ok(sd_bus_message_append(m, "s", f.name.c_str()));
  Ok(sd_bus_message_open_container(m, 'a', "(us)"));
  for (const auto& [kind, pattern] : f.patterns)
    Ok(sd_bus_message_append(m, "(us)", kind, pattern.c_str()));
  Ok(sd_bus_message_close_container(m));
  Ok(sd_bus_message_close_container(m));
}

// Opens the dictionary entry of option `key` with a value of `signature`;
// the caller appends the value and calls CloseOption.
void OpenOption(sd_bus_message* m, const char* key, const char* signature) {
  Ok(sd_bus_message_open_container(m, 'e', "sv"));
  Ok(sd_bus_message_append(m, "s", key));
  Ok(sd_bus_message_open_container(m, 'v', signature));
}

void CloseOption(sd_bus_message* m) {
  Ok(sd_bus_message_close_container(m));
  Ok(sd_bus_message_close_container(m));
}

Message SaveFileCall(sd_bus* bus, const TFileSaveDialog& d, const std::string& token,
                     const std::vector<PortalFilter>& filters) {
  sd_bus_message* raw = nullptr;
  Ok(sd_bus_message_new_method_call(bus, &raw, kPortalName, kPortalPath,
                                    "org.freedesktop.portal.FileChooser", "SaveFile"));
  Message m(raw);
  // No parent window: the library knows no window of the host's.
  Ok(sd_bus_message_append(m.get(), "ss", "", BusText(d.Title()).c_str()));
  Ok(sd_bus_message_open_container(m.get(), 'a', "{sv}"));
  Ok(sd_bus_message_append(m.get(), "{sv}", "handle_token", "s", token.c_str()));
  Ok(sd_bus_message_append(m.get(), "{sv}", "modal", "b", 1));
  const auto [folder, name] = FolderAndName(d);
  if (!name.empty()) {
    const std::string text = BusText(FromUTF8(name));
    Ok(sd_bus_message_append(m.get(), "{sv}", "current_name", "s", text.c_str()));
  }
  if (!folder.empty()) {
    OpenOption(m.get(), "current_folder", "ay");
    Ok(sd_bus_message_append_array(m.get(), 'y', folder.c_str(), folder.size() + 1));
    CloseOption(m.get());
  }
  if (!filters.empty()) {
    OpenOption(m.get(), "filters", "a(sa(us))");
    Ok(sd_bus_message_open_container(m.get(), 'a', "(sa(us))"));
    for (const PortalFilter& f : filters) AppendFilter(m.get(), f);
    Ok(sd_bus_message_close_container(m.get()));
    CloseOption(m.get());
    for (const PortalFilter& f : filters) {
      if (f.type_index != d.FileTypeIndex()) continue;
      OpenOption(m.get(), "current_filter", "(sa(us))");
      AppendFilter(m.get(), f);
      CloseOption(m.get());
    }
  }
  Ok(sd_bus_message_close_container(m.get()));
  return m;
}

// What the conversation has brought so far.
struct SaveCall {
  std::string portal;  // the portal's unique name, once it has answered the call
  bool done = false;
  std::uint32_t response = 2;
  std::vector<std::string> uris;
  std::optional<PortalFilter> current_filter;
};

PortalFilter ReadFilter(sd_bus_message* m) {
  PortalFilter f;
  const char* name = nullptr;
  Ok(sd_bus_message_enter_container(m, 'r', "sa(us)"));
  Ok(sd_bus_message_read(m, "s", &name));
  f.name = name;
  Ok(sd_bus_message_enter_container(m, 'a', "(us)"));
  std::uint32_t kind = 0;
  const char* pattern = nullptr;
  int r;
  while ((r = sd_bus_message_read(m, "(us)", &kind, &pattern)) > 0)
    f.patterns.emplace_back(kind, pattern);
  Ok(r);
  Ok(sd_bus_message_exit_container(m));
  Ok(sd_bus_message_exit_container(m));
  return f;
}

// Response(u response, a{sv} results). Keys we don't know, or that come
// with a type other than the documented one, are passed over.
void ReadResponse(sd_bus_message* m, SaveCall& call) {
  Ok(sd_bus_message_read(m, "u", &call.response));
  Ok(sd_bus_message_enter_container(m, 'a', "{sv}"));
  int r;
  while ((r = sd_bus_message_enter_container(m, 'e', "sv")) > 0) {
    const char* key = nullptr;
    Ok(sd_bus_message_read(m, "s", &key));
    const std::string_view k(key);
    char type = 0;
    const char* contents = nullptr;
    Ok(sd_bus_message_peek_type(m, &type, &contents));
    const std::string_view signature(contents != nullptr ? contents : "");
    if (k == "uris" && signature == "as") {
      Ok(sd_bus_message_enter_container(m, 'v', "as"));
      Ok(sd_bus_message_enter_container(m, 'a', "s"));
      const char* uri = nullptr;
      while ((r = sd_bus_message_read(m, "s", &uri)) > 0) call.uris.emplace_back(uri);
      Ok(r);
      Ok(sd_bus_message_exit_container(m));
      Ok(sd_bus_message_exit_container(m));
    } else if (k == "current_filter" && signature == "(sa(us))") {
      Ok(sd_bus_message_enter_container(m, 'v', "(sa(us))"));
      call.current_filter = ReadFilter(m);
      Ok(sd_bus_message_exit_container(m));
    } else {
      Ok(sd_bus_message_skip(m, "v"));
    }
    Ok(sd_bus_message_exit_container(m));
  }
  Ok(r);
  Ok(sd_bus_message_exit_container(m));
}

int OnResponse(sd_bus_message* m, void* userdata, sd_bus_error*) {
  auto& call = *static_cast<SaveCall*>(userdata);
  const char* sender = sd_bus_message_get_sender(m);
  // Only the portal that took the call may answer it.
  if (call.portal.empty() || sender == nullptr || call.portal != sender) return 0;
  try {
    ReadResponse(m, call);
  } catch (const BusFailure&) {
    call.response = 2;
  }
  call.done = true;
  return 0;
}

// The portal leaving the bus ends the wait: no answer will come.
int OnOwnerChanged(sd_bus_message* m, void* userdata, sd_bus_error*) {
  auto& call = *static_cast<SaveCall*>(userdata);
  const char *name = nullptr, *old_owner = nullptr, *new_owner = nullptr;
  if (sd_bus_message_read(m, "sss", &name, &old_owner, &new_owner) < 0) return 0;
  if (call.portal.empty() || call.portal != old_owner) return 0;
  call.response = 2;
  call.done = true;
  return 0;
}

Slot WatchResponse(sd_bus* bus, const char* path, SaveCall& call) {
  sd_bus_slot* slot = nullptr;
  Ok(sd_bus_match_signal(bus, &slot, nullptr, path, "org.freedesktop.portal.Request", "Response",
                         OnResponse, &call));
  return Slot(slot);
}

// The element of a request path that stands for our connection: ":1.42"
// becomes "1_42".
std::string SenderElement(std::string_view unique_name) {
  std::string s(unique_name.substr(unique_name.starts_with(':') ? 1 : 0));
  for (char& c : s)
    if (c == '.') c = '_';
  return s;
}

std::atomic<unsigned> request_counter{0};

}  // namespace

std::optional<TSaveDialogReply> RunPortalSaveDialog(TFileSaveDialog& dialog) {
  TSaveDialogReply reply;
  reply.FileName = dialog.FileName();
  reply.FileTypeIndex = dialog.FileTypeIndex();
  sd_bus* raw_bus = nullptr;
  if (sd_bus_open_user(&raw_bus) < 0) return std::nullopt;  // no session bus
  Bus bus(raw_bus);
  try {
    SaveCall call;
    const char* unique = nullptr;
    Ok(sd_bus_get_unique_name(bus.get(), &unique));
    const std::string token =
        "zyn" + std::to_string(getpid()) + "_" + std::to_string(++request_counter);
    const std::string request =
        std::string(kPortalPath) + "/request/" + SenderElement(unique) + "/" + token;
    // Both watches stand before the call, so that no signal can slip by.
    Slot response_slot = WatchResponse(bus.get(), request.c_str(), call);
    sd_bus_slot* raw_slot = nullptr;
    Ok(sd_bus_match_signal(bus.get(), &raw_slot, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus", "NameOwnerChanged", OnOwnerChanged, &call));
    Slot owner_slot(raw_slot);

    const std::vector<PortalFilter> filters = FiltersOf(dialog);
    const Message m = SaveFileCall(bus.get(), dialog, token, filters);
    BusError error;
    sd_bus_message* raw_answer = nullptr;
    const int r = sd_bus_call(bus.get(), m.get(), kCallTimeoutUsec, error.get(), &raw_answer);
    const Message answer(raw_answer);
    if (r < 0) {
      // Nobody there, or a portal without a file chooser: the next dialog
      // program is asked.
      if (sd_bus_error_has_names(error.get(), SD_BUS_ERROR_SERVICE_UNKNOWN,
                                 SD_BUS_ERROR_NAME_HAS_NO_OWNER, SD_BUS_ERROR_UNKNOWN_METHOD,
                                 SD_BUS_ERROR_UNKNOWN_OBJECT, SD_BUS_ERROR_UNKNOWN_INTERFACE))
        return std::nullopt;
      throw BusFailure{r};
    }
    const char* handle = nullptr;
    Ok(sd_bus_message_read(answer.get(), "o", &handle));
    const char* portal = sd_bus_message_get_sender(answer.get());
    if (portal == nullptr) throw BusFailure{-EPROTO};
    call.portal = portal;
    // Portals before version 0.9 chose the request path themselves.
    if (request != handle) response_slot = WatchResponse(bus.get(), handle, call);

    while (!call.done) {
      int p = sd_bus_process(bus.get(), nullptr);
      if (p > 0) continue;
      if (p == 0) p = sd_bus_wait(bus.get(), UINT64_MAX);
      if (p < 0 && p != -EINTR) throw BusFailure{p};
    }

    if (call.current_filter) {
      const PortalFilter* chosen = nullptr;
      for (const PortalFilter& f : filters)
        if (f.SameAs(*call.current_filter)) chosen = &f;
      for (const PortalFilter& f : filters)
        if (chosen == nullptr && f.name == call.current_filter->name) chosen = &f;
      if (chosen != nullptr) reply.FileTypeIndex = chosen->type_index;
    }
    if (call.response == 0) {
      const std::optional<std::string> path =
          call.uris.empty() ? std::nullopt : FilePathFromURI(call.uris.front());
      if (!path) throw BusFailure{-EPROTO};
      reply.Confirmed = true;
      reply.FileName = FromUTF8(*path);
    } else if (call.response != 1) {
      reply.ErrorCode = kDialogFailure;
    }
  } catch (const BusFailure&) {
    reply.Confirmed = false;
    reply.ErrorCode = kDialogFailure;
  }
  return reply;
}

}  // namespace zyn::platform

#else  // built without sd-bus: there is no portal to ask

namespace zyn::platform {

std::optional<TSaveDialogReply> RunPortalSaveDialog(TFileSaveDialog&) { return std::nullopt; }

}  // namespace zyn::platform

#endif
