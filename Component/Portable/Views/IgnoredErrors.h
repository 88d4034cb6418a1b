// Codes of behaviours that go no further, since the mouse must get to the other views.
#pragma once

#include <cstdint>
#include <string>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Interface/MorvaneView.h"

namespace NSMorvane {

inline void PrintIgnoredMouseError(const IViewBehavior* behavior, TError error, const char* operation) {
  DebugPrint("The view behavior " + std::to_string(reinterpret_cast<std::uintptr_t>(behavior)) +
             "returned the error " +  // sic, no blank
             std::to_string(static_cast<std::int32_t>(error)) + " when " + operation +
             " was called. The error will be ignored in order to not disrupt the mouse tracking.");
}

}  // namespace NSMorvane
