#include "zyn/platform/textfile.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include "zyn/platform/cpu_features.h"
#include "zyn/platform/file_handle.h"
#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

using file_detail::FileHandle;
using file_detail::OpenKind;

thread_local int pending_status = 0;

constexpr std::size_t kReadChunk = 64 * 1024;
// Lines skipped undecoded are read in larger pieces.
constexpr std::size_t kRawChunk = 256 * 1024;
constexpr std::size_t kWriteChunk = 32 * 1024;

enum class Encoding : std::uint8_t { kUtf8, kWindows1252, kLatin1 };
enum class Mode : std::uint8_t { kClosed, kInput, kOutput };

std::u16string_view StatusText(int code) {
  switch (code) {
    case kIoUnsupportedCodePage:
      return u"Unsupported code page";
    case kIoFileNotFound:
      return u"File not found";
    case kIoPathNotFound:
      return u"Path not found";
    case kIoTooManyOpenFiles:
      return u"Too many open files";
    case kIoAccessDenied:
      return u"File access denied";
    case kIoInvalidFileName:
      return u"Invalid file name";
    case kIoReadError:
      return u"Read beyond end of file";
    case kIoWriteError:
      return u"Disk write error";
    case kIoFileNotAssigned:
      return u"File not assigned";
    case kIoFileNotOpen:
      return u"File not open";
    case kIoNotOpenForInput:
      return u"File not open for input";
    case kIoNotOpenForOutput:
      return u"File not open for output";
    case kIoInvalidNumericInput:
      return u"Invalid numeric input";
    default:
      return u"I/O error";
  }
}

[[noreturn]] void Fail(int code, std::u16string_view detail = {}) {
  pending_status = code;
  std::u16string message(StatusText(code));
  if (!detail.empty()) message += u" (" + std::u16string(detail) + u")";
  throw EInOutError(code, std::move(message));
}

// The status for a failed open.
int OpenStatus(int error) {
  if (file_detail::IsNotFound(error)) return kIoFileNotFound;
  if (file_detail::IsPathNotFound(error)) return kIoPathNotFound;
  if (file_detail::IsTooManyOpenFiles(error)) return kIoTooManyOpenFiles;
  if (file_detail::IsInvalidName(error)) return kIoInvalidFileName;
  return kIoAccessDenied;
}

// How many bytes at the end of `bytes` could start an unfinished UTF-8
// sequence and must wait for the next chunk. Holding them back makes a
// chunk-wise decode give exactly what decoding the whole file would.
std::size_t IncompleteTail(std::string_view bytes) {
  const std::size_t n = bytes.size();
  for (std::size_t back = 1; back <= 3 && back <= n; ++back) {
    const auto b = static_cast<unsigned char>(bytes[n - back]);
    if ((b & 0xC0) == 0x80) continue;  // continuation byte: look further back
    std::size_t needed = 0;
    if (b >= 0xC2 && b <= 0xDF) needed = 2;
    if (b >= 0xE0 && b <= 0xEF) needed = 3;
    if (b >= 0xF0 && b <= 0xF4) needed = 4;
    return needed > back ? back : 0;
  }
  return 0;
}

// Bit i of lf[b] / cr[b] is set where byte i of the b-th 64-byte block at
// `p` is LF / CR, for `blocks` blocks.
void LineEndMasks(const char* p, std::size_t blocks, std::uint64_t* lf, std::uint64_t* cr) {
  for (std::size_t b = 0; b < blocks; ++b, p += 64) {
#if defined(__SSE2__)
    const __m128i lf_byte = _mm_set1_epi8('\n');
    const __m128i cr_byte = _mm_set1_epi8('\r');
    std::uint64_t l = 0, c = 0;
    for (int k = 0; k < 4; ++k) {
      const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * k));
      l |= std::uint64_t{static_cast<std::uint16_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, lf_byte)))}
           << (16 * k);
      c |= std::uint64_t{static_cast<std::uint16_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, cr_byte)))}
           << (16 * k);
    }
#else
    std::uint64_t l = 0, c = 0;
    for (int i = 0; i < 64; ++i) {
      l |= std::uint64_t{p[i] == '\n'} << i;
      c |= std::uint64_t{p[i] == '\r'} << i;
    }
