// The contract members of an icon.
#include "Component/Portable/Contract/MorvaneGlueIcon.h"
#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Contract/MorvaneGlueContract.h"

namespace NSMorvane {

namespace {

constexpr TFlag kPoisonedFlag = 666;

}  // namespace

CIconGlue::~CIconGlue() { MORVANE_ASSERT(IIcon_CheckInvariant()); }

std::uint32_t CIconGlue::IIcon_CheckInvariant() const { return CIconGlue_CheckInvariant() ? 1 : 0; }

bool CIconGlue::CIconGlue_CheckInvariant() const { return true; }

IIcon* CIconGlue::IIcon_Clone(TError& outError) const {
  MORVANE_REQUIRE_OUT("IIcon_Clone()", IIcon_CheckInvariant());
  IIcon* out = NULL;
  CallHook(outError, [&] { out = CIconGlue_Clone().release(); });
  MORVANE_AFTER(IIcon_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(out != NULL);
  if (outError != kOK) MORVANE_ASSERT(out == NULL);
  return out;
}

TError CIconGlue::IIcon_AreEqual(const IIcon& other, TFlag& outEqualFlag) const {
  MORVANE_REQUIRE("IIcon_AreEqual()", IIcon_CheckInvariant());
  MORVANE_REQUIRE("IIcon_AreEqual()", other.IIcon_CheckInvariant());
  outEqualFlag = kPoisonedFlag;
  TError outError;
  CallHook(outError, [&] {
    const CIconGlue* const otherGlue = dynamic_cast<const CIconGlue*>(&other);
    MORVANE_ASSERT(otherGlue != NULL);
    if (!otherGlue) MORVANE_THROW(std::invalid_argument(""));
    outEqualFlag = CIconGlue_AreEqual(*otherGlue) ? 1 : 0;
  });
  MORVANE_AFTER(IIcon_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateFlag(outEqualFlag));
  if (outError != kOK) MORVANE_ASSERT(outEqualFlag == 666);
  return outError;
}

}  // namespace NSMorvane
