#include "Component/Win/Services/WinRegistry.h"

#include <exception>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

namespace {

constexpr DWORD kUsualTextSize = 256;  // in bytes

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

std::optional<CRegKey> CRegKey::FindSubKey(const TString& name) const {
  CRegKey result(nullptr);
  HKEY key = nullptr;
  if (RegOpenKeyExW(fKey.get(), WinText(name), 0, KEY_READ, &key) != ERROR_SUCCESS) return std::nullopt;
  result.fKey.reset(key, CloseKey);
  return result;
}

bool CRegKey::HasValue(const TString& name) const {
  return RegQueryValueExW(fKey.get(), WinText(name), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

void CRegKey::GetValueTypeAndSize(const TString& name, DWORD& outType, DWORD& outSize) const {
  // The registry returns its codes, and leaves the last error as it was.
  const LSTATUS error = RegQueryValueExW(fKey.get(), WinText(name), nullptr, &outType, nullptr, &outSize);
  if (error == ERROR_SUCCESS) return;
  DebugPrint("GetValueTypeAndSize: " + std::to_string(error) + " " +
             NSTextPackage::StringToUTF8(name, false));
  MORVANE_UNREACHED();
  MORVANE_THROW(std::exception());
}

// --- Values. One question is enough for most of them; each costs a call of the system

TString CRegKey::GetString(const TString& name) const {
  // The stored value may lack its terminator, or end in the middle of a unit.
  std::vector<TChar> buffer(kUsualTextSize / sizeof(TChar) + 2);
  DWORD type = 0;
  DWORD size = kUsualTextSize;
  const LSTATUS res = RegQueryValueExW(fKey.get(), WinText(name), nullptr, &type,
                                       reinterpret_cast<BYTE*>(buffer.data()), &size);
  if (res == ERROR_MORE_DATA) {
    GetValueTypeAndSize(name, type, size);
    buffer.assign(size / sizeof(TChar) + 2, TChar{});
  } else if (res != ERROR_SUCCESS) {
    return TString();
  }
  if (type != REG_SZ) MORVANE_CHECK(kBadFormatError);
  if (res == ERROR_MORE_DATA) ReadValue(fKey.get(), name, REG_SZ, buffer.data(), size);
  return TString(buffer.data(), NSTextPackage::CountChars(buffer.data(), size / sizeof(TChar)));
}

std::uint32_t CRegKey::GetNumber(const TString& name) const {
  DWORD value = 0;
  DWORD type = 0;
  DWORD size = sizeof(value);
  const LSTATUS res =
      RegQueryValueExW(fKey.get(), WinText(name), nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
  if (res != ERROR_SUCCESS && res != ERROR_MORE_DATA) return 0;
  if (type != REG_DWORD) MORVANE_CHECK(kBadFormatError);
  if (size == 0) return 0;
  if (size != sizeof(value)) {
    MORVANE_UNREACHED();
    MORVANE_THROW(std::exception());
  }
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
  std::optional<CRegKey> key(HKEY_CURRENT_USER);
  for (const TString& name : names) {
    key = key->FindSubKey(name);
    if (!key) return false;
  }
  return true;
}

TRegPath GetPreferencesPath(const TStartupStrings& strings) {
  return {u"Software", strings.fCompanyName, strings.fProductName, u"Preferences"};
}

}  // namespace NSMorvane
