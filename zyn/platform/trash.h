// zyn/platform/trash.h
//
// The desktop's trash, as freedesktop.org's Trash standard 1.0 lays it
// out: $XDG_DATA_HOME/Trash for files on the file system of the user's data,
// else $topdir/.Trash/$uid or $topdir/.Trash-$uid on the file's own mount.

#ifndef ZYN_PLATFORM_TRASH_H_
#define ZYN_PLATFORM_TRASH_H_

#include <string>
#include <string_view>

namespace zyn::platform {

// Moves the file or link `FileName` into the trash of its file system: the
// .trashinfo (original path percent-encoded, deletion date in local time) is
// created first and exclusively, then the entry is renamed beside it under
// a name no other trashed entry has ("a.txt", "a.2.txt", ...). Nothing is
// ever overwritten or copied: when any step fails, the entry stays where it
// was and the result is false.
bool MoveToTrash(std::u16string_view FileName);

// The bytes of `path` with everything but letters, digits, "-_.!~*'()" and
// "/" written as %XX, as the Path key of a .trashinfo holds them.
std::string TrashEscape(std::string_view path);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_TRASH_H_
