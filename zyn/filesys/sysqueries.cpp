#include "zyn/filesys/sysqueries.h"

#include <algorithm>
#include <filesystem>

#include "zyn/platform/casefold.h"
#include "zyn/platform/drives.h"
#include "zyn/platform/environment.h"
#include "zyn/platform/random.h"
#include "zyn/platform/text.h"
#include "zyn/platform/textfile.h"

namespace Zyn_filesys {

namespace platform = zyn::platform;

std::u16string GetSystemDir() { return platform::SystemLibraryDirectory(); }

std::u16string GetWindowsDir() { return platform::SystemRootDirectory(); }

std::u16string GetTempDir() { return platform::TemporaryDirectory(); }

std::u16string GetEnviroVar(std::u16string_view Name) {
  std::u16string result;
  for (const std::u16string& entry : platform::EnvironmentStrings()) {
    if (entry.size() <= Name.size() || entry[Name.size()] != u'=') continue;
    if (platform::AnsiStrIComp(std::u16string_view(entry).substr(0, Name.size()), Name) == 0) {
      result = entry.substr(Name.size() + 1);
    }
  }
  return result;
}

void BuildDriveList(platform::TStringList* List) {
  List->Clear();
  const std::size_t count = platform::MountedDrives().size();
  for (std::size_t i = 0; i < count; ++i) {
    const char16_t name[] = {static_cast<char16_t>(u'A' + i), u':'};
    List->Add(std::u16string_view(name, 2));
  }
}

int GetDiskDriveType(std::uint8_t Drive) {
  if (Drive > 25) return platform::kDriveUnknown;
  return platform::DriveType(Drive);
}

std::int64_t DiskFreeExtended(std::uint8_t Drive) { return platform::DriveFreeBytes(Drive); }

bool DiskIsReadOnly(std::uint8_t Drive) {
  std::u16string root = platform::DriveRoot(Drive);
  if (root.empty()) return true;
  if (root.back() != u'/') root += u'/';
  const std::u16string probe = root + u"$%$LO%$.$$$";
  try {
    platform::Textfile f;
    f.Assign(probe);
    f.Rewrite();
    f.Close();
  } catch (const std::exception&) {
    return true;
  }
  std::error_code error;
  std::filesystem::remove(std::filesystem::path(platform::ToUTF8(probe)), error);
  return static_cast<bool>(error);
}

namespace {

constexpr std::u16string_view kVowels = u"aeiouy";
constexpr std::u16string_view kConsonants = u"bcdfghjklmnpqrstvwxz";
constexpr std::u16string_view kSpecials = u"_!$%#=";

char16_t RandomVowel() { return kVowels[static_cast<std::size_t>(platform::Random(6))]; }
char16_t RandomConsonant() { return kConsonants[static_cast<std::size_t>(platform::Random(20))]; }

}  // namespace

std::u16string InventPassword(int Length) {
  const int n = std::clamp(Length, 4, 14);
  std::u16string s;
  if (n % 2 == 1) s += RandomVowel();
  for (int i = 0; i < n / 2 - 1; ++i) {
    s += RandomConsonant();
    s += RandomVowel();
  }
  const int number = platform::Random(100);
  const char16_t digits[] = {static_cast<char16_t>(u'0' + number / 10),
                             static_cast<char16_t>(u'0' + number % 10)};
  s.insert(std::min<std::size_t>(6, s.size()), digits, 2);
  return s;
}

std::u16string InventPassword(int Length, bool Capitals, bool SpecialChars) {
  std::u16string s = InventPassword(Length);
  const std::size_t last = std::min(s.size(), static_cast<std::size_t>(std::max(Length, 0)));
  if (Capitals) {
    for (std::size_t i = 0; i < last; ++i) {
      if (platform::Random() > 0.5 && s[i] >= u'a' && s[i] <= u'z') s[i] = platform::UpCase(s[i]);
    }
  }
  if (SpecialChars) {
    for (std::size_t i = 0; i < last; ++i) {
      if (platform::Random() > 0.8) {
        const int r = platform::Random(16);
        s[i] = r < 6 ? kSpecials[static_cast<std::size_t>(r)] : static_cast<char16_t>(u'0' + r - 6);
      }
    }
  }
  return s;
}

}  // namespace Zyn_filesys
