// What the open and the save dialog have in common: the record that the system's dialog is started with, the
// file types, and the file that comes back.
#pragma once

#include <windows.h>

#include <commdlg.h>

#include <cstdint>
#include <string>
#include <vector>

#include "Component/Win/Dialogs/FileNames.h"
#include "Component/Win/Dialogs/WinFileDialog.h"

namespace NSMorvane {

// The control for the name: a dialog has the one or the other, by its style and the version of the system.
enum : int { kNameComboBox = 1148, kNameEdit = 1152 };

class CFileNameDialogInfo : public CFileDialogInfo {
 public:
  // Throws std::bad_alloc if the types do not fit into a filter.
  CFileNameDialogInfo(IWindowHost& host, const TFileDialogRequest& request, const TDialogMemoryPlace& place,
                      std::vector<CFileType> fileTypes, const TString& prompt);

  // The record's, inside the hook of a dialog. Null if the record is none of ours.
  static CFileNameDialogInfo* FromRecord(const OPENFILENAMEW* openFileName);

  // --- What the hook sees

  // The hook window has just been made in a frame.
  virtual void OnInitDialog(HWND hookWindow, HWND frame) = 0;
  // A notification of the dialog's; true if the answer is 1.
  virtual bool OnNotify(HWND hookWindow, HWND frame, const NMHDR& notification) = 0;

  OPENFILENAMEW& GetRecord() { return fOpenFileName; }

 protected:
  // Completes the record: `index` of the type that is chosen at first, counted from 1, or 0.
  void Prepare(DWORD flags, DWORD filterIndex, const TString& defaultExtension, const TString& name);
  void SetDefaultExtension(const TString& extension);

  const std::vector<CFileType>& GetFileTypes() const { return fFileTypes; }
  // What stands in the record: the name to begin with, and later what the system has made of the typed one.
  TString GetPath() const { return NSTextPackage::ArrayToString(fFileBuffer); }
  // The chosen type; null if there is none.
  const CFileType* GetFileTypeAt(DWORD filterIndex) const;
  // Counted from 1, or 0; after a run that has ended with a file.
  std::uint32_t GetChosenType() const { return fChosenType; }

  std::string ShowDialog() override;
  virtual BOOL ShowSystemDialog(OPENFILENAMEW& record) = 0;
  // The file that a chosen path stands for; empty if the user has to be asked once more, about `ioPath`.
  virtual TString FileForPath(TString& ioPath, const CFileType& fileType) = 0;

  enum : std::size_t { kFilterBufferSize = 2602 / sizeof(TChar), kMaxPromptLength = 260 };

 private:
  static UINT_PTR CALLBACK HookProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

  const std::vector<CFileType> fFileTypes;
  OPENFILENAMEW fOpenFileName = {};
  TChar fFileBuffer[kMaxFileNameLength + 1] = {};
  TString fInitialFolder;
  TChar fDefaultExtension[kMaxDefaultExtensionLength + 1] = {};
  TChar fFilterBuffer[kFilterBufferSize + 1] = {};  // a zero behind the last text ends the list
  TString fPrompt;
  std::uint32_t fChosenType = 0;
};

// Whether a notification is one of the dialog's own, so that it carries the record.
bool IsFromDialog(const NMHDR& notification, HWND frame);

// The text of a dialog that a CDM message asks for; false for one that fits into no buffer of the library.
bool GetDialogText(HWND frame, UINT message, std::size_t bufferSize, TString& outText);

}  // namespace NSMorvane
