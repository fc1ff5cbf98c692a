#include "zyn/filesys/textfiles.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>

#include "zyn/platform/casefold.h"
#include "zyn/platform/files.h"

namespace Zyn_filesys {

namespace {

using zyn::platform::IOResult;

// A text file opened for reading by name, closed on every path.
class InputFile {
 public:
  explicit InputFile(std::u16string_view name, int code_page = zyn::platform::kCpDefault) {
    IOResult();
    file_.Assign(name, code_page);
    file_.Reset();
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() {
    if (file_.IsOpen()) file_.Close();
  }
  Textfile& operator*() { return file_; }
  Textfile* operator->() { return &file_; }

 private:
  Textfile file_;
};

int ClampToInt(std::int64_t n) { return static_cast<int>(std::min<std::int64_t>(n, INT_MAX)); }

void AppendLines(std::u16string_view FileName, auto&& write_lines) {
  IOResult();
  Textfile tf;
  tf.Assign(FileName);
  try {
    tf.Append();
  } catch (const zyn::platform::EInOutError&) {
    IOResult();
    tf.Rewrite();
  }
  write_lines(tf);
  tf.Close();
}

}  // namespace

TTextfileType CheckTextFileType(std::u16string_view FileName) {
  // Latin-1 hands over every byte as the character of the same code.
  InputFile tf(FileName, zyn::platform::kCpLatin1);
  std::array<unsigned, 4> b{};
  int count = 0;
  for (unsigned& byte : b) {
    if (tf->Eof()) break;
    byte = tf->ReadChar();
    ++count;
  }
  if (b[0] == 0xEF && b[1] == 0xBB && b[2] == 0xBF) return tftUTF8;
  // A missing fourth byte counts as 0, but FF FE alone is the UTF-16 mark.
  if (b[0] == 0xFF && b[1] == 0xFE && b[2] == 0 && b[3] == 0 && count >= 3) return tftUnicode4_le;
  if (b[0] == 0 && b[1] == 0 && b[2] == 0xFE && b[3] == 0xFF) return tftUnicode4_be;
  if (b[0] == 0xFF && b[1] == 0xFE) return tftUnicode_le;
  if (b[0] == 0xFE && b[1] == 0xFF) return tftUnicode_be;
  if (b[0] == 0x7B && b[1] == 0x5C && b[2] == 0x72) return tftRTF;
  return tftUnknown;
}

void EnsureCRLFInFile(std::u16string_view SourceName, std::u16string_view TargetName) {
  // Byte for byte: CR and LF are the only bytes that matter here.
  InputFile in(SourceName, zyn::platform::kCpLatin1);
  Textfile out;
  out.Assign(TargetName, zyn::platform::kCpLatin1);
  out.Rewrite();
  while (!in->Eof()) {
    const char16_t c = in->ReadChar();
    out.WriteChar(c);
    if (c != u'\r') continue;
    const char16_t d = in->Eof() ? u'\n' : in->ReadChar();
    if (d != u'\n') out.WriteChar(u'\n');
    out.WriteChar(d);
  }
  out.Close();
}

void AppendToTextFile(std::u16string_view FileName, std::u16string_view Text) {
  AppendLines(FileName, [&](Textfile& tf) { tf.WriteLn(Text); });
}

void AppendToTextFile(std::u16string_view FileName, const TStringList* Lines) {
  AppendLines(FileName, [&](Textfile& tf) {
    if (Lines == nullptr) return;
    for (int i = 0; i < Lines->Count(); ++i) tf.WriteLn(Lines->Strings(i));
  });
}

int CountLinesInTextFile(Textfile& tf, TFeedbackProc FeedBack) {
  constexpr std::int64_t kFeedbackEvery = 1000;
  tf.Reset();
  std::int64_t count = 0;
  while (true) {
    const std::int64_t skipped = tf.SkipLines(kFeedbackEvery);
    count += skipped;
    if (skipped < kFeedbackEvery) break;
    if (FeedBack != nullptr) FeedBack(nullptr, static_cast<double>(count), 0.0);
  }
  tf.Reset();
  return ClampToInt(count);
}

int CountLinesInTextFile(std::u16string_view FileName, TFeedbackProc FeedBack) {
  InputFile tf(FileName);
  return CountLinesInTextFile(*tf, FeedBack);
}

TStrArray ReadLastNLinesOfTextFile(Textfile& tf, int n, int& NumLines) {
  // Two passes give the ring's result without a string per line: count the
  // lines, then read only the last n of them.
  NumLines = 0;
  tf.Reset();
  const std::int64_t total = tf.SkipLines(INT64_MAX);
  tf.Reset();
  NumLines = ClampToInt(total);
  if (n < 1) return {};
  TStrArray result(static_cast<std::size_t>(n));
  const std::int64_t kept = std::min<std::int64_t>(total, n);
  tf.SkipLines(total - kept);
  for (std::int64_t i = n - kept; i < n; ++i) tf.ReadLn(result[static_cast<std::size_t>(i)]);
  tf.Reset();
  return result;
}

TStrArray ReadLastNLinesOfTextFile(std::u16string_view FileName, int n, int& NumLines) {
  InputFile tf(FileName);
  return ReadLastNLinesOfTextFile(*tf, n, NumLines);
}

std::u16string ReadNextWordInTextFile(Textfile& tf) {
  std::u16string word;
  while (!tf.Eof()) {
    const char16_t c = tf.ReadChar();
    if (c > u' ') {
      word.push_back(c);
      break;
    }
  }
  while (!word.empty() && !tf.Eof()) {
    const char16_t c = tf.ReadChar();
    if (c <= u' ') break;
    word.push_back(c);
  }
  return word;
}

int DetectStringInFile(std::u16string_view FileName, std::u16string_view SearchStr, bool IgnoreCase,
                       int Limit) {
  InputFile tf(FileName);
  if (SearchStr.empty()) return 0;
  const std::u16string wanted =
      IgnoreCase ? zyn::platform::LowerCase(SearchStr) : std::u16string(SearchStr);
  std::int64_t position = 0;
  std::u16string line;
  while (position < Limit && !tf->Eof()) {
    tf->ReadLn(line);
    if (IgnoreCase) std::transform(line.begin(), line.end(), line.begin(), zyn::platform::LowCase);
    const std::size_t at = line.find(wanted);
    if (at != std::u16string::npos) {
      position += static_cast<std::int64_t>(at) + 1;
      return position <= Limit ? static_cast<int>(position) : 0;
    }
    position += static_cast<std::int64_t>(line.size());
  }
  return 0;
}

int FindFirstMatchInTextFile(std::u16string_view FileName, std::u16string_view SearchStr,
                             bool IgnoreCase, std::u16string& Line) {
  Line.clear();
  InputFile tf(FileName);
  if (SearchStr.empty()) return 0;
  const std::u16string wanted =
      IgnoreCase ? zyn::platform::AnsiLowerCase(SearchStr) : std::u16string(SearchStr);
  std::u16string line, folded;
  while (!tf->Eof()) {
    tf->ReadLn(line);
    const std::u16string* searched = &line;
    if (IgnoreCase) {
      folded.resize(line.size());
      std::transform(line.begin(), line.end(), folded.begin(), zyn::platform::AnsiLowCaseChar);
      searched = &folded;
    }
    const std::size_t at = searched->find(wanted);
    if (at != std::u16string::npos) {
      Line = line;
      return static_cast<int>(at) + 1;
    }
  }
  return 0;
}

int GetFileSize(std::u16string_view FileName) {
  try {
    zyn::platform::TSearchRec rec;
    const std::u16string path = zyn::platform::ExpandFileName(FileName);
    if (zyn::platform::FindFirst(path, zyn::platform::faAnyFile, rec) != 0) return -1;
    const auto size = static_cast<std::uint32_t>(rec.Size);
    zyn::platform::FindClose(rec);
    return static_cast<std::int32_t>(size);
  } catch (...) {
    return -1;
  }
}

}  // namespace Zyn_filesys