#endif
    lf[b] = l;
    cr[b] = c;
  }
}

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
// The same with 32 bytes a comparison.
[[gnu::target("avx2")]] void LineEndMasksAvx2(const char* p, std::size_t blocks, std::uint64_t* lf,
                                              std::uint64_t* cr) {
  const __m256i lf_byte = _mm256_set1_epi8('\n');
  const __m256i cr_byte = _mm256_set1_epi8('\r');
  for (std::size_t b = 0; b < blocks; ++b, p += 64) {
    const __m256i lo = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
    const __m256i hi = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 32));
    // A lambda would not take the function's target, so the masks are spelt out.
    const auto lf_lo =
        static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(lo, lf_byte)));
    const auto lf_hi =
        static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(hi, lf_byte)));
    const auto cr_lo =
        static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(lo, cr_byte)));
    const auto cr_hi =
        static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(hi, cr_byte)));
    lf[b] = lf_lo | (std::uint64_t{lf_hi} << 32);
    cr[b] = cr_lo | (std::uint64_t{cr_hi} << 32);
  }
}
#endif

using MaskFunction = void (*)(const char*, std::size_t, std::uint64_t*, std::uint64_t*);

MaskFunction ChooseLineEndMasks() {
#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
  if (UsableCpuExtensions().avx2) return LineEndMasksAvx2;
#endif
  return LineEndMasks;
}

}  // namespace

EInOutError::EInOutError(int ErrorCode, std::u16string Message)
    : Exception(std::move(Message)), error_code_(ErrorCode) {}

int IOResult() {
  const int status = pending_status;
  pending_status = 0;
  return status;
}

struct Textfile::State {
  FileHandle file;
  Mode mode = Mode::kClosed;
  Encoding encoding = Encoding::kUtf8;
  // Input: decoded characters, the next one to deliver, undecoded bytes that
  // wait for the rest of their sequence, and whether the file is exhausted.
  std::u16string chars;
  std::size_t next = 0;
  // Undecoded bytes are pending_bytes[pending_off, pending_len); the string
  // may be longer, so that reading more doesn't clear fresh memory each time.
  std::string pending_bytes;
  std::size_t pending_off = 0;
  std::size_t pending_len = 0;
  bool source_done = false;
  // Output: characters not yet handed to the system.
  std::u16string out;

  void ResetBuffers() {
    chars.clear();
    next = 0;
    pending_bytes.clear();
    pending_off = 0;
    pending_len = 0;
    source_done = false;
    out.clear();
  }

  // Decodes `bytes` and appends them to `chars`.
  void Decode(std::string_view bytes) {
    switch (encoding) {
      case Encoding::kUtf8:
        chars += FromUTF8(bytes);
        break;
      case Encoding::kWindows1252:
        chars += AnsiToString(bytes);
        break;
      case Encoding::kLatin1:
        for (char b : bytes) chars.push_back(static_cast<unsigned char>(b));
        break;
    }
  }

