// zyn/stringl/unit.h
//
// The unit Zyn_stringl: string functions, TGrep, the scrambler and the number scanners.
// Its start and stop routines, run by the package frame, and its exception class.

#ifndef ZYN_STRINGL_UNIT_H_
#define ZYN_STRINGL_UNIT_H_

#include "zyn/base/zynbase.h"

namespace Zyn_stringl {

// Raised by this unit; carries only its message.
class EZYNStringlError : public Zyn_zynbase::EZYNError {
 public:
  using EZYNError::EZYNError;
};

void initialization();
void Finalization();

}  // namespace Zyn_stringl

#endif  // ZYN_STRINGL_UNIT_H_
