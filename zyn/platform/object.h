// zyn/platform/object.h
//
// The object model the library's classes stand on: TObject, TPersistent with
// its Assign/AssignTo double dispatch, TComponent with owner and Name, the
// event type TNotifyEvent and the root exception class.
//
// Objects are identities, not values: they can't be copied or moved, and one
// object's contents go to another by Assign. An object lives on the stack, in
// a std::unique_ptr, or on the heap under a TComponent owner that destroys it.

#ifndef ZYN_PLATFORM_OBJECT_H_
#define ZYN_PLATFORM_OBJECT_H_

#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zyn::platform {

class TObject {
 public:
  TObject() = default;
  TObject(const TObject&) = delete;
  TObject& operator=(const TObject&) = delete;
  virtual ~TObject() = default;

  // The unqualified name of the object's dynamic class, e.g. u"TStringArray".
  std::u16string ClassName() const;
};

// True if `obj` is of class T or of a class derived from T.
template <typename T>
bool InheritsFrom(const TObject& obj) {
  return dynamic_cast<const T*>(&obj) != nullptr;
}

// The root of the library's exceptions: a message and nothing else.
class Exception : public std::exception {
 public:
  explicit Exception(std::u16string message);

  const std::u16string& Message() const noexcept { return message_; }
  // The message in UTF-8.
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  std::u16string message_;
  std::string what_;
};

// A failed conversion, among them an Assign between unrelated classes.
class EConvertError : public Exception {
 public:
  using Exception::Exception;
};

// Called with the object whose state changed. Empty means "not assigned".
using TNotifyEvent = std::function<void(TObject* Sender)>;

class TPersistent : public TObject {
 public:
  // Copies `Source` into this object. The base form hands over to
  // Source.AssignTo(*this), which a class overrides to copy into objects it
  // knows; when neither side knows the other it throws EConvertError
  // "Cannot assign a <Source class> to a <this class>" and changes nothing.
  virtual void Assign(const TPersistent& Source);

 protected:
  // Copies this object into `Dest`. The base form throws the EConvertError
  // described at Assign.
  virtual void AssignTo(TPersistent& Dest) const;

  // Throws the EConvertError for a copy from `Source` into this object.
  [[noreturn]] void AssignError(const TPersistent& Source) const;
};

class TComponent : public TPersistent {
 public:
  // With an owner, the component must live on the heap: the owner deletes it
  // when the owner is destroyed. Without one, the caller owns it.
  explicit TComponent(TComponent* AOwner = nullptr);
  ~TComponent() override;

  TComponent* Owner() const noexcept { return FOwner; }

  // The name that failure messages quote; empty by default.
  const std::u16string& Name() const noexcept { return FName; }
  void SetName(std::u16string_view Value) { FName = Value; }

  // The components this one owns, in the order they were given to it.
  int ComponentCount() const noexcept { return static_cast<int>(FComponents.size()); }
  TComponent* Components(int Index) const {
    return FComponents.at(static_cast<std::size_t>(Index));
  }

 private:
  void RemoveComponent(TComponent* Child) noexcept;

  TComponent* FOwner = nullptr;
  std::vector<TComponent*> FComponents;
  std::u16string FName;
};

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_OBJECT_H_
