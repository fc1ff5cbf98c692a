#include "zyn/filesys/xdg_assoc.h"

#include <charconv>

#include "zyn/filesys/sysqueries.h"
#include "zyn/platform/casefold.h"
#include "zyn/platform/environment.h"
#include "zyn/platform/text.h"

namespace Zyn_filesys {
namespace xdg {
namespace {

// Calls `line_fn(line)` for each line of `text`, without its line end.
template <typename LineFn>
void ForEachLine(std::string_view text, LineFn line_fn) {
  while (!text.empty()) {
    std::size_t end = text.find('\n');
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    line_fn(line);
    text.remove_prefix(end < text.size() ? end + 1 : end);
  }
}

std::string_view Trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
  return s;
}

char AsciiLower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }

bool EqualsIgnoringAsciiCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
  }
  return true;
}

// Calls `entry_fn(key, value)` for each "key=value" line of group `group`.
template <typename EntryFn>
void ForEachEntryOfGroup(std::string_view text, std::string_view group, EntryFn entry_fn) {
  bool in_group = false;
  ForEachLine(text, [&](std::string_view line) {
    line = Trim(line);
    if (line.empty() || line.front() == '#') return;
    if (line.front() == '[') {
      in_group = line.size() == group.size() + 2 && line.back() == ']' &&
                 line.substr(1, group.size()) == group;
      return;
    }
    const std::size_t eq = line.find('=');
    if (in_group && eq != std::string_view::npos) {
      entry_fn(Trim(line.substr(0, eq)), Trim(line.substr(eq + 1)));
    }
  });
}

}  // namespace

bool BetterMimeTypeFromGlobs(std::string_view globs2, std::string_view extension, std::string& type,
                             int& rank) {
  bool found = false;
  ForEachLine(globs2, [&](std::string_view line) {
    if (line.empty() || line.front() == '#') return;
    const std::size_t c1 = line.find(':');
    const std::size_t c2 = c1 == std::string_view::npos ? c1 : line.find(':', c1 + 1);
    if (c2 == std::string_view::npos) return;
    int w = 0;
    const auto [end, ec] = std::from_chars(line.data(), line.data() + c1, w);
    if (ec != std::errc() || end != line.data() + c1 || w < 0 || w > 1000) return;
    const std::string_view mime = line.substr(c1 + 1, c2 - c1 - 1);
    std::string_view glob = line.substr(c2 + 1);
    std::string_view flags;
    if (const std::size_t c3 = glob.find(':'); c3 != std::string_view::npos) {
      flags = glob.substr(c3 + 1);
      if (const std::size_t c4 = flags.find(':'); c4 != std::string_view::npos) {
        flags = flags.substr(0, c4);
      }
      glob = glob.substr(0, c3);
    }
    if (mime.empty() || glob.size() < 3 || glob.substr(0, 2) != "*.") return;
    const std::string_view literal = glob.substr(2);
    if (literal.find_first_of("*?[") != std::string_view::npos) return;
    bool case_sensitive = false;
    for (std::size_t p = 0; p < flags.size();) {
      std::size_t q = flags.find(',', p);
      if (q == std::string_view::npos) q = flags.size();
      if (flags.substr(p, q - p) == "cs") case_sensitive = true;
      p = q + 1;
    }
    const bool match =
        case_sensitive ? literal == extension : EqualsIgnoringAsciiCase(literal, extension);
    if (match && 2 * w + case_sensitive > rank) {
      type.assign(mime);
      rank = 2 * w + case_sensitive;
      found = true;
    }
  });
  return found;
}

std::vector<std::string> DefaultApplications(std::string_view mimeapps,
                                             std::string_view mime_type) {
  std::vector<std::string> ids;
  ForEachEntryOfGroup(mimeapps, "Default Applications",
                      [&](std::string_view key, std::string_view value) {
                        if (key != mime_type) return;
                        ids.clear();  // a repeated key: the last one holds
                        for (std::size_t p = 0; p <= value.size();) {
                          std::size_t q = value.find(';', p);
                          if (q == std::string_view::npos) q = value.size();
                          const std::string_view id = Trim(value.substr(p, q - p));
                          if (!id.empty()) ids.emplace_back(id);
                          p = q + 1;
                        }
                      });
  return ids;
}

bool DesktopEntryExec(std::string_view desktop_entry, std::string& exec) {
  bool found = false;
  ForEachEntryOfGroup(desktop_entry, "Desktop Entry",
                      [&](std::string_view key, std::string_view value) {
                        if (key == "Exec" && !found) {
                          exec.assign(value);
                          found = true;
                        }
                      });
  return found;
}

}  // namespace xdg

