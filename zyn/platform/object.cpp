#include "zyn/platform/object.h"

#include <algorithm>
#include <typeinfo>

#if defined(__GNUG__)
#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#endif

#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

std::string Demangle(const char* name) {
#if defined(__GNUG__)
  int status = 0;
  std::unique_ptr<char, void (*)(void*)> plain(abi::__cxa_demangle(name, nullptr, nullptr, &status),
                                               std::free);
  if (status == 0 && plain) return plain.get();
#endif
  return name;
}

// "Zyn_dstruct::TStringArray" -> "TStringArray"; MSVC's "class " prefix too.
std::string_view Unqualified(std::string_view name) {
  if (const auto colon = name.rfind("::"); colon != std::string_view::npos) {
    name.remove_prefix(colon + 2);
  }
  if (const auto space = name.rfind(' '); space != std::string_view::npos) {
    name.remove_prefix(space + 1);
  }
  return name;
}

}  // namespace

std::u16string TObject::ClassName() const {
  const std::string full = Demangle(typeid(*this).name());
  return FromUTF8(Unqualified(full));
}

Exception::Exception(std::u16string message)
    : message_(std::move(message)), what_(ToUTF8(message_)) {}

void TPersistent::Assign(const TPersistent& Source) { Source.AssignTo(*this); }

void TPersistent::AssignTo(TPersistent& Dest) const { Dest.AssignError(*this); }

void TPersistent::AssignError(const TPersistent& Source) const {
  throw EConvertError(u"Cannot assign a " + Source.ClassName() + u" to a " + ClassName());
}

TComponent::TComponent(TComponent* AOwner) : FOwner(AOwner) {
  if (FOwner != nullptr) FOwner->FComponents.push_back(this);
}

TComponent::~TComponent() {
  // Last given, first destroyed. Each child is detached before it goes, so
  // its destructor doesn't reach back into this half-destroyed owner.
  while (!FComponents.empty()) {
    TComponent* child = FComponents.back();
    FComponents.pop_back();
    child->FOwner = nullptr;
    delete child;
  }
  if (FOwner != nullptr) FOwner->RemoveComponent(this);
}

void TComponent::RemoveComponent(TComponent* Child) noexcept {
  const auto it = std::find(FComponents.begin(), FComponents.end(), Child);
  if (it != FComponents.end()) FComponents.erase(it);
}

}  // namespace zyn::platform
