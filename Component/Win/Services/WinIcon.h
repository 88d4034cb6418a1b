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

// Shared by an icon and its clones: the handles loaded so far, which it owns, and one source at most.
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

  // The handle at 16, 32, 48 or 128 pixels, which the icon owns. A size that does not exist gives the next
  // smaller one. Throws std::exception for any other size, and if there is no picture at all.
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
// Takes ownership of the handles; null stands for a size that does not exist. If it throws, the handles stay
// the caller's. Throws std::invalid_argument for a handle that is no icon.
std::unique_ptr<IIcon> MakeIconFromHandles(HICON icon16, HICON icon32, HICON icon48, HICON icon128);

// --- Pixel sheets

// A sheet holds all four sizes at fixed places: rows of RGBA, 4 bytes a pixel, from the top.
enum : std::int32_t { kSheetWidth = 181, kSheetHeight = 130 };

std::unique_ptr<IIcon> MakePixmapIcon(const void* sheet);

// The icon in one rectangle of a sheet. Systems older than Windows XP have no alpha icons. A pixel is either
// opaque or transparent then, and std::logic_error is thrown if the width is odd.
HICON MakeIconFromSheet(const std::uint8_t* sheet, const TRect& rect, bool hasAlphaIcons);

}  // namespace NSMorvane
