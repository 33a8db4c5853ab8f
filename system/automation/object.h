// Late-bound calls of other programs' automation objects.
//
// Failures are the object's own: its number (the low word of the platform's "control" errors, else
// the result code), description and source. 429: the class is not registered or cannot be made;
// 438: the object has no such member; 424: it answered with no object. A program that is busy is
// asked again for 30 seconds.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>

#include "system/automation/com_ptr.h"
#include "system/automation/ole.h"
#include "system/automation/variant.h"

namespace vok::windows {

/// A member's name. It keeps the number that the first object gave for it: one `Member` serves
/// objects of one class.
class Member {
 public:
  Member(const wchar_t* name) : name_(name) {}  // NOLINT: a name is a member
  const std::wstring& name() const { return name_; }
  DISPID IdFor(IDispatch& object) const;

 private:
  std::wstring name_;
  mutable std::optional<DISPID> id_;
};

/// An argument that the caller leaves out.
struct LeftOut {};

/// A reference to an object, or to none.
class Object {
 public:
  Object() = default;
  explicit Object(ComPtr<IDispatch> object) : object_(std::move(object)) {}
  /// A new object of the class.
  static Object Create(const std::string& prog_id);

  explicit operator bool() const { return static_cast<bool>(object_); }
  IDispatch* Get() const { return object_.Get(); }
  void Reset() { object_ = {}; }

  /// Reads a property or calls a method.
  template <typename... Arguments>
  Variant Call(const Member& member, const Arguments&... arguments) const {
    std::array<Variant, sizeof...(arguments)> list{Argument(arguments)...};
    return Invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, list);
  }
  /// The same, for a value.
  template <typename... Arguments>
  Value Read(const Member& member, const Arguments&... arguments) const {
    return FromVariant(*Call(member, arguments...).Get());
  }
  /// The same, for an object.
  template <typename... Arguments>
  Object Child(const Member& member, const Arguments&... arguments) const {
    return ObjectIn(Call(member, arguments...), member);
  }
  void Put(const Member& member, const Value& value) const;
  void Put(const Member& member, Variant value) const;
  void PutObject(const Member& member, const Object& object) const;

 private:
  static Variant Argument(const Value& value) { return Variant(value); }
  static Variant Argument(const Object& object) { return Variant(object.Get()); }
  static Variant Argument(LeftOut);
  static Object ObjectIn(const Variant& variant, const Member& member);
  Variant Invoke(const Member& member, WORD flags, std::span<Variant> arguments) const;

  ComPtr<IDispatch> object_;
};

/// Whether objects of the class can be made here, as the registry says.
bool IsRegistered(const std::string& prog_id);
/// The same for classes that are loaded into this process: such a class has the process's width.
bool HasInProcessServer(const std::string& prog_id);

}  // namespace vok::windows
