#include "Component/Win/Services/WinRegistry.h"

#include <exception>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

namespace {

void LeaveOpen(HKEY) {}

void CloseKey(HKEY key) {
  const LSTATUS res = RegCloseKey(key);
  MORVANE_ASSERT(ERROR_SUCCESS==res);
}

// Another process may have changed the value since its type and size were asked for.
void ReadValue(HKEY key, const TString& name, DWORD wantedType, void* buffer, DWORD size) {
  DWORD type = 0;
  if (RegQueryValueExW(key, WinText(name), nullptr, &type, static_cast<BYTE*>(buffer), &size) !=
      ERROR_SUCCESS) {
    MORVANE_UNREACHED();
    MORVANE_THROW(std::exception());
  }
  if (type != wantedType) MORVANE_CHECK(kBadFormatError);
}

}  // namespace

CRegKey::CRegKey(HKEY rootKey) : fKey(rootKey, LeaveOpen) {}

CRegKey::CRegKey(const CRegKey& parent, const TString& subKeyName, bool writable) {
  const REGSAM access = writable ? KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY : KEY_READ;
  HKEY key = nullptr;
  if (RegCreateKeyExW(parent.fKey.get(), WinText(subKeyName), 0, nullptr, REG_OPTION_NON_VOLATILE, access,
                      nullptr, &key, nullptr) != ERROR_SUCCESS)
    MORVANE_THROW(std::exception());
  fKey.reset(key, CloseKey);
}

bool CRegKey::HasSubKey(const TString& name) const {
  HKEY key = nullptr;
  if (RegOpenKeyExW(fKey.get(), WinText(name), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  CloseKey(key);
  return true;
}

bool CRegKey::HasValue(const TString& name) const {
  return RegQueryValueExW(fKey.get(), WinText(name), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

void CRegKey::GetValueTypeAndSize(const TString& name, DWORD& outType, DWORD& outSize) const {
  if (RegQueryValueExW(fKey.get(), WinText(name), nullptr, &outType, nullptr, &outSize) == ERROR_SUCCESS)
    return;
  const long error = static_cast<long>(GetLastError());
  DebugPrint("GetValueTypeAndSize: " + std::to_string(error) + " " +
             NSTextPackage::StringToUTF8(name, false));
  MORVANE_UNREACHED();
  MORVANE_THROW(std::exception());
}

// --- Values

TString CRegKey::GetString(const TString& name) const {
  if (!HasValue(name)) return TString();
  DWORD type = 0;
  DWORD size = 0;
  GetValueTypeAndSize(name, type, size);
  if (type != REG_SZ) MORVANE_CHECK(kBadFormatError);
  if (size == 0) return TString();
  // The stored value may lack its terminator, or end in the middle of a unit.
  std::vector<TChar> buffer(size / sizeof(TChar) + 2);
  ReadValue(fKey.get(), name, REG_SZ, buffer.data(), size);
  return TString(buffer.data(), NSTextPackage::CountChars(buffer.data(), size / sizeof(TChar)));
}

std::uint32_t CRegKey::GetNumber(const TString& name) const {
  if (!HasValue(name)) return 0;
  DWORD type = 0;
  DWORD size = 0;
  GetValueTypeAndSize(name, type, size);
  if (type != REG_DWORD) MORVANE_CHECK(kBadFormatError);
  if (size == 0) return 0;
  DWORD value = 0;
  if (size != sizeof(value)) {
    MORVANE_UNREACHED();
    MORVANE_THROW(std::exception());
  }
  ReadValue(fKey.get(), name, REG_DWORD, &value, size);
  return value;
}

void CRegKey::SetString(const TString& name, const TString& text) {
  const std::size_t size = (text.size() + 1) * sizeof(TChar);
  if (RegSetValueExW(fKey.get(), WinText(name), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                     static_cast<DWORD>(size)) != ERROR_SUCCESS)
    MORVANE_THROW(std::exception());
}

void CRegKey::SetNumber(const TString& name, std::uint32_t value) {
  const DWORD number = value;
  if (RegSetValueExW(fKey.get(), WinText(name), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                     sizeof(number)) != ERROR_SUCCESS)
    MORVANE_THROW(std::exception());
}

// --- Paths

CRegKey OpenKeyPath(const TRegPath& names, bool writable) {
  CRegKey key(HKEY_CURRENT_USER);
  for (const TString& name : names) key = CRegKey(key, name, writable);
  return key;
}

bool KeyPathExists(const TRegPath& names) {
  CRegKey key(HKEY_CURRENT_USER);
  for (const TString& name : names) {
    if (!key.HasSubKey(name)) return false;
    key = CRegKey(key, name, false);
  }
  return true;
}

TRegPath GetPreferencesPath(const TStartupStrings& strings) {
  return {u"Software", strings.fCompanyName, strings.fProductName, u"Preferences"};
}

}  // namespace NSMorvane
