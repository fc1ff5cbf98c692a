// zyn/filesys/xdg_assoc.h
//
// The readers behind GetProgAssoc: the freedesktop.org files that tie a file
// extension to a MIME type (shared-mime-info's globs2), a MIME type to its
// default application (mimeapps.list) and an application to its command line
// (a desktop entry). Each takes a file's text and never fails: text it can't
// use counts as absent.

#ifndef ZYN_FILESYS_XDG_ASSOC_H_
#define ZYN_FILESYS_XDG_ASSOC_H_

#include <string>
#include <string_view>
#include <vector>

namespace Zyn_filesys::xdg {

// The best match in a globs2 text ("weight:type:glob[:flags]" lines) for a
// file name ending in "." + `extension` (UTF-8): only globs of the form
// "*.literal" count, compared without regard to ASCII case unless the flags
// hold "cs". A match ranks by twice its weight, plus one for a case-sensitive
// glob, so that "*.C:cs" beats "*.c" at equal weight. Gives true and sets
// `type` and `rank` if a match ranks above `rank` as passed in.
bool BetterMimeTypeFromGlobs(std::string_view globs2, std::string_view extension, std::string& type,
                             int& rank);

// The desktop IDs that the [Default Applications] group of a mimeapps.list
// text gives for `mime_type`, in their order; empty if none.
std::vector<std::string> DefaultApplications(std::string_view mimeapps, std::string_view mime_type);

// The value of the Exec key of the [Desktop Entry] group of a desktop entry,
// blanks around '=' removed and nothing else changed; false if it has none.
bool DesktopEntryExec(std::string_view desktop_entry, std::string& exec);

}  // namespace Zyn_filesys::xdg

#endif  // ZYN_FILESYS_XDG_ASSOC_H_
