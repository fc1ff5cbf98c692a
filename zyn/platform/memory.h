// zyn/platform/memory.h
//
// Whether a large allocation may be tried. On Linux an allocation beyond the
// memory the system can give succeeds at first and ends the process later,
// when its pages are touched; storage sized by what a file claims asks here
// first and refuses instead. A host may set a lower ceiling of its own.

#ifndef ZYN_PLATFORM_MEMORY_H_
#define ZYN_PLATFORM_MEMORY_H_

#include <cstdint>
#include <optional>

namespace zyn::platform {

// The memory the system reports as available to new allocations
// (MemAvailable on Linux); none if it can't tell.
std::optional<std::uint64_t> AvailableMemory();

// The largest single allocation the library may try for storage whose size
// comes from outside input; 0 (the default) means no ceiling of the host's.
// Not synchronised: set it before such work starts.
void SetAllocationCeiling(std::uint64_t Bytes);
std::uint64_t AllocationCeiling();

// False if `Bytes` exceeds the ceiling or the available memory. Cheap for
// small sizes, which it always allows.
bool AllocationAllowed(std::uint64_t Bytes);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_MEMORY_H_
