// zyn/platform/textfile.h
//
// The platform's text file: a named file read or written character by
// character, by integer and by line, with EInOutError on every failure and
// IOResult to clear the pending status. Lines are written with CR LF; CR LF,
// LF and a lone CR all end a line on reading. The default encoding is UTF-8,
// and bytes that are not valid UTF-8 survive a read and write unchanged
// (they travel as U+DC80..U+DCFF, see FromUTF8).

#ifndef ZYN_PLATFORM_TEXTFILE_H_
#define ZYN_PLATFORM_TEXTFILE_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "zyn/platform/object.h"

namespace zyn::platform {

// Status codes of text-file failures, as EInOutError::ErrorCode and IOResult
// give them.
inline constexpr int kIoUnsupportedCodePage = 1;
inline constexpr int kIoFileNotFound = 2;
inline constexpr int kIoPathNotFound = 3;
inline constexpr int kIoTooManyOpenFiles = 4;
inline constexpr int kIoAccessDenied = 5;
inline constexpr int kIoInvalidFileName = 123;  // a NUL in the name, or a name too long
inline constexpr int kIoReadError = 100;        // also reading a character behind the end
inline constexpr int kIoWriteError = 101;
inline constexpr int kIoFileNotAssigned = 102;
inline constexpr int kIoFileNotOpen = 103;
inline constexpr int kIoNotOpenForInput = 104;
inline constexpr int kIoNotOpenForOutput = 105;
inline constexpr int kIoInvalidNumericInput = 106;

// A failed text-file operation. The message names the failure, and for an
// open also the file: File not found ("data.txt").
class EInOutError : public Exception {
 public:
  EInOutError(int ErrorCode, std::u16string Message);
  int ErrorCode() const noexcept { return error_code_; }

 private:
  int error_code_;
};

// The status of the last failed text-file operation of this thread, 0 if
// none since the last call; the call clears it.
int IOResult();

// Code pages a text file can be assigned with. 0 is the default, UTF-8.
inline constexpr int kCpDefault = 0;
inline constexpr int kCpUTF8 = 65001;
inline constexpr int kCpWindows1252 = 1252;  // the library's 8-bit code page
inline constexpr int kCpLatin1 = 28591;      // byte = code point; above 255 becomes '?'

// A text file, closed when the object goes (buffered output is written then;
// call Close to see a failure). Not copyable.
class Textfile {
 public:
  Textfile();
  Textfile(const Textfile&) = delete;
  Textfile& operator=(const Textfile&) = delete;
  ~Textfile();

  // Binds a name and a code page (kCpDefault, kCpUTF8, kCpWindows1252,
  // kCpLatin1). An open file is closed first. Another code page raises
  // EInOutError kIoUnsupportedCodePage.
  void Assign(std::u16string_view FileName, int CodePage = kCpDefault);

  // Opens the file for reading from its start; an open input file is rewound,
  // an open output file closed and reopened.
  void Reset();
  // Creates the file, or empties an existing one, for writing.
  void Rewrite();
  // Opens an existing file for writing behind its last byte; a missing file
  // raises kIoFileNotFound.
  void Append();
  // Writes buffered output to the system.
  void Flush();
  // Writes buffered output and closes. A file that isn't open raises
  // kIoFileNotOpen.
  void Close();

  bool IsOpen() const;
  bool IsInput() const;
  bool IsOutput() const;
  const std::u16string& FileName() const { return file_name_; }
  int CodePage() const { return code_page_; }

  // True when no character is left to read. Input files only.
  bool Eof();
  // The next character, line ends included; behind the end kIoReadError.
  char16_t ReadChar();
  // Skips characters up to code 32 (blanks, tabs, line ends), then reads the
  // following run of characters above 32 as a decimal integer with optional
  // sign, or as hexadecimal behind "$" or "0x". The character behind the
  // number stays unread. The end of the file before any digit gives 0; a run
  // that isn't a number in the range of int raises kIoInvalidNumericInput.
  int ReadInteger();
  // The rest of the current line without its line end, and moves to the next
  // line. At the end of the file the empty string, with no error.
  std::u16string ReadLn();
  // ReadLn into `S`, reusing its storage.
  void ReadLn(std::u16string& S);
  // Skips up to `count` lines as ReadLn would read them, without building
  // them, and gives how many it skipped: fewer only at the end of the file.
  std::int64_t SkipLines(std::int64_t count);

  // Output files only; a failure of the system raises kIoWriteError (or the
  // status that names it, such as a full disk).
  void WriteChar(char16_t C);
  void WriteInteger(int Value);
  void WriteString(std::u16string_view S);
  // Writes CR LF.
  void WriteLn();
  // WriteString, then CR LF.
  void WriteLn(std::u16string_view S);

 private:
  struct State;
  std::unique_ptr<State> state_;
  std::u16string file_name_;
  int code_page_ = kCpDefault;
  bool assigned_ = false;
};

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_TEXTFILE_H_
