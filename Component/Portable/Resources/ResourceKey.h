// Resource keys as text: "SSTR/1000" is the resource of type "SSTR" and number 1000.
#pragma once

#include <cstdint>
#include <string>

#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

struct TResourceKey {
  std::string type;     // always four characters
  std::int32_t number;  // not checked against the range that resources have
};

// The first "/" must stand at index 4. What follows is read by ReadDecimal, so text after the digits is
// ignored. std::invalid_argument for any other form, XIllegalTextFormat for a character above 127 in the
// number.
TResourceKey ParseResourceKey(const std::string& key);

// The number of the platform's predefined resource type that a four-character name stands for, or 0 if the
// name is a type of its own.
std::uint16_t PredefinedResourceType(const NSTextPackage::TString& type);

}  // namespace NSMorvane
