// Listeners of the client that hear of modifier keys.
#pragma once

#include <list>

#include "Interface/MorvaneKeyboard.h"

namespace NSMorvane {

class CModifierKeyListeners {
 public:
  CModifierKeyListeners() = default;
  CModifierKeyListeners(const CModifierKeyListeners&) = delete;
  CModifierKeyListeners& operator=(const CModifierKeyListeners&) = delete;

  // Listeners stay the client's.
  void Attach(IModifierKeyListener* listener);
  // std::invalid_argument, and a report, for one that is not attached.
  void Detach(IModifierKeyListener* listener);
  // A listener may detach itself and others, who are then not called any more.
  void Notify(const TModifierKeysEvent& previous, const TModifierKeysEvent& now) const;

 private:
  std::list<IModifierKeyListener*> fModifierKeyListeners;  // sic: an assertion shows the name
};

}  // namespace NSMorvane
