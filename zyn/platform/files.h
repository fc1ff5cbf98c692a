// zyn/platform/files.h
//
// The platform's files and directories: splitting names, enumerating entries
// by mask and attribute filter, plain file handles, time stamps, attributes
// and the small directory operations. Names are UTF-16; bytes that aren't
// valid UTF-8 travel as U+DC80..U+DCFF (see FromUTF8) and reach the disk
// unchanged. Nothing here throws: failures are results.

#ifndef ZYN_PLATFORM_FILES_H_
#define ZYN_PLATFORM_FILES_H_

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace zyn::platform {

// Entry attributes. Read-only: the owner may not write. Hidden: the name
// starts with ".". A symbolic link is reported as a link (never as what it
// points to) and is never entered by an enumeration or a walk.
inline constexpr int faReadOnly = 0x01;
inline constexpr int faHidden = 0x02;
inline constexpr int faSysFile = 0x04;   // devices, sockets and pipes
inline constexpr int faVolumeID = 0x08;  // never reported on this platform
inline constexpr int faDirectory = 0x10;
inline constexpr int faArchive = 0x20;  // every plain file
inline constexpr int faSymLink = 0x40;
inline constexpr int faAnyFile = 0x1FF;

// ---- Names --------------------------------------------------------------
// These split at both '/' and '\', and at a drive colon (a letter and ':' at
// the start), so "c:\a\b.txt" and "/a/b.txt" take the same road.

// True for '/' and '\'.
constexpr bool IsPathDelimiter(char16_t c) { return c == u'/' || c == u'\\'; }

// The path part with its trailing separator: "/a/b.txt" gives "/a/", "b" "".
std::u16string ExtractFilePath(std::u16string_view FileName);
// The name behind the last separator or drive colon: "/a/b.txt" gives "b.txt".
std::u16string ExtractFileName(std::u16string_view FileName);
// From the last dot of the name on, dot included; "" if the name has none.
std::u16string ExtractFileExt(std::u16string_view FileName);
// The name with its extension replaced by `Extension` (which brings its own
// dot), or with `Extension` appended if it has none.
std::u16string ChangeFileExt(std::u16string_view FileName, std::u16string_view Extension);
// An absolute path against the current directory, with "." and ".." removed
// by the text alone (links are not resolved) and runs of '/' made one. Only
// '/' separates here, as in the kernel. "" stays "" .
std::u16string ExpandFileName(std::u16string_view FileName);
// The current directory, without a trailing '/' (except for "/").
std::u16string GetCurrentDir();

// ---- Masks and enumeration ----------------------------------------------

// True if `name` matches `mask`: '*' stands for any run of characters, '?' for
// exactly one; everything else compares exactly (case-sensitive). A mask
// ending in ".*" also matches names without a dot ("*.*" matches every name),
// and one ending in "." matches names without a dot ("*." finds "README").
bool MatchesMask(std::u16string_view name, std::u16string_view mask);

// One entry found by FindFirst/FindNext. Its directory stays open until
// FindClose, or until the record goes.
struct TSearchRec {
  std::u16string Name;
  int Attr = 0;
  std::int64_t Size = 0;
  std::int64_t TimeSec = 0;  // last modification, seconds since 1970 (UTC)
  std::int32_t TimeNsec = 0;

  // Internal: the open enumeration.
  struct State;
  std::shared_ptr<State> FindHandle;
};

// Enumerates the entries of the directory part of `Path` whose names match
// its name part. Entries that have faHidden, faSysFile, faVolumeID or
// faDirectory outside `Attr` are passed over; all others (plain files, links)
// always come. "." and ".." come like any directory. 0 with the first entry
// in `F`, else an error number (ENOENT when nothing matched).
int FindFirst(std::u16string_view Path, int Attr, TSearchRec& F);
// The next entry; 0, or an error number at the end.
int FindNext(TSearchRec& F);
// Ends the enumeration; the record may be reused.
void FindClose(TSearchRec& F);

// ---- File handles -------------------------------------------------------
// Handles are non-negative integers; -1 marks a failure.

inline constexpr int fmOpenRead = 0x0000;
inline constexpr int fmOpenWrite = 0x0001;
inline constexpr int fmOpenReadWrite = 0x0002;
inline constexpr int fmShareCompat = 0x0000;  // share modes: accepted, no effect
inline constexpr int fmShareExclusive = 0x0010;
inline constexpr int fmShareDenyWrite = 0x0020;
inline constexpr int fmShareDenyRead = 0x0030;
inline constexpr int fmShareDenyNone = 0x0040;

// Opens an existing file (never a directory); -1 on failure.
int FileOpen(std::u16string_view FileName, int Mode);
// Creates or truncates a file for reading and writing; -1 on failure.
int FileCreate(std::u16string_view FileName);
// Up to `Buffer.size()` bytes, fewer only at the end; -1 on failure.
int FileRead(int Handle, std::span<std::uint8_t> Buffer);
// All of `Buffer`, or -1 on failure (a full disk included).
int FileWrite(int Handle, std::span<const std::uint8_t> Buffer);
// Origin 0 from the start, 1 from the current offset, 2 from the end. The
// new offset, or -1.
std::int64_t FileSeek(int Handle, std::int64_t Offset, int Origin);
void FileClose(int Handle);

// A time stamp with nanoseconds.
struct TFileTime {
  std::int64_t Sec = 0;
  std::int32_t Nsec = 0;
  friend bool operator==(const TFileTime&, const TFileTime&) = default;
};
// The last modification of an open file; false on failure.
bool FileGetDate(int Handle, TFileTime& Time);
// Sets the last modification of an open file, leaving the last access alone.
bool FileSetDate(int Handle, const TFileTime& Time);
// The last modification of a named file, following links; false on failure.
bool FileAge(std::u16string_view FileName, TFileTime& Time);

// ---- Named files and directories -----------------------------------------

// The attributes of a named entry, following links; -1 if there is none.
int FileGetAttr(std::u16string_view FileName);
// Sets faReadOnly: on, it takes every write permission away; off, it gives
// the owner write permission. Other bits can't be set and are ignored.
// 0 on success, else an error number.
int FileSetAttr(std::u16string_view FileName, int Attr);
// True for a plain file (or a link to one).
bool FileExists(std::u16string_view FileName);
// True for a directory (or a link to one).
bool DirectoryExists(std::u16string_view Directory);
// Creates the directory and all missing parents (mode 0777 less the umask);
// true if it exists afterwards as a directory.
bool ForceDirectories(std::u16string_view Directory);
bool CreateDir(std::u16string_view Directory);
// Removes one file or link. A read-only file (faReadOnly) is refused, as is
// a directory; false on failure.
bool DeleteFile(std::u16string_view FileName);
// Removes one empty directory; false on failure.
bool RemoveDir(std::u16string_view Directory);
// Renames one entry; false on failure. An existing target is never replaced.
bool RenameFile(std::u16string_view OldName, std::u16string_view NewName);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_FILES_H_
