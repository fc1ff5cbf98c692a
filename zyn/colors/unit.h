// zyn/colors/unit.h
//
// The unit Zyn_zyncolors: colour models, colour arrays and the named colours.
// Its start and stop routines, run by the package frame, and its exception class.

#ifndef ZYN_COLORS_UNIT_H_
#define ZYN_COLORS_UNIT_H_

#include "zyn/base/zynbase.h"

namespace Zyn_zyncolors {

// Raised by this unit; carries only its message.
class EZYNColArrayError : public Zyn_zynbase::EZYNError {
 public:
  using EZYNError::EZYNError;
};

void initialization();
void Finalization();

}  // namespace Zyn_zyncolors

#endif  // ZYN_COLORS_UNIT_H_