  std::string Encode(std::u16string_view text) const {
    switch (encoding) {
      case Encoding::kUtf8:
        return ToUTF8(text);
      case Encoding::kWindows1252:
        return StringToAnsi(text);
      case Encoding::kLatin1:
        break;
    }
    std::string bytes(text.size(), '?');
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] <= 0xFF) bytes[i] = static_cast<char>(text[i]);
    }
    return bytes;
  }

  // Makes sure a character is ready unless the file is exhausted; false at
  // the end.
  bool Fill() {
    while (next >= chars.size()) {
      if (source_done) return false;
      chars.clear();
      next = 0;
      pending_bytes.resize(pending_len);
      pending_bytes.erase(0, pending_off);
      pending_off = 0;
      std::string bytes = std::move(pending_bytes);
      pending_bytes.clear();
      const std::size_t kept = bytes.size();
      bytes.resize(kept + kReadChunk);
      int error = 0;
      const std::int64_t n = file.Read(bytes.data() + kept, kReadChunk, error);
      if (n < 0) Fail(kIoReadError);
      bytes.resize(kept + static_cast<std::size_t>(n));
      if (n == 0) source_done = true;
      std::size_t hold = 0;
      if (!source_done && encoding == Encoding::kUtf8) hold = IncompleteTail(bytes);
      pending_bytes.assign(bytes, bytes.size() - hold, hold);
      pending_len = hold;
      Decode(std::string_view(bytes).substr(0, bytes.size() - hold));
    }
    return true;
  }

  // Appends the next chunk of the file to the undecoded bytes; false at the
  // end of the file.
  bool ReadRaw() {
    if (source_done) return false;
    const std::size_t kept = pending_len - pending_off;
    if (pending_off > 0)
      std::memmove(pending_bytes.data(), pending_bytes.data() + pending_off, kept);
    pending_off = 0;
    pending_len = kept;
    if (pending_bytes.size() < kept + kRawChunk) pending_bytes.resize(kept + kRawChunk);
    int error = 0;
    const std::int64_t n = file.Read(pending_bytes.data() + kept, kRawChunk, error);
    if (n < 0) Fail(kIoReadError);
    pending_len = kept + static_cast<std::size_t>(n);
    if (n == 0) source_done = true;
    return n > 0;
  }

  // Consumes an LF if it is the next character.
  void SkipLineFeed() {
    if (next < chars.size()) {
      if (chars[next] == u'\n') ++next;
      return;
    }
    if (pending_off >= pending_len && !ReadRaw()) return;
    if (pending_bytes[pending_off] == '\n') ++pending_off;
  }

  // Skips lines as ReadLn reads them. Decoded characters go first; behind
  // them the bytes are scanned undecoded, which gives the same lines: in
  // every encoding offered, CR and LF are single bytes that are never part
  // of another character.
  std::int64_t SkipLines(std::int64_t count) {
    std::int64_t skipped = 0;
    bool in_line = false;     // characters of an unfinished line were skipped
    bool cr_pending = false;  // the last byte skipped was a CR; an LF may follow
    while (skipped < count) {
      if (next < chars.size()) {
        const std::size_t end = chars.find_first_of(u"\r\n", next);
        if (end == std::u16string::npos) {
          next = chars.size();
          in_line = true;
          continue;
        }
        next = end + 1;
        if (chars[end] == u'\r') SkipLineFeed();
        ++skipped;
        in_line = false;
        continue;
      }
      if (cr_pending) {
        SkipLineFeed();
        cr_pending = false;
      }
      if (pending_off >= pending_len) {
        if (ReadRaw()) continue;
        if (in_line) ++skipped;
        break;
      }
      if (SkipLineBlocks(count, skipped, in_line, cr_pending)) continue;
      // One line the plain way: near the end of the buffer, or in the block
      // that holds the last line wanted.
      const char* p = pending_bytes.data() + pending_off;
      const std::size_t n = pending_len - pending_off;
      const auto* lf = static_cast<const char*>(std::memchr(p, '\n', n));
      const std::size_t before_lf = lf ? static_cast<std::size_t>(lf - p) : n;
      const auto* cr = static_cast<const char*>(std::memchr(p, '\r', before_lf));
      if (cr != nullptr) {
        pending_off += static_cast<std::size_t>(cr - p) + 1;
        SkipLineFeed();
      } else if (lf != nullptr) {
        pending_off += before_lf + 1;
      } else {
        pending_off = pending_len;
        in_line = true;
        continue;
      }
      ++skipped;
      in_line = false;
    }
    return skipped;
  }

  // Skips whole 64-byte blocks of undecoded bytes while the lines that end
  // in them don't reach `count`. A CR counts as a line end, an LF unless a
  // CR stands right before it. True if any block was skipped.
  bool SkipLineBlocks(std::int64_t count, std::int64_t& skipped, bool& in_line, bool& cr_pending) {
    constexpr std::size_t kRun = 64;  // blocks whose masks are made at once
    std::uint64_t lf[kRun], cr[kRun];
    const MaskFunction masks = ChooseLineEndMasks();
    bool any = false;
    while (pending_len - pending_off >= 64) {
      const std::size_t blocks = std::min(kRun, (pending_len - pending_off) / 64);
      masks(pending_bytes.data() + pending_off, blocks, lf, cr);
      for (std::size_t b = 0; b < blocks; ++b) {
        const std::uint64_t paired_lf = lf[b] & ((cr[b] << 1) | (cr_pending ? 1u : 0u));
        const std::uint64_t ends = cr[b] | (lf[b] & ~paired_lf);
        const int found = std::popcount(ends);
        if (skipped + found >= count) return any;
        const std::uint64_t content = ~(lf[b] | cr[b]);
        if (ends != 0) {
          const int last = 63 - std::countl_zero(ends);
          in_line = ((content >> last) >> 1) != 0;
        } else {
          in_line = in_line || content != 0;
        }
        skipped += found;
        cr_pending = (cr[b] >> 63) != 0;
        pending_off += 64;
        any = true;
      }
    }
    return any;
  }

  // Hands buffered output to the system. A trailing high surrogate waits for
  // its partner unless `final`.
  void WriteOut(bool final) {
    std::size_t count = out.size();
    if (!final && count > 0 && out[count - 1] >= 0xD800 && out[count - 1] <= 0xDBFF) --count;
    if (count == 0) return;
    const std::string bytes = Encode(std::u16string_view(out).substr(0, count));
    out.erase(0, count);
    int error = 0;
    const std::int64_t n = file.Write(bytes.data(), bytes.size(), error);
    if (n < 0 || static_cast<std::size_t>(n) < bytes.size()) {
      Fail(kIoWriteError);
    }
  }
};

