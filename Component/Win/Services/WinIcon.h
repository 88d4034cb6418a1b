// Icons: one object for the same picture at 16, 32, 48 and 128 pixels. Each size is loaded when it is first
// asked for, and shared with all clones. Everything here belongs to the main thread.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>
#include <string>

#include "Component/Portable/Contract/MorvaneGlueIcon.h"
#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Interface/MorvaneIcon.h"

namespace NSMorvane {

// What an icon and its clones share: the sizes loaded so far, which end with it, and one source at the most.
struct TIconData : CNotCopied {
  ~TIconData();
  void DebugValidate() const;

  HICON fIcon16 = nullptr;
  HICON fIcon32 = nullptr;
  HICON fIcon48 = nullptr;
  HICON fIcon128 = nullptr;
  std::uint32_t fBuiltinIcon = 0;
  std::string fResourceKey;
  std::string fURL;
};

class CIconImpl final : public CIconGlue {
 public:
  explicit CIconImpl(const boost::shared_ptr<TIconData>& data);
  ~CIconImpl() override;

  // The icon's own, at 16, 32, 48 or 128 pixels. A size that does not exist gives the next smaller one.
  // Throws std::exception for any other size, and if there is no picture at all.
  HICON GetIconHandle(std::uint32_t size) const;

 protected:
  bool CIconGlue_CheckInvariant() const override { return fData != nullptr; }
  bool CIconGlue_AreEqual(const CIconGlue& other) const override;
  std::unique_ptr<IIcon> CIconGlue_Clone() const override;

 private:
  boost::shared_ptr<TIconData> fData;
};

std::unique_ptr<IIcon> MakeBuiltInIcon(TBuiltinIcon icon);
// `key` is the decimal number of an icon in the resources of the program.
std::unique_ptr<IIcon> MakeResourceIcon(const std::string& key);
std::unique_ptr<IIcon> MakeIconForURL(const std::string& url);
// Takes the handles over; null ones are sizes that do not exist. If it throws they stay the caller's.
std::unique_ptr<IIcon> MakeIconFromHandles(HICON icon16, HICON icon32, HICON icon48, HICON icon128);

// --- Pixel sheets

// A sheet holds all four sizes at fixed places: rows of RGBA, 4 bytes a pixel, from the top.
enum : std::int32_t { kSheetWidth = 181, kSheetHeight = 130 };

std::unique_ptr<IIcon> MakePixmapIcon(const void* sheet);

// The icon in one rectangle of a sheet. Without alpha icons, which systems older than Windows XP lack, a
// pixel is opaque or it is not; the width has to be even then, or std::logic_error is thrown.
HICON MakeIconFromSheet(const std::uint8_t* sheet, const TRect& rect, bool hasAlphaIcons);

}  // namespace NSMorvane
