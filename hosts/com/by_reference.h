// One argument of a late-bound call, in the type that the member takes.
#pragma once

#include "system/automation/ole.h"
#include "system/automation/variant.h"

namespace vok::windows {

/// Holds a converted copy of the caller's argument, and writes it back.
class ByReference {
 public:
  /// `type` is VT_VARIANT for a parameter of any type. Fails as `VariantChangeType` does, and for a
  /// reference to a variable that could not take what the member may hand back.
  HRESULT Read(VARIANTARG& argument, VARTYPE type, LCID locale);

  VARIANT& value() { return *value_.Get(); }

  /// Gives the caller what the member changed; nothing for an argument passed by value. Fails as
  /// `VariantChangeType` does when the caller's variable cannot hold it.
  HRESULT WriteBack(LCID locale);

 private:
  bool IsChanged() const;

  VARIANTARG* argument_ = nullptr;
  VARTYPE type_ = VT_EMPTY;
  Variant value_;
  Variant before_;
};

}  // namespace vok::windows
