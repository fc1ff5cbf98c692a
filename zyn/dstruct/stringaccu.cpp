#include "zyn/dstruct/stringaccu.h"

#include <algorithm>
#include <limits>

namespace Zyn_dstruct {

TStringAccu::TStringAccu(zyn::platform::TComponent* AOwner) : TComponent(AOwner) {
  Zyn_zynbase::GuardAllocation<EZYNDStructError>(
      [&] { Clear(); }, Zyn_zynbase::ComponentMessage(*this, u"not enough memory on heap"));
}

void TStringAccu::Add(std::u16string_view AString) {
  const auto found = std::find(FStrArray.begin(), FStrArray.end(), AString);
  if (found != FStrArray.end()) {
    int& tally = FCntArray[static_cast<std::size_t>(found - FStrArray.begin())];
    if (tally < std::numeric_limits<int>::max()) ++tally;
    return;
  }
  FStrArray.emplace_back(AString);
  try {
    FCntArray.push_back(1);
  } catch (...) {
    FStrArray.pop_back();  // keep both arrays the same length
    throw;
  }
  ++FSize;
}

void TStringAccu::Clear() noexcept {
  FStrArray.clear();
  FCntArray.clear();
  FSize = 0;
}

std::u16string TStringAccu::GetString(int ix) const {
  return ValidIndex(ix) ? FStrArray[static_cast<std::size_t>(ix - 1)] : std::u16string();
}

int TStringAccu::GetCount(int ix) const noexcept {
  return ValidIndex(ix) ? FCntArray[static_cast<std::size_t>(ix - 1)] : 0;
}

}  // namespace Zyn_dstruct
