// zyn/cpuid/unit.h
//
// The unit Zyn_cpuid: processor identification.
// Its start and stop routines, run by the package frame, and its exception class.

#ifndef ZYN_CPUID_UNIT_H_
#define ZYN_CPUID_UNIT_H_

#include "zyn/base/zynbase.h"

namespace Zyn_cpuid {

// Raised by this unit; carries only its message.
class EZYNCpuIdError : public Zyn_zynbase::EZYNError {
 public:
  using EZYNError::EZYNError;
};

void initialization();
void Finalization();

}  // namespace Zyn_cpuid

#endif  // ZYN_CPUID_UNIT_H_
