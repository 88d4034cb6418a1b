// Alert boxes, the save-changes dialog, and the file dialogs.
#pragma once

#include "MorvaneTypes.h"
#include "MorvaneWindow.h"

namespace NSMorvane {

// --- Alert boxes

// Without an icon, or with the system's icon of an error, of information or of a warning.
enum TAlertKind : std::uint32_t { kAlertPlain = 23, kAlertStop = 24, kAlertNote = 25, kAlertCaution = 26 };

enum TAlertButtonLayout : std::uint32_t {
  kAlertOneButton = 14000,
  kAlertTwoButtonsFirstDefault = 14001,
  kAlertTwoButtonsSecondDefault = 14002,
  kAlertThreeButtonsFirstDefault = 14003,
  kAlertThreeButtonsThirdDefault = 14004
};

enum : std::size_t { kAlertTextChars = 1023 };

// The message and, below an empty line, the details are shown in lines of 600 pixels at most, broken between
// words where possible. U+2029, U+000D and the pair U+000D U+000A end a line. Text that is too high for the
// screen is cut off at its end.
//
// Labels of buttons may contain a mnemonic as texts of menus do: `_` marks it, `__` is an underscore. An
// underscore in the message or the details, and an ampersand anywhere, is shown as it is. fButton1 must not
// be empty. fButton2 may be empty only if fButton3 is empty too. An empty label, and one that the layout has
// no place for, makes no button. The default button should have a label.
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

// Implemented by the client, which keeps it alive until the alert has been answered or its owner has been
// released.
class IAlertBoxListener {
 public:
  // Called once for each answer. The alert closes when this returns kOK. With any other code it stays open,
  // and the code is delivered as an unhandled error. During the call the alert takes no other answer. The
  // call may delete the listener and release the alert's owner.
  virtual TError IAlertBoxListener_OnResponse(TAlertResponse response) = 0;

  virtual ~IAlertBoxListener() = default;
};

// Implemented by the client, which keeps it alive until the question has been answered or its owner has been
// released. There is one operation for each answer; each may release the document's window. As with alerts,
// the question stays open if the code is not kOK.
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

// Implemented by the client: gets the result of an open dialog, on the main thread. One of the two operations
// is called, once. What the behaviours of the file dialogs answer is delivered as an unhandled error if it is
// not kOK.
class IOpenDialogBehavior {
 public:
  // `count` is 1. The texts are valid during the call.
  virtual TError IOpenDialogBehavior_OnPerform(const char* const* urls, std::uint32_t count) = 0;
  virtual TError IOpenDialogBehavior_OnCancel() = 0;

  virtual ~IOpenDialogBehavior() = default;
};

// Implemented by the client: gets the result of a save dialog, on the main thread.
class ISaveAsDialogBehavior {
 public:
  // `fileType` is the first of the types that lists the extension of the file, or else the chosen one.
  virtual TError ISaveAsDialogBehavior_OnPerform(const char* url, const TFileType& fileType) = 0;
  virtual TError ISaveAsDialogBehavior_OnCancel() = 0;

  virtual ~ISaveAsDialogBehavior() = default;
};

// Implemented by the client: gets the result of a blocking folder chooser, on the main thread. One with a
// thread of its own gives none.
class IDirectoryChooserBehavior {
 public:
  virtual TError IDirectoryChooserBehavior_OnPerform(const char* url) = 0;
  virtual TError IDirectoryChooserBehavior_OnCancel() = 0;

  virtual ~IDirectoryChooserBehavior() = default;
};

// An open dialog that is running, passed to its customise behaviour.
class IOpenDialogInstance {
 public:
  // A control of the client's template or, if that has none with this number, of the system's dialog; null if
  // there is none there either. kBadInputProgrammingError if the dialog has gone.
  virtual TError IOpenDialogInstance_GetControlHandle(std::int32_t controlID, TNativeWindow& outHandle) = 0;
  // The dialog as an owner, for its native window. It lives as long as the instance, which is as long as the
  // dialog.
  virtual TError IOpenDialogInstance_GetModalOwner(IModalOwner*& outOwner) = 0;

 protected:
  virtual ~IOpenDialogInstance() = default;
};

// Implemented by the client: puts controls of its own into an open dialog. All but GetTemplateID is called on
// the dialog's thread, which for a dialog that does not block is not the main thread: nothing of the library
// may be called there but IMorvane_PostAppMessage and IMorvane_WakeUpIdle. A code other than kOK is logged,
// and the dialog goes on. The library deletes it, on the main thread, when the dialog has gone.
class IOpenDialogCustomizeBehavior {
 public:
  virtual ~IOpenDialogCustomizeBehavior() = default;

  // The number of the dialog template in the executable's resources, of which the low 16 bits count. Its
  // style has WS_CHILD and WS_CLIPSIBLINGS. A code other than kOK is that of IMorvane_CreateOpenDialog.
  virtual TError IOpenDialogCustomizeBehavior_GetTemplateID(std::uint32_t& outID) = 0;
  // The URL of a folder ends in a backslash. Empty for what is no folder of the file system.
  virtual TError IOpenDialogCustomizeBehavior_OnFolderChanged(IOpenDialogInstance& instance,
                                                              const char* folderURL) = 0;
  // A file or a folder is selected, or a name is typed: its URL, or empty if there is no such file.
  virtual TError IOpenDialogCustomizeBehavior_OnSelectionChanged(IOpenDialogInstance& instance,
                                                                 const char* fileURL) = 0;
  // The controls are there, and the dialog has its place.
  virtual TError IOpenDialogCustomizeBehavior_OnInitDone(IOpenDialogInstance& instance) = 0;
  // A control of the template has sent a command. If `outHandled` is 1, the dialog ignores it.
  virtual TError IOpenDialogCustomizeBehavior_OnCommand(IOpenDialogInstance& instance, std::int32_t controlID,
                                                        TFlag& outHandled) = 0;
  virtual TError IOpenDialogCustomizeBehavior_OnHelp(IOpenDialogInstance& instance, TFlag& outHandled) = 0;
  // `window` is the one that the template has been put into, and in the middle of its BeginPaint; sizes are
  // in pixels.
  virtual TError IOpenDialogCustomizeBehavior_OnPaint(IOpenDialogInstance& instance,
                                                      TNativeWindow window) = 0;
  virtual TError IOpenDialogCustomizeBehavior_OnSize(IOpenDialogInstance& instance, TNativeWindow window,
                                                     std::int32_t width, std::int32_t height) = 0;
};

}  // namespace NSMorvane
