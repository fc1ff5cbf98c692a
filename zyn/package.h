// zyn/package.h
//
// The package frame: the table of the library's units in load order, and the
// entry points a host's loader calls. Initialize starts the units front to
// back and Finalize stops them back to front; both count loads, so only the
// first Initialize and the last Finalize have any effect.
//
// A program that links the library statically may skip both: every table is
// constant data, and a fresh process is already in the started state.

#ifndef ZYN_PACKAGE_H_
#define ZYN_PACKAGE_H_

#include <span>

extern "C" {

// One unit: its name and its start and stop routines.
struct ZynUnitInfo {
  const char* Name;
  void (*Init)();
  void (*Fini)();
};

// The unit table: the platform layer's unit first, then the nine units.
struct ZynPackageInfo {
  int UnitCount;
  const ZynUnitInfo* Units;
};

// The unit table the loader walks. Constant data; valid while the library is loaded.
const ZynPackageInfo* GetPackageInfoTable();

// Starts the library; effects happen at the first of nested calls only.
void Initialize();

// Stops the library; effects happen when the last Initialize is undone. A
// Finalize without a matching Initialize does nothing.
void Finalize();

}  // extern "C"

namespace zyn {

// Counts the loads of a unit table. Load starts the units in table order when
// the count leaves 0; Unload stops them in reverse order when it returns to 0.
class UnitLoader {
 public:
  explicit UnitLoader(std::span<const ZynUnitInfo> units) : units_(units) {}

  void Load();
  void Unload();
  int LoadCount() const { return count_; }

 private:
  std::span<const ZynUnitInfo> units_;
  int count_ = 0;
};

}  // namespace zyn

#endif  // ZYN_PACKAGE_H_
