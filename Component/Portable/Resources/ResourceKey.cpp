#include "Component/Portable/Resources/ResourceKey.h"

#include <stdexcept>

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

namespace {

constexpr std::size_t kTypeLength = 4;

}  // namespace

TResourceKey ParseResourceKey(const std::string& key) {
  if (key.find('/') != kTypeLength) MORVANE_THROW(std::invalid_argument(""));
  const std::string type = key.substr(0, kTypeLength);
  MORVANE_ASSERT(type.length()==4);
  std::int32_t number = 0;
  if (!NSTextPackage::ReadDecimal(NSTextPackage::ASCIIToString(key.substr(kTypeLength + 1), 0), number))
    MORVANE_THROW(std::invalid_argument(""));
  return TResourceKey{type, number};
}

std::uint16_t PredefinedResourceType(const NSTextPackage::TString& type) {
  static const struct {
    const TChar* name;
    std::uint16_t number;
  } kTypes[] =
      {
          {u"ACCL", 9},  {u"ANIC", 21}, {u"ANII", 22}, {u"BITM", 2},  {u"CURS", 1},
          {u"DLOG", 17},  // the include resources of dialogs, and not the dialogs
          {u"FONT", 8},  {u"FNTD", 7},  {u"GCUR", 12}, {u"GICN", 14}, {u"HTML", 23},
          {u"ICON", 3},  {u"MNFS", 24}, {u"MENU", 4},  {u"MSGT", 11}, {u"PLGP", 19},
          {u"RCDA", 10}, {u"STRT", 6},  {u"VERS", 16}, {u"VXD ", 20},
      };
  for (const auto& entry : kTypes) {
    if (type == entry.name) return entry.number;
  }
  return 0;
}

}  // namespace NSMorvane
