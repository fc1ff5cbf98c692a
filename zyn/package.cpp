#include "zyn/package.h"

#include <array>

#include "zyn/base/univconst.h"
#include "zyn/base/zynbase.h"
#include "zyn/colors/unit.h"
#include "zyn/cpuid/unit.h"
#include "zyn/dstruct/unit.h"
#include "zyn/filesys/unit.h"
#include "zyn/html/unit.h"
#include "zyn/streams/unit.h"
#include "zyn/stringl/unit.h"

namespace {

// The platform layer keeps no state that needs starting or stopping.
void PlatformStart() {}
void PlatformStop() {}

constexpr std::array<ZynUnitInfo, 10> kUnits = {{
    {"zyn::platform", PlatformStart, PlatformStop},
    {"Zyn_univconst", Zyn_univconst::initialization, Zyn_univconst::Finalization},
    {"Zyn_zynbase", Zyn_zynbase::initialization, Zyn_zynbase::Finalization},
    {"Zyn_zyncolors", Zyn_zyncolors::initialization, Zyn_zyncolors::Finalization},
    {"Zyn_stringl", Zyn_stringl::initialization, Zyn_stringl::Finalization},
    {"Zyn_streams", Zyn_streams::initialization, Zyn_streams::Finalization},
    {"Zyn_htmlsupport", Zyn_htmlsupport::initialization, Zyn_htmlsupport::Finalization},
    {"Zyn_dstruct", Zyn_dstruct::initialization, Zyn_dstruct::Finalization},
    {"Zyn_cpuid", Zyn_cpuid::initialization, Zyn_cpuid::Finalization},
    {"Zyn_filesys", Zyn_filesys::initialization, Zyn_filesys::Finalization},
}};

constexpr ZynPackageInfo kPackage = {static_cast<int>(kUnits.size()), kUnits.data()};

zyn::UnitLoader& Loader() {
  static zyn::UnitLoader loader(kUnits);
  return loader;
}

}  // namespace

namespace zyn {

void UnitLoader::Load() {
  if (count_++ > 0) return;
  for (const ZynUnitInfo& unit : units_) unit.Init();
}

void UnitLoader::Unload() {
  if (count_ == 0 || --count_ > 0) return;
  for (auto it = units_.rbegin(); it != units_.rend(); ++it) it->Fini();
}

}  // namespace zyn

extern "C" {

const ZynPackageInfo* GetPackageInfoTable() { return &kPackage; }
void Initialize() { Loader().Load(); }
void Finalize() { Loader().Unload(); }

}  // extern "C"
