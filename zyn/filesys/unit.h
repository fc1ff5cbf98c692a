// zyn/filesys/unit.h
//
// The unit Zyn_filesys: file-system tools and the save dialog.
// Its start and stop routines, run by the package frame, and its exception class.

#ifndef ZYN_FILESYS_UNIT_H_
#define ZYN_FILESYS_UNIT_H_

#include "zyn/base/zynbase.h"

namespace Zyn_filesys {

// Raised by this unit; carries only its message.
class EZYNFileSysError : public Zyn_zynbase::EZYNError {
 public:
  using EZYNError::EZYNError;
};

void initialization();
void Finalization();

}  // namespace Zyn_filesys

#endif  // ZYN_FILESYS_UNIT_H_
