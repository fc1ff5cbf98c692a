// zyn/filesys/sysqueries.h
//
// Where the system keeps its directories, what the environment holds, which
// drives there are and how much room they offer, which program opens a file
// type, and pronounceable passwords. Drives are the mounted file systems
// numbered as zyn/platform/drives.h describes: drive 0 ("A:") is "/".
// Nothing here keeps state or throws, unless a function says so.

#ifndef ZYN_FILESYS_SYSQUERIES_H_
#define ZYN_FILESYS_SYSQUERIES_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "zyn/filesys/unit.h"
#include "zyn/platform/string_list.h"

namespace Zyn_filesys {

// The directory of the system's shared libraries, "/usr/lib".
std::u16string GetSystemDir();

// The directory the system is installed in, "/".
std::u16string GetWindowsDir();

// The directory for temporary files with its trailing '/': $TMPDIR if it
// names a directory, else "/tmp/".
std::u16string GetTempDir();

// The value of the environment variable `Name`, compared without regard to
// ASCII case; of several matching entries the last wins. "" if none.
std::u16string GetEnviroVar(std::u16string_view Name);

// Clears `List` and adds "A:", "B:", ... for each drive, in drive order.
void BuildDriveList(zyn::platform::TStringList* List);

// The runtime's type code of drive `Drive` (0 = "A"): 2 removable, 3 fixed,
// 4 remote, 5 CD-ROM, 6 RAM disk; 1 for a number without a drive, 0 above 25.
int GetDiskDriveType(std::uint8_t Drive);

// Bytes available to this process on drive `Drive`; -1 on failure, for a
// number without a drive and for every number above 25.
std::int64_t DiskFreeExtended(std::uint8_t Drive);

// True if no file can be created in the root of drive `Drive` (or there is no
// such drive): the probe "$%$LO%$.$$$" is created there and erased again, and
// any failure in that counts as read-only.
bool DiskIsReadOnly(std::uint8_t Drive);

// The command line of the default application for files with extension
// `Extension` (without its dot), as the Exec= line of its desktop entry
// holds it, field codes and quotes included. Without a default application
// the MIME type's name; without a MIME type "". See docs/design.md.
std::u16string GetProgAssoc(std::u16string_view Extension);

// A pronounceable password of `Length` characters, limited to 4 to 14:
// alternating consonants and vowels (a vowel first for an odd length) with a
// two-digit number at position 7, or at the end when the letters are fewer
// than 7. Draws from the process's generator (zyn/platform/random.h).
std::u16string InventPassword(int Length);

// As above; then, over positions 1 to `Length` as far as the password goes,
// each lower-case letter becomes upper case on a draw above 0.5 (`Capitals`),
// and in a second pass each character is replaced on a draw above 0.8 by one
// of "_!$%#=" or a digit (`SpecialChars`).
std::u16string InventPassword(int Length, bool Capitals, bool SpecialChars);

}  // namespace Zyn_filesys

#endif  // ZYN_FILESYS_SYSQUERIES_H_
