#include "zyn/base/zynbase.h"

namespace Zyn_zynbase {

void* ProcStat = nullptr;
void* LastProcStat = nullptr;
void* AbortMathProc = nullptr;
void* MathFeedBackProc = nullptr;

TCSVDelimiters ResolveCSVDelimiter(char16_t c) {
  for (int d = csvSemicolon; d <= csvTab; ++d) {
    if (CSVDelimiters[d] == c) return static_cast<TCSVDelimiters>(d);
  }
  return csvUnknown;
}

std::u16string ComponentMessage(const zyn::platform::TComponent& Component,
                                std::u16string_view Text) {
  std::u16string message = u"Component \"";
  message += Component.Name();
  message += u"\": ";
  message += Text;
  return message;
}

std::u16string ClassMessage(std::u16string_view ClassName, std::u16string_view Text) {
  std::u16string message = u"Class ";
  message += ClassName;
  message += u": ";
  message += Text;
  return message;
}

void initialization() { ProcStat = nullptr; }

// The tables are constant data; there is nothing to release.
void Finalization() {}

}  // namespace Zyn_zynbase
