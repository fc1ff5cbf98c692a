// zyn/filesys/ascheader.h
//
// The four-line header of an ASC data file: a free text, two integers and
// four TRUE/FALSE keywords. Only the header is read; the data behind it is
// the caller's.

#ifndef ZYN_FILESYS_ASCHEADER_H_
#define ZYN_FILESYS_ASCHEADER_H_

#include <string>
#include <string_view>

#include "zyn/platform/stream.h"

namespace Zyn_filesys {

// Reads the header of a named file, whose lines end in CR LF. Status 0; -4
// if line 1 holds an LF (bare LF line ends), -1 if line 2 and -2 if line 3
// is no integer, -3 if one of the first three keywords is neither TRUE nor
// FALSE (tabs count as blanks). Out-parameters hold what was read up to a
// fault; the flags are cleared only once both numbers were read. A file
// that can't be opened or read raises EInOutError.
int ReadHeaderOfASC(std::u16string_view FileName, std::u16string& Text, int& N1, int& N2, bool& F1,
                    bool& F2, bool& F3, bool& F4);

// Reads the header from the stream's position and leaves the stream behind
// line 4. Lines end at LF; numbers are scanned (no text gives 0), so only
// -3 (a tab between keywords included) can come back besides 0.
int ReadHeaderOfASC(zyn::platform::TStream* Stream, std::u16string& Text, int& N1, int& N2,
                    bool& F1, bool& F2, bool& F3, bool& F4);

}  // namespace Zyn_filesys

#endif  // ZYN_FILESYS_ASCHEADER_H_
