// zyn/platform/posix_attr.h
//
// Internal to the Linux side of the platform layer: the entry attributes of a
// stat record, shared by the enumeration and the directory walks.

#ifndef ZYN_PLATFORM_POSIX_ATTR_H_
#define ZYN_PLATFORM_POSIX_ATTR_H_

#include <sys/stat.h>

#include <string_view>

#include "zyn/platform/files.h"

namespace zyn::platform::posix_detail {

// Directory, link, plain file (faArchive) or anything else (faSysFile);
// read-only when the owner may not write; hidden for a name starting with ".".
inline int AttrOf(const struct stat& st, std::u16string_view name) {
  int attr = S_ISLNK(st.st_mode)   ? faSymLink
             : S_ISDIR(st.st_mode) ? faDirectory
             : S_ISREG(st.st_mode) ? faArchive
                                   : faSysFile;
  if (!S_ISLNK(st.st_mode) && (st.st_mode & S_IWUSR) == 0) attr |= faReadOnly;
  if (!name.empty() && name.front() == u'.') attr |= faHidden;
  return attr;
}

}  // namespace zyn::platform::posix_detail

#endif  // ZYN_PLATFORM_POSIX_ATTR_H_
