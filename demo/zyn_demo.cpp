// zyn_demo: loads the library the way a host does and shows what it holds.

#include <cstdio>
#include <string>

#include "zyn/base/univconst.h"
#include "zyn/base/zynbase.h"
#include "zyn/package.h"
#include "zyn/platform/text.h"

namespace {

using zyn::platform::ToUTF8;

void ShowUnitOrder() {
  const ZynPackageInfo* table = GetPackageInfoTable();
  std::printf("Units, in start order (they stop in reverse):\n");
  for (int i = 0; i < table->UnitCount; ++i) {
    std::printf("  %2d  %s\n", i + 1, table->Units[i].Name);
  }
}

// UTF-8 of `s`, padded with blanks to `width` characters (printf pads bytes).
std::string Padded(const std::u16string& s, std::size_t width) {
  return ToUTF8(s) + std::string(s.size() < width ? width - s.size() : 0, ' ');
}

void ShowTables() {
  using namespace Zyn_zynbase;
  std::printf("\nMonth names by language:\n");
  for (int lang = lgEnglish; lang <= lgSpanish; ++lang) {
    std::printf("  %-10s", ToUTF8(LanguageID[lgEnglish][lang].str()).c_str());
    for (const auto& month : MonthShort[lang]) std::printf(" %s", Padded(month.str(), 4).c_str());
    std::printf("\n");
  }
  std::printf("\nCSV delimiters: ");
  for (char16_t c : u";,:\tx") {
    if (c == 0) break;
    std::printf("%s ",
                ToUTF8(std::u16string(1, c) == u"\t" ? u"TAB" : std::u16string(1, c)).c_str());
    std::printf("-> %d  ", ResolveCSVDelimiter(c));
  }
  std::printf("\n\nConstants: uc_e = %.17g, uc_MaxDouble = %.17g, ln(1000!) = %.15g\n",
              Zyn_univconst::uc_e, Zyn_univconst::uc_MaxDouble,
              Zyn_univconst::uc_LnFactorial[1000]);
}

}  // namespace

int main() {
  Initialize();
  ShowUnitOrder();
  ShowTables();
  Finalize();
  return 0;
}
