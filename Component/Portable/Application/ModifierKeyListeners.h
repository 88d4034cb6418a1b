// The client's listeners for modifier keys.
#pragma once

#include <list>

#include "Interface/MorvaneKeyboard.h"

#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

class CModifierKeyListeners : CNotCopied {
 public:
  CModifierKeyListeners() = default;

  // The client keeps the ownership of listeners.
  void Attach(IModifierKeyListener* listener);
  // Throws std::invalid_argument, after a report, for a listener that is not attached.
  void Detach(IModifierKeyListener* listener);
  // A listener may detach itself and others, which are then not called any more.
  void Notify(const TModifierKeysEvent& previous, const TModifierKeysEvent& now) const;

 private:
  std::list<IModifierKeyListener*> fModifierKeyListeners;  // sic: an assertion shows the name
};

}  // namespace NSMorvane