Textfile::Textfile() : state_(std::make_unique<State>()) {}

Textfile::~Textfile() {
  if (state_->mode == Mode::kOutput) {
    const int status = pending_status;
    try {
      state_->WriteOut(true);
    } catch (const EInOutError&) {
      pending_status = status;  // nobody is left to ask for this failure
    }
  }
  state_->file.Close();
}

void Textfile::Assign(std::u16string_view FileName, int CodePage) {
  if (IsOpen()) Close();
  Encoding encoding;
  switch (CodePage) {
    case kCpDefault:
    case kCpUTF8:
      encoding = Encoding::kUtf8;
      break;
    case kCpWindows1252:
      encoding = Encoding::kWindows1252;
      break;
    case kCpLatin1:
      encoding = Encoding::kLatin1;
      break;
    default:
      Fail(kIoUnsupportedCodePage, FromUTF8(std::to_string(CodePage)));
  }
  file_name_ = FileName;
  code_page_ = CodePage;
  assigned_ = true;
  state_->encoding = encoding;
}

bool Textfile::IsOpen() const { return state_->mode != Mode::kClosed; }
bool Textfile::IsInput() const { return state_->mode == Mode::kInput; }
bool Textfile::IsOutput() const { return state_->mode == Mode::kOutput; }

void Textfile::Reset() {
  if (!assigned_) Fail(kIoFileNotAssigned);
  State& s = *state_;
  if (s.mode == Mode::kInput) {
    int error = 0;
    if (s.file.SeekTo(0, error) < 0) Fail(kIoReadError, file_name_);
    s.ResetBuffers();
    return;
  }
  if (s.mode == Mode::kOutput) Close();
  s.ResetBuffers();
  if (const int error = s.file.Open(ToUTF8(file_name_), OpenKind::kRead); error != 0) {
    Fail(OpenStatus(error), file_name_);
  }
  s.mode = Mode::kInput;
}

void Textfile::Rewrite() {
  if (!assigned_) Fail(kIoFileNotAssigned);
  if (IsOpen()) Close();
  State& s = *state_;
  s.ResetBuffers();
  if (const int error = s.file.Open(ToUTF8(file_name_), OpenKind::kCreateWriteOnly); error != 0) {
    Fail(OpenStatus(error), file_name_);
  }
  s.mode = Mode::kOutput;
}

void Textfile::Append() {
  if (!assigned_) Fail(kIoFileNotAssigned);
  if (IsOpen()) Close();
  State& s = *state_;
  s.ResetBuffers();
  if (const int error = s.file.Open(ToUTF8(file_name_), OpenKind::kWrite); error != 0) {
    Fail(OpenStatus(error), file_name_);
  }
  int error = 0;
  if (s.file.SeekToEnd(error) < 0) {
    s.file.Close();
    Fail(OpenStatus(error), file_name_);
  }
  s.mode = Mode::kOutput;
}

void Textfile::Flush() {
  if (state_->mode == Mode::kClosed) Fail(kIoFileNotOpen);
  if (state_->mode == Mode::kOutput) state_->WriteOut(false);
}

