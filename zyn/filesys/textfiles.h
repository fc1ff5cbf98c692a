// zyn/filesys/textfiles.h
//
// Tools for files of text lines: the kind of a file by its first bytes,
// repairing line ends, appending, counting lines, the last lines of a file,
// words, searching, and a file's size. Functions that take a name open and
// close the file themselves; failures raise the text file's EInOutError
// unless a contract says otherwise.

#ifndef ZYN_FILESYS_TEXTFILES_H_
#define ZYN_FILESYS_TEXTFILES_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "zyn/base/zynbase.h"
#include "zyn/platform/string_list.h"
#include "zyn/platform/textfile.h"

namespace Zyn_filesys {

using zyn::platform::Textfile;
using zyn::platform::TStringList;
using Zyn_zynbase::TFeedbackProc;
using Zyn_zynbase::TStrArray;

enum TTextfileType : std::uint8_t {
  tftUnicode_le,
  tftUnicode_be,
  tftUnicode4_le,
  tftUnicode4_be,
  tftRTF,
  tftUTF8,
  tftUnknown
};

// The kind of a file by a byte-order mark or "{\r" in its first four bytes
// (missing bytes count as 0, but the two bytes FF FE alone are UTF-16): EF
// BB BF, FF FE 00 00, 00 00 FE FF, FF FE, FE FF, 7B 5C 72 in this order. A file that can't be
// opened raises EInOutError naming it.
TTextfileType CheckTextFileType(std::u16string_view FileName);

// Copies SourceName to TargetName so that every CR is followed by an LF:
// CR CR x becomes CR LF CR x; a lone LF stays as it is.
void EnsureCRLFInFile(std::u16string_view SourceName, std::u16string_view TargetName);

// Appends the text, or every line of the list, each with CR LF; a missing
// file is created.
void AppendToTextFile(std::u16string_view FileName, std::u16string_view Text);
void AppendToTextFile(std::u16string_view FileName, const TStringList* Lines);

// The number of lines as ReadLn reads them (CR LF, LF or a lone CR end a
// line; a last line without a line end counts). The open form rewinds the
// file before and after; FeedBack (if not null) is called after every
// 1000th line with the count so far and PercentDone 0.
int CountLinesInTextFile(Textfile& tf, TFeedbackProc FeedBack);
int CountLinesInTextFile(std::u16string_view FileName, TFeedbackProc FeedBack);

// Exactly n strings (n >= 1): the last n lines, oldest first, with empty
// strings in front when the file has fewer. NumLines gets the number of
// lines of the whole file. The open form leaves the file rewound. Memory
// holds n lines at most.
TStrArray ReadLastNLinesOfTextFile(Textfile& tf, int n, int& NumLines);
TStrArray ReadLastNLinesOfTextFile(std::u16string_view FileName, int n, int& NumLines);

// The next run of characters above code 32, across lines; the character
// that ends it is consumed. "" at the end of the file.
std::u16string ReadNextWordInTextFile(Textfile& tf);

// The position of the first occurrence of SearchStr, counted in characters
// (UTF-16 code units) of the lines without their line ends, if it is not
// above Limit; 0 otherwise and for an empty SearchStr. IgnoreCase folds
// A to Z only.
int DetectStringInFile(std::u16string_view FileName, std::u16string_view SearchStr, bool IgnoreCase,
                       int Limit);

// The 1-based index of SearchStr in the first line that holds it, and that
// line in the file's own case; 0 and "" if none. IgnoreCase folds with the
// locale mapping (accented letters too).
int FindFirstMatchInTextFile(std::u16string_view FileName, std::u16string_view SearchStr,
                             bool IgnoreCase, std::u16string& Line);

// The low 32 bits, as a signed value, of the size of the first entry that
// the name (a mask is allowed) finds; -1 if none. Never raises.
int GetFileSize(std::u16string_view FileName);

}  // namespace Zyn_filesys

#endif  // ZYN_FILESYS_TEXTFILES_H_
