// Alert boxes, the save-changes dialog, and the file dialogs. The file dialogs are not built yet: their
// operations give kUnsupported.
#pragma once

#include "MorvaneTypes.h"
#include "MorvaneWindow.h"

namespace NSMorvane {

// --- Alert boxes

enum TAlertKind : std::uint32_t { kAlertPlain = 23, kAlertStop = 24, kAlertNote = 25, kAlertCaution = 26 };

enum TAlertButtonLayout : std::uint32_t {
  kAlertOneButton = 14000,
  kAlertTwoButtonsFirstDefault = 14001,
  kAlertTwoButtonsSecondDefault = 14002,
  kAlertThreeButtonsFirstDefault = 14003,
  kAlertThreeButtonsThirdDefault = 14004
};

enum : std::size_t { kAlertTextChars = 1023 };

// Labels of buttons may contain a mnemonic, marked with `_`. fButton1 must not be empty. fButton2 may be
// empty only if fButton3 is empty too.
struct TAlertSpec {
  TAlertButtonLayout fButtonLayout;
  TAlertKind fKind;
  TChar fMessage[kAlertTextChars + 1];
  TChar fDetails[kAlertTextChars + 1];
  TChar fButton1[kAlertTextChars + 1];
  TChar fButton2[kAlertTextChars + 1];
  TChar fButton3[kAlertTextChars + 1];
};

// Which button was pressed.
enum TAlertResponse : std::uint32_t {
  kAlertResponseFirst = 564,
  kAlertResponseSecond = 565,
  kAlertResponseThird = 566
};

// Implemented by the client, which keeps it alive until the alert has been answered.
class IAlertBoxListener {
 public:
  // The alert closes when this returns kOK. With any other code it stays open, and the code is delivered as
  // an unhandled error.
  virtual TError IAlertBoxListener_OnResponse(TAlertResponse response) = 0;

  virtual ~IAlertBoxListener() = default;
};

// Implemented by the client, which keeps it alive until the question has been answered. There is one
// operation for each answer. As with alerts, the question stays open if the code is not kOK.
class ISaveChangesBehavior {
 public:
  virtual TError ISaveChangesBehavior_OnSave() = 0;
  virtual TError ISaveChangesBehavior_OnDiscard() = 0;
  virtual TError ISaveChangesBehavior_OnCancel() = 0;

  virtual ~ISaveChangesBehavior() = default;
};

// --- File dialogs
//
// Files are passed as "file://" URLs: these seven characters and the path in UTF-8, not escaped.

struct TFileType {
  TChar fName[256];         // what the user reads
  TChar fExtensions[1028];  // with their dots, separated by semicolons: ".aiff;.aif;.aifc"
};

// Implemented by the client: gets the result of an open dialog, on the main thread.
class IOpenDialogBehavior {
 public:
  virtual TError IOpenDialogBehavior_OnPerform(const char* const* urls, std::uint32_t count) = 0;
  virtual TError IOpenDialogBehavior_OnCancel() = 0;

  virtual ~IOpenDialogBehavior() = default;
};

// Implemented by the client: gets the result of a save dialog, on the main thread.
class ISaveAsDialogBehavior {
 public:
  virtual TError ISaveAsDialogBehavior_OnPerform(const char* url, const TFileType& fileType) = 0;
  virtual TError ISaveAsDialogBehavior_OnCancel() = 0;

  virtual ~ISaveAsDialogBehavior() = default;
};

// Implemented by the client: gets the result of a folder chooser, on the main thread.
class IDirectoryChooserBehavior {
 public:
  virtual TError IDirectoryChooserBehavior_OnPerform(const char* url) = 0;
  virtual TError IDirectoryChooserBehavior_OnCancel() = 0;

  virtual ~IDirectoryChooserBehavior() = default;
};

// An open dialog that is running, passed to its customise behaviour.
class IOpenDialogInstance {
 public:
  virtual TError IOpenDialogInstance_GetControlHandle(std::int32_t controlID, TNativeWindow& outHandle) = 0;
  virtual TError IOpenDialogInstance_GetModalOwner(IModalOwner*& outOwner) = 0;

 protected:
  virtual ~IOpenDialogInstance() = default;
};

// Implemented by the client: puts controls of its own into an open dialog. It is called on the dialog's
// thread. The library deletes it.
class IOpenDialogCustomizeBehavior {
 public:
  virtual ~IOpenDialogCustomizeBehavior() = default;

  // The number of the dialog template in the executable's resources.
  virtual TError IOpenDialogCustomizeBehavior_GetTemplateID(std::uint32_t& outID) = 0;
  virtual TError IOpenDialogCustomizeBehavior_OnFolderChanged(IOpenDialogInstance& instance,
                                                              const char* folderURL) = 0;
  virtual TError IOpenDialogCustomizeBehavior_OnSelectionChanged(IOpenDialogInstance& instance,
                                                                 const char* fileURL) = 0;
  virtual TError IOpenDialogCustomizeBehavior_OnInitDone(IOpenDialogInstance& instance) = 0;
  virtual TError IOpenDialogCustomizeBehavior_OnCommand(IOpenDialogInstance& instance, std::int32_t controlID,
                                                        TFlag& outHandled) = 0;
  virtual TError IOpenDialogCustomizeBehavior_OnHelp(IOpenDialogInstance& instance, TFlag& outHandled) = 0;
  virtual TError IOpenDialogCustomizeBehavior_OnPaint(IOpenDialogInstance& instance,
                                                      TNativeWindow window) = 0;
  virtual TError IOpenDialogCustomizeBehavior_OnSize(IOpenDialogInstance& instance, TNativeWindow window,
                                                     std::int32_t width, std::int32_t height) = 0;
};

}  // namespace NSMorvane
