#include "zyn/package.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "zyn/base/zynbase.h"
#include "zyn/colors/unit.h"
#include "zyn/cpuid/unit.h"
#include "zyn/dstruct/unit.h"
#include "zyn/filesys/unit.h"
#include "zyn/stringl/unit.h"

namespace {

std::vector<std::string> g_log;

template <int N>
void Start() {
  g_log.push_back("start " + std::to_string(N));
}
template <int N>
void Stop() {
  g_log.push_back("stop " + std::to_string(N));
}

const ZynUnitInfo kRecorded[] = {
    {"a", Start<1>, Stop<1>}, {"b", Start<2>, Stop<2>}, {"c", Start<3>, Stop<3>}};

TEST(PackageTest, LoaderStartsForwardAndStopsBackwardOnce) {
  g_log.clear();
  zyn::UnitLoader loader(kRecorded);
  loader.Unload();  // unbalanced: nothing happens
  loader.Load();
  loader.Load();
  EXPECT_EQ(loader.LoadCount(), 2);
  loader.Unload();
  EXPECT_EQ(g_log, (std::vector<std::string>{"start 1", "start 2", "start 3"}));
  loader.Unload();
  loader.Unload();
  EXPECT_EQ(loader.LoadCount(), 0);
  EXPECT_EQ(g_log, (std::vector<std::string>{"start 1", "start 2", "start 3", "stop 3", "stop 2",
                                             "stop 1"}));
}

TEST(PackageTest, UnitTableIsInLoadOrder) {
  const ZynPackageInfo* table = GetPackageInfoTable();
  ASSERT_EQ(table->UnitCount, 10);
  const char* expected[] = {"zyn::platform", "Zyn_univconst", "Zyn_zynbase",     "Zyn_zyncolors",
                            "Zyn_stringl",   "Zyn_streams",   "Zyn_htmlsupport", "Zyn_dstruct",
                            "Zyn_cpuid",     "Zyn_filesys"};
  for (int i = 0; i < table->UnitCount; ++i) {
    EXPECT_STREQ(table->Units[i].Name, expected[i]);
    EXPECT_NE(table->Units[i].Init, nullptr);
    EXPECT_NE(table->Units[i].Fini, nullptr);
  }
}

TEST(PackageTest, FirstLoadClearsProcStatAndLaterLoadsDoNot) {
  int marker = 0;
  Zyn_zynbase::ProcStat = &marker;
  Initialize();
  EXPECT_EQ(Zyn_zynbase::ProcStat, nullptr);
  Zyn_zynbase::ProcStat = &marker;
  Initialize();  // nested: no effect
  EXPECT_EQ(Zyn_zynbase::ProcStat, &marker);
  Finalize();
  Finalize();
  Zyn_zynbase::ProcStat = nullptr;
}

// Each unit's exception is caught as EZYNError and as the platform's root
// class, and carries nothing but its message.
template <typename E>
void ExpectInTree(const char* name) {
  SCOPED_TRACE(name);
  try {
    throw E(u"Component \"\": not enough memory");
  } catch (const Zyn_zynbase::EZYNError& e) {
    EXPECT_NE(dynamic_cast<const E*>(&e), nullptr);
    EXPECT_EQ(e.Message(), u"Component \"\": not enough memory");
    EXPECT_STREQ(e.what(), "Component \"\": not enough memory");
  }
  static_assert(std::is_base_of_v<zyn::platform::Exception, E>);
  static_assert(sizeof(E) == sizeof(zyn::platform::Exception), "no fields of its own");
}

TEST(PackageTest, EveryUnitExceptionDescendsFromEZYNError) {
  ExpectInTree<Zyn_zyncolors::EZYNColArrayError>("EZYNColArrayError");
  ExpectInTree<Zyn_stringl::EZYNStringlError>("EZYNStringlError");
  ExpectInTree<Zyn_dstruct::EZYNDStructError>("EZYNDStructError");
  ExpectInTree<Zyn_cpuid::EZYNCpuIdError>("EZYNCpuIdError");
  ExpectInTree<Zyn_filesys::EZYNFileSysError>("EZYNFileSysError");
  EXPECT_FALSE((std::is_base_of_v<Zyn_stringl::EZYNStringlError, Zyn_dstruct::EZYNDStructError>));
}

// Loads the shared library the way a host does and runs one start-stop cycle.
TEST(PackageTest, SharedLibraryRunsTheCycleForAHost) {
  void* module = dlopen(ZYN_SHARED_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(module, nullptr) << dlerror();
  using Entry = void (*)();
  using Table = const ZynPackageInfo* (*)();
  auto initialize = reinterpret_cast<Entry>(dlsym(module, "Initialize"));
  auto finalize = reinterpret_cast<Entry>(dlsym(module, "Finalize"));
  auto table = reinterpret_cast<Table>(dlsym(module, "GetPackageInfoTable"));
  auto proc_stat = static_cast<void**>(dlsym(module, "_ZN11Zyn_zynbase8ProcStatE"));
  ASSERT_TRUE(initialize && finalize && table && proc_stat);
  EXPECT_EQ(table()->UnitCount, 10);
  EXPECT_STREQ(table()->Units[table()->UnitCount - 1].Name, "Zyn_filesys");
  *proc_stat = proc_stat;
  initialize();
  EXPECT_EQ(*proc_stat, nullptr);
  finalize();
  EXPECT_EQ(dlclose(module), 0);
}

}  // namespace
