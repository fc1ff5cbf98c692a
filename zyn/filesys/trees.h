// zyn/filesys/trees.h
//
// Copying one file with progress feedback, copying, scanning and deleting
// directory trees, deleting files by mask, moving them to the trash, and the
// directory tests. Walks never follow a symbolic link into a directory and
// never touch anything outside the tree they were given; a link is handled
// as the link it is. Failures come back as results, except where noted.

#ifndef ZYN_FILESYS_TREES_H_
#define ZYN_FILESYS_TREES_H_

#include <functional>
#include <string>
#include <string_view>

#include "zyn/platform/object.h"
#include "zyn/platform/string_list.h"

namespace Zyn_filesys {

// Progress of one file: bytes copied so far and the file's size. Sizes and
// counts are 32-bit; larger values are reported as 2147483647.
using TFileCopyFeedBack = void (*)(int BytesCopied, int SizeOfFile);
// Progress of a tree copy: the current file's progress, its target path, and
// the number of files begun so far (the current one included).
using TTreeCopyFeedBack = void (*)(int BytesCopied, int SizeOfCurrentFile,
                                   std::u16string_view NameOfCurrentFile, int NrOfFilesCopiedSoFar);
// Progress of a scan: the directory about to be read and the files found so far.
using TScanFilesFeedback = void (*)(std::u16string_view CurrentDir, int Count);

// Event types for hosts; no function of this unit takes them.
using TNumericFeedback = std::function<void(zyn::platform::TObject* Sender, double num)>;
using TStringFeedback =
    std::function<void(zyn::platform::TObject* Sender, std::u16string_view msg)>;

// Results of FileCopyFeedBk.
inline constexpr int kCopyOk = 0;             // copied, or ended by AbortAnyFileCopying
inline constexpr int kCopySourceFailed = -1;  // the source can't be opened for copying
inline constexpr int kCopyTargetFailed = -2;  // the target can't be created
inline constexpr int kCopyWriteFailed = -3;
inline constexpr int kCopyReadFailed = -4;

// Sets the abort flag, which a running copy tests at the end of each 8192-byte
// round and a tree copy between entries. Safe from a feedback callback and
// from another thread. Every FileCopyFeedBk clears the flag at its start.
void AbortAnyFileCopying();

// Copies `Source` to `Target` (or into `Target` under the source's name, when
// `Target` is a directory), replacing an existing target, in rounds of 8192
// bytes with a feedback call before each round's bytes count, one at the
// start and one at the end. A copy gets the source's time stamp; with
// `CopyAttributes` also its permissions, read-only never carried over. An
// abort leaves the partial target, stamped as if complete, and gives 0.
// A source that can't be opened at all raises EInOutError; all else is the
// status (kCopy...).
int FileCopyFeedBk(std::u16string_view Source, std::u16string_view Target, bool CopyAttributes,
                   TFileCopyFeedBack FeedBack);

// Copies the tree below `SourceDir` into `TargetDir`, creating directories
// (empty ones too) as needed. Files go through the rounds of FileCopyFeedBk,
// links are made again as links, sockets, pipes and devices are passed over.
// The statuses of single files are dropped; a source file that can't be
// opened raises EInOutError and ends the copy. Paths that are equal but for
// case copy nothing. The target must not lie inside the source.
void CopyFileTree(std::u16string_view SourceDir, std::u16string_view TargetDir, bool CopyAttributes,
                  TTreeCopyFeedBack FeedBack);

// Deletes `Directory` with everything below it, depth first. The first path
// that resists removal stops the walk and is the result (a directory with
// its trailing '/'); what was removed stays removed. "" on success and for
// "". Read-only files resist; a link is removed, never what it points to; a
// `Directory` that is itself a link is not entered.
std::u16string DelDirTree(std::u16string_view Directory);

// Deletes the files the mask finds in one directory (no descent), passing
// over names starting with "." and directories. The number deleted.
int DeleteFiles(std::u16string_view FileMask);

// Moves the files the mask finds in one directory to the trash, passing over
// what DeleteFiles passes over and links to no file. The number moved.
int MoveToRecycleBin(std::u16string_view FileMask);

// Adds the path of every file the mask finds to `List` (which isn't cleared),
// and with `Recursive` also those below the subdirectories, files of a
// directory first. The name part of the mask matches without regard to case;
// the directory part stays as given. Hidden subdirectories are not entered.
// Nothing happens without a list.
void ScanFilesToStrList(std::u16string_view FileMask, bool Recursive,
                        zyn::platform::TStringList* List, TScanFilesFeedback FeedBack);

// As ScanFilesToStrList without a list: the number of files found.
int CountFiles(std::u16string_view FileMask, bool Recursive, TScanFilesFeedback FeedBack);

// The path of the first plain file named like the name part of `FileName`
// (without regard to case) in its directory or, depth first, below it; only
// directories with no attribute but faDirectory are entered. "" if none.
std::u16string FileDetect(std::u16string_view FileName);

// True unless the directory has an entry; also for one that doesn't exist.
bool DirEmpty(std::u16string_view Directory);
// True if `Directory` names a directory (or a link to one); false for "".
bool DirExists(std::u16string_view Directory);
// True if the probe file "$%$LO%$.$$$" can't be created in the directory.
// A probe that can't be closed or erased raises EInOutError.
bool DirIsReadOnly(std::u16string_view Directory);

// Frees the state a tree copy leaves behind; the unit's finalization calls it.
void ReleaseTreeCopyState();

}  // namespace Zyn_filesys

#endif  // ZYN_FILESYS_TREES_H_