namespace {

namespace platform = zyn::platform;

// A colon-separated list of absolute directories from variable `name`, or
// `fallback` if it is unset or empty. Relative entries are ignored, as the
// base-directory rules ask.
std::vector<std::u16string> DirectoryList(std::u16string_view name, std::u16string_view fallback) {
  std::u16string value = platform::EnvironmentValue(name);
  if (value.empty()) value = fallback;
  std::vector<std::u16string> dirs;
  for (std::size_t p = 0; p <= value.size();) {
    std::size_t q = value.find(u':', p);
    if (q == std::u16string::npos) q = value.size();
    std::u16string dir = value.substr(p, q - p);
    if (!dir.empty() && dir.front() == u'/') {
      if (dir.back() != u'/') dir += u'/';
      dirs.push_back(std::move(dir));
    }
    p = q + 1;
  }
  return dirs;
}

// `below_home` under $HOME; "" (no directory) if HOME isn't set.
std::u16string HomeDirectory(std::u16string_view below_home) {
  const std::u16string home = platform::EnvironmentValue(u"HOME");
  return home.empty() ? std::u16string() : home + u"/" + std::u16string(below_home);
}

std::vector<std::u16string> DataDirectories() {
  std::vector<std::u16string> dirs =
      DirectoryList(u"XDG_DATA_HOME", HomeDirectory(u".local/share"));
  for (std::u16string& d : DirectoryList(u"XDG_DATA_DIRS", u"/usr/local/share/:/usr/share/")) {
    dirs.push_back(std::move(d));
  }
  return dirs;
}

std::string ReadText(const std::u16string& path) {
  std::string text;
  platform::ReadSmallFile(path, text, std::size_t{8} << 20);
  return text;
}

// The Exec line of the desktop entry with ID `id`, looked for in the
// applications folder of each data directory; "vendor-app.desktop" may also
// stand as "vendor/app.desktop".
bool ExecOfDesktopId(const std::vector<std::u16string>& data_dirs, const std::string& id,
                     std::string& exec) {
  std::vector<std::string> names{id};
  std::string name = id;
  for (std::size_t dash = name.find('-'); dash != std::string::npos; dash = name.find('-', dash)) {
    name[dash] = '/';
    names.push_back(name);
  }
  for (const std::u16string& dir : data_dirs) {
    for (const std::string& n : names) {
      std::string text;
      if (platform::ReadSmallFile(dir + u"applications/" + platform::FromUTF8(n), text) &&
          xdg::DesktopEntryExec(text, exec)) {
        return true;
      }
    }
  }
  return false;
}

}  // namespace

std::u16string GetProgAssoc(std::u16string_view Extension) {
  const std::vector<std::u16string> data_dirs = DataDirectories();

  std::string mime_type;
  int rank = -1;
  for (const std::u16string& dir : data_dirs) {
    xdg::BetterMimeTypeFromGlobs(ReadText(dir + u"mime/globs2"), platform::ToUTF8(Extension),
                                 mime_type, rank);
  }
  if (mime_type.empty()) return {};

  // The places of mimeapps.list, most important first; each desktop named
  // in XDG_CURRENT_DESKTOP has a list of its own ahead of the common one.
  std::vector<std::u16string> desktops;
  const std::u16string names = platform::EnvironmentValue(u"XDG_CURRENT_DESKTOP");
  for (std::size_t p = 0; p < names.size();) {
    std::size_t q = names.find(u':', p);
    if (q == std::u16string::npos) q = names.size();
    if (q > p) desktops.push_back(platform::LowerCase(names.substr(p, q - p)));
    p = q + 1;
  }
  std::vector<std::u16string> list_dirs =
      DirectoryList(u"XDG_CONFIG_HOME", HomeDirectory(u".config"));
  for (std::u16string& d : DirectoryList(u"XDG_CONFIG_DIRS", u"/etc/xdg")) list_dirs.push_back(d);
  for (const std::u16string& d : data_dirs) list_dirs.push_back(d + u"applications/");

  for (const std::u16string& dir : list_dirs) {
    std::vector<std::u16string> files;
    for (const std::u16string& desktop : desktops)
      files.push_back(dir + desktop + u"-mimeapps.list");
    files.push_back(dir + u"mimeapps.list");
    for (const std::u16string& file : files) {
      for (const std::string& id : xdg::DefaultApplications(ReadText(file), mime_type)) {
        std::string exec;
        if (ExecOfDesktopId(data_dirs, id, exec)) return platform::FromUTF8(exec);
      }
    }
  }
  return platform::FromUTF8(mime_type);
}

}  // namespace Zyn_filesys
