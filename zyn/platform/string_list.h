// zyn/platform/string_list.h
//
// TStringList: an ordered list of strings that its creator owns. Indices run
// from 0 to Count() - 1; an index outside that range raises EStringListError.

#ifndef ZYN_PLATFORM_STRING_LIST_H_
#define ZYN_PLATFORM_STRING_LIST_H_

#include <string>
#include <string_view>
#include <vector>

#include "zyn/platform/object.h"

namespace zyn::platform {

// A bad index: "List index out of bounds (<index>)".
class EStringListError : public Exception {
 public:
  using Exception::Exception;
};

class TStringList : public TPersistent {
 public:
  TStringList() = default;

  // Copies the strings of another TStringList; other classes as TPersistent.
  void Assign(const TPersistent& Source) override;

  void Clear() { strings_.clear(); }
  // Appends `S` and gives its index.
  int Add(std::u16string_view S);
  // Puts `S` in front of `Index`; `Index` may be Count() to append.
  void Insert(int Index, std::u16string_view S);
  void Delete(int Index);

  int Count() const { return static_cast<int>(strings_.size()); }
  const std::u16string& Strings(int Index) const;
  const std::u16string& operator[](int Index) const { return Strings(Index); }
  void Put(int Index, std::u16string_view S);
  // The index of the first string equal to `S` (case-sensitive), -1 if none.
  int IndexOf(std::u16string_view S) const;

  // All strings, each followed by CR LF.
  std::u16string Text() const;
  // Replaces the list by the lines of `Value`; CR LF, LF and CR each end a
  // line, and a last line without a line end counts too.
  void SetText(std::u16string_view Value);

  auto begin() const { return strings_.begin(); }
  auto end() const { return strings_.end(); }

 private:
  void CheckIndex(int Index, int Limit) const;

  std::vector<std::u16string> strings_;
};

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_STRING_LIST_H_
