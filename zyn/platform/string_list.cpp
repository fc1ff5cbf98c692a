#include "zyn/platform/string_list.h"

namespace zyn::platform {

void TStringList::Assign(const TPersistent& Source) {
  if (const auto* list = dynamic_cast<const TStringList*>(&Source)) {
    if (list != this) strings_ = list->strings_;
    return;
  }
  TPersistent::Assign(Source);
}

void TStringList::CheckIndex(int Index, int Limit) const {
  if (Index < 0 || Index > Limit) {
    const std::string digits = std::to_string(Index);
    throw EStringListError(u"List index out of bounds (" +
                           std::u16string(digits.begin(), digits.end()) + u")");
  }
}

int TStringList::Add(std::u16string_view S) {
  strings_.emplace_back(S);
  return Count() - 1;
}

void TStringList::Insert(int Index, std::u16string_view S) {
  CheckIndex(Index, Count());
  strings_.emplace(strings_.begin() + Index, S);
}

void TStringList::Delete(int Index) {
  CheckIndex(Index, Count() - 1);
  strings_.erase(strings_.begin() + Index);
}

const std::u16string& TStringList::Strings(int Index) const {
  CheckIndex(Index, Count() - 1);
  return strings_[static_cast<std::size_t>(Index)];
}

void TStringList::Put(int Index, std::u16string_view S) {
  CheckIndex(Index, Count() - 1);
  strings_[static_cast<std::size_t>(Index)] = S;
}

int TStringList::IndexOf(std::u16string_view S) const {
  for (std::size_t i = 0; i < strings_.size(); ++i) {
    if (strings_[i] == S) return static_cast<int>(i);
  }
  return -1;
}

std::u16string TStringList::Text() const {
  std::u16string text;
  for (const std::u16string& s : strings_) {
    text += s;
    text += u"\r\n";
  }
  return text;
}

void TStringList::SetText(std::u16string_view Value) {
  strings_.clear();
  std::size_t start = 0;
  while (start < Value.size()) {
    std::size_t end = start;
    while (end < Value.size() && Value[end] != u'\r' && Value[end] != u'\n') ++end;
    strings_.emplace_back(Value.substr(start, end - start));
    if (end < Value.size() && Value[end] == u'\r') {
      ++end;
      if (end < Value.size() && Value[end] == u'\n') ++end;
    } else if (end < Value.size()) {
      ++end;
    }
    start = end;
  }
}

}  // namespace zyn::platform
