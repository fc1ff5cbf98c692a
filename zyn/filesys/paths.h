// zyn/filesys/paths.h
//
// Taking file and directory paths apart and putting them together again.
// Both '/' and '\' separate, so a Linux path and a path of a desktop system
// with drive letters ("c:\data\x.csv") take the same road. Only
// DOSToWinPath and SetAllFilenameCase look at the disk.

#ifndef ZYN_FILESYS_PATHS_H_
#define ZYN_FILESYS_PATHS_H_

#include <string>
#include <string_view>

namespace Zyn_filesys {

// The name without its last extension; dots in the directory part are never
// looked at. "archive.tar.gz" gives "archive.tar", ".cfg" the empty string.
std::u16string StripExtension(std::u16string_view FileName);

// The name behind the last separator or drive colon (ExtractFileName).
std::u16string StripPath(std::u16string_view FileName);

// The path up to and including the separator before the last component, a
// trailing separator passed over: "c:\a\b\" and "c:\a\b" give "c:\a\",
// "/a/b" gives "/a/", "c:\" and a bare name the empty string.
std::u16string ParentDir(std::u16string_view Path);

// True for the root of a drive ("c:\", " c:/ ") and for "/", blanks around
// it removed. "c:" is none, nor is a network path.
bool IsRootDir(std::u16string_view Path);

// Replaces directory names by "..", from the left, until the text is shorter
// than `MaxLength` or no directory name is left; drive and file name stay.
// "c:\aaa\bbb\ccc\file.txt" at 23 gives "c:\..\bbb\ccc\file.txt".
std::u16string AbridgeFilePath(std::u16string_view Path, int MaxLength);

// The absolute path with every component as it is stored on the disk, each
// found without regard to case ("/TMP/a.TXT" gives "/tmp/A.txt" when those
// exist). From the first component not found on, the expanded path is given
// unchanged.
std::u16string DOSToWinPath(std::u16string_view Path);

// True if the text could be a short (8.3) path: only digits, letters and
// !#$%&'()-.:@\^_`{}~ (and '/'), segments up to a separator or the first
// dot of at most 8 characters, a last segment of at most 9. "" is one.
bool IsDOS83Path(std::u16string_view Path);

// Inserts `Text` before the first dot of the name part, or appends it:
// "_old" into "c:\a.b\data.tar.gz" gives "c:\a.b\data_old.tar.gz".
std::u16string InsertBeforeFileExt(std::u16string_view Text, std::u16string_view FileName);

// `FileName` unchanged if it has an extension (a trailing dot counts) or
// `DefaultExt` is empty; else with the extension appended, with a dot
// between unless `DefaultExt` brings one. ("data", "txt") gives "data.txt".
std::u16string EnsureDefaultFileExt(std::u16string_view FileName, std::u16string_view DefaultExt);

// Renames every entry that `FileMask` finds, and every entry below the plain
// directories among them, to the upper- or lower-case form of its name. The
// name part of the mask matches without regard to case; only the last
// component of each entry changes, the directory part is used as given. An
// entry whose new name is taken by another is a failure: a failing rename
// raises EInOutError, and what was renamed before stays renamed.
void SetAllFilenameCase(std::u16string_view FileMask, bool Upper);

// The drive index of the first character, 0 for "A" or "a" to 25 for "Z" or
// "z", and 0 for anything else; -1 when ':' stands second. "" gives 0.
int ExtractDrive(std::u16string_view Path);

}  // namespace Zyn_filesys

#endif  // ZYN_FILESYS_PATHS_H_
