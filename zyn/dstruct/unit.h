// zyn/dstruct/unit.h
//
// The unit Zyn_dstruct: data structures, checksums and codecs.
// Its start and stop routines, run by the package frame, and its exception class.

#ifndef ZYN_DSTRUCT_UNIT_H_
#define ZYN_DSTRUCT_UNIT_H_

#include "zyn/base/zynbase.h"

namespace Zyn_dstruct {

// Raised by this unit; carries only its message.
class EZYNDStructError : public Zyn_zynbase::EZYNError {
 public:
  using EZYNError::EZYNError;
};

void initialization();
void Finalization();

}  // namespace Zyn_dstruct

#endif  // ZYN_DSTRUCT_UNIT_H_
