// Keys of the registry: there is what the library remembers of its user from one run to the next, and what
// the system tells of the machine.
//
// The layout of the former, below HKEY_CURRENT_USER: Software \ company \ product \ Preferences \ the name of
// a dialog followed by the client's number. Any thread may use a key, but one thread at a time.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

struct TStartupStrings;

// One key. Copies share it, and the last of them closes it.
class CRegKey {
 public:
  // A predefined key, which is never closed.
  explicit CRegKey(HKEY rootKey);
  // A key below `parent`, which is created if it is missing, even for reading. Throws std::exception on
  // failure.
  CRegKey(const CRegKey& parent, const NSTextPackage::TString& subKeyName, bool writable);

  // A key below this one, for reading; nothing if it cannot be opened. Creates none.
  std::optional<CRegKey> FindSubKey(const NSTextPackage::TString& name) const;
  bool HasSubKey(const NSTextPackage::TString& name) const { return FindSubKey(name).has_value(); }
  bool HasValue(const NSTextPackage::TString& name) const;
  // In bytes. Throws std::exception if there is no such value.
  void GetValueTypeAndSize(const NSTextPackage::TString& name, DWORD& outType, DWORD& outSize) const;

  // Empty, or 0, if there is no such value. A value of another type throws XBadFormat.
  NSTextPackage::TString GetString(const NSTextPackage::TString& name) const;
  std::uint32_t GetNumber(const NSTextPackage::TString& name) const;
  // Throw std::exception on failure.
  void SetString(const NSTextPackage::TString& name, const NSTextPackage::TString& text);
  void SetNumber(const NSTextPackage::TString& name, std::uint32_t value);

 private:
  boost::shared_ptr<HKEY__> fKey;
};

using TRegPath = std::vector<NSTextPackage::TString>;

// The key at a path under HKEY_CURRENT_USER. Missing keys are created.
CRegKey OpenKeyPath(const TRegPath& names, bool writable);
// Creates nothing: a reader that must not leave keys behind asks this first.
bool KeyPathExists(const TRegPath& names);
// The path of the preferences of this application.
TRegPath GetPreferencesPath(const TStartupStrings& strings);

}  // namespace NSMorvane