void Textfile::Close() {
  State& s = *state_;
  if (s.mode == Mode::kClosed) Fail(kIoFileNotOpen);
  const bool output = s.mode == Mode::kOutput;
  s.mode = Mode::kClosed;
  bool written = true;
  if (output) {
    try {
      s.WriteOut(true);
    } catch (const EInOutError&) {
      written = false;
    }
  }
  const int error = s.file.Close();
  s.ResetBuffers();
  if (!written || (output && error != 0)) Fail(kIoWriteError, file_name_);
}

bool Textfile::Eof() {
  if (state_->mode == Mode::kClosed) Fail(kIoFileNotOpen);
  if (state_->mode != Mode::kInput) Fail(kIoNotOpenForInput);
  return !state_->Fill();
}

char16_t Textfile::ReadChar() {
  if (Eof()) Fail(kIoReadError);
  return state_->chars[state_->next++];
}

std::u16string Textfile::ReadLn() {
  std::u16string line;
  ReadLn(line);
  return line;
}

std::int64_t Textfile::SkipLines(std::int64_t count) {
  if (state_->mode == Mode::kClosed) Fail(kIoFileNotOpen);
  if (state_->mode != Mode::kInput) Fail(kIoNotOpenForInput);
  return state_->SkipLines(count);
}

void Textfile::ReadLn(std::u16string& line) {
  line.clear();
  if (Eof()) return;
  State& s = *state_;
  while (s.Fill()) {
    const std::size_t end = s.chars.find_first_of(u"\r\n", s.next);
    if (end == std::u16string::npos) {
      line.append(s.chars, s.next);
      s.next = s.chars.size();
      continue;
    }
    line.append(s.chars, s.next, end - s.next);
    s.next = end + 1;
    if (s.chars[end] == u'\r' && s.Fill() && s.chars[s.next] == u'\n') ++s.next;
    break;
  }
}

int Textfile::ReadInteger() {
  while (!Eof() && state_->chars[state_->next] <= u' ') ++state_->next;
  std::u16string token;
  while (!Eof() && state_->chars[state_->next] > u' ')
    token.push_back(state_->chars[state_->next++]);
  if (token.empty()) return 0;

  std::size_t i = 0;
  const bool negative = token[0] == u'-';
  if (token[0] == u'-' || token[0] == u'+') ++i;
  int base = 10;
  if (i < token.size() && token[i] == u'$') {
    base = 16;
    ++i;
  } else if (i + 1 < token.size() && token[i] == u'0' &&
             (token[i + 1] == u'x' || token[i + 1] == u'X')) {
    base = 16;
    i += 2;
  }
  if (i == token.size()) Fail(kIoInvalidNumericInput);
  std::int64_t magnitude = 0;
  for (; i < token.size(); ++i) {
    const char16_t c = token[i];
    int digit;
    if (c >= u'0' && c <= u'9') {
      digit = c - u'0';
    } else if (base == 16 && c >= u'a' && c <= u'f') {
      digit = c - u'a' + 10;
    } else if (base == 16 && c >= u'A' && c <= u'F') {
      digit = c - u'A' + 10;
    } else {
      Fail(kIoInvalidNumericInput);
    }
    magnitude = magnitude * base + digit;
    if (magnitude > std::int64_t{std::numeric_limits<int>::max()} + 1) Fail(kIoInvalidNumericInput);
  }
  const std::int64_t value = negative ? -magnitude : magnitude;
  if (value > std::numeric_limits<int>::max()) Fail(kIoInvalidNumericInput);
  return static_cast<int>(value);
}

void Textfile::WriteString(std::u16string_view S) {
  State& s = *state_;
  if (s.mode == Mode::kClosed) Fail(kIoFileNotOpen);
  if (s.mode != Mode::kOutput) Fail(kIoNotOpenForOutput);
  s.out.append(S);
  if (s.out.size() >= kWriteChunk) s.WriteOut(false);
}

void Textfile::WriteChar(char16_t C) { WriteString(std::u16string_view(&C, 1)); }

void Textfile::WriteInteger(int Value) {
  const std::string digits = std::to_string(Value);
  WriteString(std::u16string(digits.begin(), digits.end()));
}

void Textfile::WriteLn() { WriteString(u"\r\n"); }

void Textfile::WriteLn(std::u16string_view S) {
  WriteString(S);
  WriteLn();
}

}  // namespace zyn::platform
