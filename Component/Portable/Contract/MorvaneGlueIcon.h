// The contract class of an icon.
#pragma once

#include <cstdint>
#include <memory>

#include "Interface/MorvaneIcon.h"

namespace NSMorvane {

class CIconGlue : public IIcon {
 public:
  ~CIconGlue() override;

  IIcon* IIcon_Clone(TError& outError) const override;
  TError IIcon_AreEqual(const IIcon& other, TFlag& outEqualFlag) const override;
  std::uint32_t IIcon_CheckInvariant() const override;

 protected:
  virtual bool CIconGlue_AreEqual(const CIconGlue& other) const = 0;
  // At this level every object is sound.
  virtual bool CIconGlue_CheckInvariant() const;
  virtual std::unique_ptr<IIcon> CIconGlue_Clone() const = 0;
};

}  // namespace NSMorvane
