// Mouse shapes: native cursors, from the system, from the library's own resources or from those of the
// application.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "Interface/MorvaneMouse.h"
#include "Interface/MorvaneRoot.h"

#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

// Allocated on the library's heap, since the client deletes it. The cursor is shared and belongs to the
// system.
class CMouseShapeImpl final : public IMouseShape, CNotCopied {
 public:
  explicit CMouseShapeImpl(HCURSOR cursor) : fCursor(cursor) {}
  ~CMouseShapeImpl() override;

  static void* operator new(std::size_t size) { return Morvane_New(size); }
  static void operator delete(void* block) { Morvane_Delete(block); }

  std::uint32_t IMouseShape_CheckInvariant() const override { return fCursor != nullptr ? 1 : 0; }
  IMouseShape* IMouseShape_Clone(TError& outError) const override;
  HCURSOR GetCursor() const { return fCursor; }

 private:
  HCURSOR fCursor;
};

std::unique_ptr<IMouseShape> MakeBuiltInMouseShape(TBuiltInMouseShape mouseShape);
// `key` is a decimal number.
std::unique_ptr<IMouseShape> LoadMouseShape(const std::string& key);

// The cursor that overrides all others, or null.
extern HCURSOR gOverrideCursor;
// Shows the cursor at once. After null, the usual cursor comes back when the views are next asked for the
// shape.
void SetOverrideCursor(HCURSOR cursor);

// std::invalid_argument for a shape that a client has implemented: it has no cursor.
HCURSOR NativeCursorOf(const IMouseShape& shape);

}  // namespace NSMorvane
