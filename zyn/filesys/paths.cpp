#include "zyn/filesys/paths.h"

#include <vector>

#include "zyn/platform/casefold.h"
#include "zyn/platform/files.h"
#include "zyn/platform/textfile.h"
#include "zyn/stringl/stringl.h"

namespace Zyn_filesys {

using zyn::platform::ExtractFileName;
using zyn::platform::ExtractFilePath;
using zyn::platform::IsPathDelimiter;

std::u16string StripExtension(std::u16string_view FileName) {
  std::u16string path = ExtractFilePath(FileName);
  const std::u16string name = ExtractFileName(FileName);
  const std::size_t dot = name.rfind(u'.');
  path.append(name, 0, dot == std::u16string::npos ? name.size() : dot);
  return path;
}

std::u16string StripPath(std::u16string_view FileName) { return ExtractFileName(FileName); }

std::u16string ParentDir(std::u16string_view Path) {
  std::size_t i = Path.size();
  if (i > 0 && IsPathDelimiter(Path[i - 1])) --i;
  while (i > 0 && !IsPathDelimiter(Path[i - 1])) --i;
  return std::u16string(Path.substr(0, i));
}

bool IsRootDir(std::u16string_view Path) {
  const std::u16string s = Zyn_stringl::StripLTBlanks(Path);
  if (s == u"/") return true;
  return s.size() >= 3 && s.size() < 4 && s[1] == u':' && IsPathDelimiter(s[2]);
}

std::u16string AbridgeFilePath(std::u16string_view Path, int MaxLength) {
  std::u16string s(Path);
  const char16_t sep = s.find(u'\\') != std::u16string::npos ? u'\\' : u'/';
  std::size_t p = s.find(sep);
  if (p == std::u16string::npos) return s;
  // Each round either stops or moves p three places on, so the loop ends.
  while (static_cast<long long>(s.size()) >= MaxLength) {
    const std::size_t next = s.find(sep, p + 1);
    if (next == std::u16string::npos) break;
    s.replace(p + 1, next - p - 1, u"..");
    p += 3;
  }
  return s;
}

std::u16string DOSToWinPath(std::u16string_view Path) {
  using namespace zyn::platform;
  const std::u16string expanded = ExpandFileName(Path);
  if (expanded.empty()) return expanded;
  std::u16string result;
  std::u16string_view rest = std::u16string_view(expanded).substr(1);
  while (!rest.empty()) {
    const std::size_t slash = rest.find(u'/');
    const std::u16string_view component = rest.substr(0, slash);
    rest = slash == std::u16string_view::npos ? std::u16string_view() : rest.substr(slash + 1);
    std::u16string stored;
    TSearchRec f;
    // The exact name wins; else the first entry equal but for case.
    if (FindFirst(result + u"/" + std::u16string(component), faAnyFile, f) == 0 &&
        f.Name == component) {
      stored = f.Name;
    } else {
      for (int r = FindFirst(result + u"/*", faAnyFile, f); r == 0; r = FindNext(f)) {
        if (AnsiStrIComp(f.Name, component) == 0) {
          stored = f.Name;
          break;
        }
      }
    }
    FindClose(f);
    if (stored.empty()) return expanded;
    result += u'/';
    result += stored;
  }
  if (result.empty() || expanded.back() == u'/') result += u'/';
  return result;
}

bool IsDOS83Path(std::u16string_view Path) {
  constexpr std::u16string_view kPunctuation = u"!#$%&'()-.:@\\^_`{}~/";
  for (const char16_t c : Path) {
    if (c > 127 || !(Zyn_stringl::IsDigitLetter(c) || kPunctuation.find(c) != kPunctuation.npos)) {
      return false;
    }
  }
  std::u16string_view rest = Path;
  for (;;) {
    std::size_t end = std::u16string_view::npos;
    for (std::size_t i = 0; i < rest.size(); ++i) {
      if (IsPathDelimiter(rest[i])) {
        end = i;
        break;
      }
    }
    if (end == std::u16string_view::npos) end = rest.find(u'.');
    if (end == std::u16string_view::npos) return rest.size() <= 9;
    if (end > 8) return false;
    rest.remove_prefix(end + 1);
  }
}

std::u16string InsertBeforeFileExt(std::u16string_view Text, std::u16string_view FileName) {
  std::u16string name = ExtractFileName(FileName);
  const std::size_t dot = name.find(u'.');
  name.insert(dot == std::u16string::npos ? name.size() : dot, Text);
  return ExtractFilePath(FileName) + name;
}

std::u16string EnsureDefaultFileExt(std::u16string_view FileName, std::u16string_view DefaultExt) {
  std::u16string r(FileName);
  if (DefaultExt.empty() || !zyn::platform::ExtractFileExt(FileName).empty()) return r;
  if (DefaultExt.front() != u'.') r += u'.';
  r += DefaultExt;
  return r;
}

void SetAllFilenameCase(std::u16string_view FileMask, bool Upper) {
  using namespace zyn::platform;
  const std::u16string path = ExtractFilePath(FileMask);
  const std::u16string mask = AnsiLowerCase(ExtractFileName(FileMask));
  // The entries are gathered first: a renamed entry may otherwise come again.
  struct Found {
    std::u16string name;
    int attr;
  };
  std::vector<Found> found;
  TSearchRec f;
  for (int r = FindFirst(path + u"*", faAnyFile, f); r == 0; r = FindNext(f)) {
    if (f.Name != u"." && f.Name != u".." && MatchesMask(AnsiLowerCase(f.Name), mask)) {
      found.push_back({f.Name, f.Attr});
    }
  }
  FindClose(f);
  for (const Found& e : found) {
    const std::u16string renamed = Upper ? AnsiUpperCase(e.name) : AnsiLowerCase(e.name);
    if (renamed != e.name && !RenameFile(path + e.name, path + renamed)) {
      throw EInOutError(kIoAccessDenied, u"File access denied (" + path + e.name + u")");
    }
    if (e.attr == faDirectory) SetAllFilenameCase(path + renamed + u"/" + mask, Upper);
  }
}

int ExtractDrive(std::u16string_view Path) {
  if (Path.size() >= 2 && Path[1] == u':') return -1;
  if (Path.empty()) return 0;
  const char16_t c = Path[0];
  if (c >= u'a' && c <= u'z') return c - u'a';
  if (c >= u'A' && c <= u'Z') return c - u'A';
  return 0;
}

}  // namespace Zyn_filesys
