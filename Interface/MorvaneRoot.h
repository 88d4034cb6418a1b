// The root of the toolkit: the exports of the shared library, the root interface, and the run behaviour.
#pragma once

#include "MorvaneClipboard.h"
#include "MorvaneDebugOutput.h"
#include "MorvaneDialogs.h"
#include "MorvaneDrawing.h"
#include "MorvaneIcon.h"
#include "MorvaneKeyboard.h"
#include "MorvaneMenu.h"
#include "MorvaneMonitors.h"
#include "MorvaneMouse.h"
#include "MorvaneText.h"
#include "MorvaneTypes.h"
#include "MorvaneView.h"
#include "MorvaneWindow.h"

namespace NSMorvane {

class IWinExtensions;

enum : std::size_t { kStartupNameChars = 255 };

// What the application is. All three names must hold 1 to 255 characters.
struct TStartupParams {
  TChar fCompanyName[kStartupNameChars + 1];
  // Together with the company name, it tells a second launch of the application from a launch of another
  // program: the two texts, one right behind the other.
  TChar fProductName[kStartupNameChars + 1];
  TChar fDisplayName[kStartupNameChars + 1];  // what the user reads
  TFlag fStartupFlag;                         // without effect
  std::uint32_t fReserved;
  // How long the application stays alive without windows after quitting, in milliseconds; 0 for not at all.
  std::uint32_t fLingerMS;
};

// Why there is nothing to show.
enum TNoDocumentKind : std::uint32_t {
  kNoDocumentAtStart = 5003,  // a start, or a second launch while lingering, without files
  kNoDocumentAtReopen = 5004  // a second launch without files, while this one is running without documents
};

// Implemented by the client: the application as the library sees it. IMorvane_Run deletes it on success; with
// any other code the client keeps the ownership. All operations are called on the thread that called
// IMorvane_Run.
//
// A code other than kOK is passed to IMorvaneRunBehavior_OnUnhandledError, and the application continues.
// Before the message loop has started, and after it has ended, the code is the result of IMorvane_Run
// instead.
class IMorvaneRunBehavior {
 public:
  // Called once, before anything else.
  virtual TError IMorvaneRunBehavior_OnStartUp() = 0;
  // Called once, at the end; also in a second instance that has passed its files to the first one.
  virtual TError IMorvaneRunBehavior_OnCleanUp() = 0;
  // The user or the system asks the application to quit, or there is no document window: the last one has
  // gone, or nothing was opened. Ask the documents whether they can be closed, then call
  // IMorvane_StartQuitting. The event may be ignored. It then comes again; as long as there is no document
  // window, after each message and idle call, but not while an alert is open.
  virtual TError IMorvaneRunBehavior_OnQuitEvent() = 0;
  // There is nothing to show. Open an empty document; if nothing is opened, the quit event follows.
  virtual TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind kind) = 0;
  // One file to open, as a "file://" URL: from the command line, a second launch, or dropped on a document
  // window. If opening all files has produced no document window, the quit event follows. A second launch
  // passes full paths, unless they are too long for that. A path that has quotes on the command line comes
  // with them, and the last one of several perhaps without its second quote: PathOfURL takes them off.
  virtual TError IMorvaneRunBehavior_OnOpenURL(const char* url) = 0;
  // Fill the menu bar of one document window.
  virtual TError IMorvaneRunBehavior_OnSetupMenuBar(IMenuBarState& state) = 0;
  // A command that nothing in the window has handled. `outHandled` is 0 at the call: set it to 1 if the
  // command is handled here. That holds for every operation with this flag. A command of a document window
  // that is not handled here either comes a second time.
  virtual TError IMorvaneRunBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) = 0;
  // A key that nothing in the window has handled. Tab never comes here: the window handles it, even if there
  // is no view to move the focus to.
  virtual TError IMorvaneRunBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) = 0;
  // Idle time. `inOutDelayMS` is 1 at the call, and on return the delay until the next call in milliseconds:
  // from 1 to 0x7FFFFFFF; other values are brought into that range. The last answer counts: if
  // IMorvane_WakeUpIdle has caused a call, its answer replaces the delay that was asked for before. A call
  // comes when the message loop turns after its time has come; while a window is shown and the thread is
  // free, that takes at most 25 ms. The first call comes right after the start. A call that fails asks for
  // nothing: the next call comes when an earlier request is due, or else after about a second.
  virtual TError IMorvaneRunBehavior_OnIdle(std::int64_t& inOutDelayMS) = 0;
  // Called before and after views are drawn onto a surface, which is the window or the bitmap of a buffered
  // view. One paint can have several such pairs of calls.
  virtual TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools& tools) = 0;
  virtual TError IMorvaneRunBehavior_OnEndDraw(IDrawTools& tools) = 0;
  // 1 when the application comes to the front, 0 when another one does.
  virtual TError IMorvaneRunBehavior_OnAppActivation(TFlag active) = 0;
  virtual TError IMorvaneRunBehavior_OnThemeChanged() = 0;
  virtual TError IMorvaneRunBehavior_OnEnterMenuLoop() = 0;
  virtual TError IMorvaneRunBehavior_OnExitMenuLoop() = 0;
  // What IMorvane_PostAppMessage has posted.
  virtual TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t a, std::uint32_t b) = 0;
  // Something went wrong in a callback or in the library, and there was no caller to return the code to. This
  // is called at the end of the message in which it happened; inside a loop of the system, which shows a menu
  // or moves a window, at the end of that loop. If several codes are waiting then, only the oldest one is
  // delivered and the others are dropped; the debug output has a line for each. The result is ignored.
  virtual TError IMorvaneRunBehavior_OnUnhandledError(TError error) = 0;

  virtual ~IMorvaneRunBehavior() = default;
};

// The root object. There is one in a process; Morvane_Create makes it, and the client deletes it. Windows
// that still exist end with it.
//
// Call the operations on the thread that runs IMorvane_Run, unless they say otherwise. Each of them can give
// kBadInputProgrammingError for a wrong argument, and then changes nothing, and the code of whatever went
// wrong inside. Those that return an object return null on failure, with the code in `outError`.
class IMorvane {
 public:
  // True if the object is sound.
  virtual bool IMorvane_CheckInvariant() const = 0;

  // Null for no output. The client keeps the ownership of the object. Works before IMorvane_Run.
  virtual TError IMorvane_SetDebugOutput(IDebugOutput* output) = 0;
  // One flag for each layer; kBadInputProgrammingError if one is neither 0 nor 1. TDebugSettings tells the
  // initial values.
  virtual TError IMorvane_SetDebugSettings(const TDebugSettings& settings) = 0;
  virtual TError IMorvane_GetDebugSettings(TDebugSettings& outSettings) = 0;

  // --- The run of the application
  // Runs the application and returns when it has ended. May be called once in
  // the life of the object. `behavior` is deleted at the end if the result is kOK; otherwise the client keeps
  // the ownership.
  virtual TError IMorvane_Run(IMorvaneRunBehavior* behavior, const TStartupParams& params) = 0;
  // The run behaviour; null outside IMorvane_Run.
  virtual TError IMorvane_GetBehavior(IMorvaneRunBehavior*& outBehavior) = 0;
  virtual TError IMorvane_GetBehavior(IMorvaneRunBehavior*& outBehavior) const = 0;
  // Closes the visible windows one at a time, front first, each with
  // IxxxBehavior_OnRequestClose(kCloseByLibrary); when no window is left, IMorvane_Run ends. An alert is
  // answered with its last button. Quitting waits for a window that does not close. A call while
  // IMorvane_IsQuitting gives 1 is a mistake: it is reported as an assertion, and the front window is asked
  // again.
  virtual TError IMorvane_StartQuitting() = 0;
  // Stops the quitting that IMorvane_StartQuitting began. Call it only while IMorvane_IsQuitting gives 1.
  // Windows that are closed already stay closed.
  virtual TError IMorvane_StopQuitting() = 0;
  // 1 from IMorvane_StartQuitting on, also while the application lingers.
  virtual TError IMorvane_IsQuitting(TFlag& outIsQuittingFlag) = 0;

  // The monitors with their bounds and work areas, in screen coordinates.
  virtual TError IMorvane_GetMonitors(TMonitorList& outMonitors) = 0;

  // --- Clipboard. Only during IMorvane_Run, else kIllegalCallSequenceProgrammingError. kOtherError while
  // another program holds the clipboard open: try again.
  virtual TError IMorvane_IsFormatOnClipboard(const TClipboardFormat& format, TFlag& outExistsFlag) = 0;
  // A copy of the data, which the caller deletes. It can be longer than what was put there, since the system
  // may round its size up; a text ends at its zero unit. kProgrammingError if the format is not there,
  // kUnsupportedFormatError for "HBMP".
  virtual IData* IMorvane_GetClipboardData(const TClipboardFormat& format, TError& outError) = 0;
  // Empties the clipboard and puts the data of all formats there. Without formats `clipbardDataGetter` may be
  // null. On success the library owns it. If one format fails, the formats before it are on the clipboard. A
  // tag that no format can have, and "HBMP" (kUnsupportedFormatError), change nothing. Each IData has at
  // least one byte; an empty one gives kOtherError. The data of "utxt" is UTF-16. Its size is in bytes too:
  // an odd size gives kBadInputProgrammingError. "utxt" and "TEXT" without a zero unit at the end get one.
  virtual TError IMorvane_ReplaceClipboardContents(const TClipboardFormat* formats, std::uint32_t formatCount,
                                                   IClipboardDataGetter* clipbardDataGetter) = 0;

  // --- Texts and time
  // The text for a key "TYPE/BANK/ID" in the executable's resources, as in "SSTR/1000/1".
  // The result is what the receiver returns. kBadInputProgrammingError for a malformed key and for an id that
  // the bank has not, kOtherError if there is no such bank or it is not UTF-8, kBadFormatError for a bank
  // that cannot be read.
  virtual TError IMorvane_GetResourceString(const char* key, ITextReceiver& out) = 0;
  // Milliseconds since the system started. The upper half is 0 on this platform.
  virtual TError IMorvane_GetCurrentMS(std::uint64_t& out) = 0;
  // Has no meaning on this platform: gives 0, and an assertion.
  virtual TError IMorvane_ConvertMSToPrecisionTicks(std::uint64_t ms, std::uint64_t& out) = 0;

  // --- Icons; the caller deletes them. Their pictures are loaded when they are first needed, so a source
  // that does not exist is reported only then (IWinExtensions_GetIconHandle).
  virtual IIcon* IMorvane_CreateBuiltInIcon(TBuiltinIcon icon, TError& outError) = 0;
  // The system's icon of a file, folder or volume, at 16 and 32 pixels. The URL begins with "file://". Any
  // other text is reported only when the picture is needed.
  virtual IIcon* IMorvane_CreateIconForURL(const char* fileOrFolderOrVolumeURL, TError& outError) = 0;
  // `key` is the number of an icon in the executable's resources, in decimal.
  virtual IIcon* IMorvane_CreateResourceIcon(const char* key, TError& outError) = 0;
  // A sheet of 181 by 130 pixels of 4 bytes (red, green, blue, alpha), with the four sizes at fixed places:
  // 16 at (132, 87), 32 at (132, 52), 48 at (132, 1), 128 at (1, 1). The first row is the top
  // one. Colours are not multiplied by alpha. A size without a pixel of an alpha above 0 is left out; no size
  // is scaled down from a larger one.
  virtual IIcon* IMorvane_CreatePixmapIcon(const void* pixmapRGBA, TError& outError) = 0;

  // The position is in client coordinates of `window`, or in screen coordinates if that is null.
  virtual TError IMorvane_SampleMouseState(TMouseState& outState, IWindow* window) = 0;
  // A shape that is shown instead of all others, or null for none. The client keeps the ownership of the
  // object.
  virtual TError IMorvane_SetOverrideMouseShape(IMouseShape* overrideShape) = 0;
  // Asks the views under the mouse for their shape once more.
  virtual TError IMorvane_RequestMouseShapeArbitration() = 0;
  // Gives all mouse events of the window to `capture`, which the library owns on success.
  // kIllegalCallSequenceProgrammingError while another capture is in force.
  virtual TError IMorvane_AllocateMouseCapture(IWindow* window, IMouseCapture* capture) = 0;
  // Ends the capture, if there is one.
  virtual TError IMorvane_ReleaseMouseCapture() = 0;
  // Waits, for half a second at most, to find out what becomes of a press of the left button, or of a single
  // press of the right button. Movements are removed from the message queue; the release stays in it. The
  // mouse is not captured meanwhile: a release outside of the window is not noticed, and the press counts as
  // held. An event of the pre pass gives kClickDragNotApplicable. Pass a copy of it with the fType of the
  // normal pass, kMouseEventClick or kMouseEventDoubleClick.
  virtual TError IMorvane_CheckForClickDragOperation(IWindow& window, const TMouseEvent& event,
                                                     TClickDragResult& outResult) = 0;

  // --- Keyboard. The client keeps the ownership of listeners and callbacks, which must stay alive until they
  // are detached. A listener that is attached twice is called twice. While a mouse capture is in force, it is
  // called instead of the listeners.
  virtual TError IMorvane_AttachModifierKeyListener(IModifierKeyListener* listener) = 0;
  // kBadInputProgrammingError for a listener that is not attached.
  virtual TError IMorvane_DetachModifierKeyListener(IModifierKeyListener* listener) = 0;
  // Calls back once, when the key with this virtual key code of the platform goes up, or when a window with a
  // focus view is deactivated. A code other than kOK from the callback is passed to
  // IMorvaneRunBehavior_OnUnhandledError.
  virtual TError IMorvane_InstallKeyReleaseCallback(std::uint32_t virtualKey,
                                                    IKeyReleaseCallback* callback) = 0;
  // kOtherError for a pair that is not installed.
  virtual TError IMorvane_RemoveKeyReleaseCallback(std::uint32_t virtualKey,
                                                   IKeyReleaseCallback* callback) = 0;

  // --- Mouse shapes; the caller deletes them
  // `key` is the number of a cursor in the executable's resources, in decimal.
  virtual IMouseShape* IMorvane_LoadResourceMouseShape(const char* key, TError& outError) = 0;
  virtual IMouseShape* IMorvane_CreateBuiltInMouseShape(TBuiltInMouseShape mouseShape, TError& outError) = 0;

  // --- The loop from inside
  // Handles all waiting messages and returns. A view that invalidates itself each time that it is drawn, such
  // as an animation, keeps this operation busy for no more than a few paints of its window, and so do timers
  // that are always due.
  virtual TError IMorvane_Yield() = 0;
  // Makes IMorvaneRunBehavior_OnIdle due at once, whatever delay it has asked for. Safe from any thread while
  // IMorvane_Run runs.
  virtual TError IMorvane_WakeUpIdle() = 0;

  // --- Meaning of keys
  // The modifier keys of a portable shortcut on this platform.
  virtual TError IMorvane_ShortcutModsToModifiers(TShortcutModifiers shortcutMods,
                                                  TModifierKeys& outMods) = 0;
  // Whether one reading of the key has the wanted text and leaves exactly the wanted modifiers. If the wanted
  // fPhysicalTest is 1, the key must also be on the numeric keypad. Ctrl+Shift+S can be asked for as "s" with
  // Control and Shift, or as "S" with Control.
  virtual TError IMorvane_CanKeyBeInterpretedAs(const TPhysicalKeySpec& physicalKey,
                                                const TModifierKeys& physicalMods,
                                                const TKeyInterpretation& wantedInterpretation,
                                                TFlag& outFlag) = 0;
  // The usual reading of the key: the character that it types, and the modifiers that are not part of that
  // character. All zero if the key has no meaning, like a modifier key alone. On a US keyboard:
  //   A               is "a", no modifiers
  //   Shift+2         is "@", no modifiers: Shift is in the character
  //   Ctrl+Shift+F5   is kKeyCharF1 + 4, Control and Shift: the key writes nothing that Shift could change
  virtual TError IMorvane_GetDefaultInterpretation(const TPhysicalKeySpec& physicalKey,
                                                   const TModifierKeys& physicalMods,
                                                   TKeyInterpretation& outInterpretation) = 0;

  // Requests that the menu bars of all visible document windows are filled again. That happens once, at the
  // end of the current message.
  virtual TError IMorvane_RequestMenuBarsSetup() = 0;
  // Shows a menu with its corner at a point in client coordinates of the window, and returns when the menu
  // has gone. At the call `inOutSelectedIndex` is -1 or the index of an item, which has no effect on this
  // platform. If `outSelectionMadeFlag` is 1 on return, it is the index of the chosen item. `flags`: 0 or
  // kPopupMenuLeftButtonOnly.
  virtual TError IMorvane_DisplayPopupMenu(const TMenuItem* items, std::uint32_t itemCount, IWindow& window,
                                           const TPoint& point, std::uint32_t flags,
                                           std::int16_t& inOutSelectedIndex, TFlag& outSelectionMadeFlag) = 0;
  // The same for a right click. `outSelectedIndex` must be below `itemCount` at the call, and stays as it is
  // if nothing is chosen.
  virtual TError IMorvane_DisplayContextualMenu(const TMenuItem* items, std::uint32_t itemCount,
                                                IWindow& window, const TPoint& point, std::uint32_t flags,
                                                std::uint16_t& outSelectedIndex,
                                                TFlag& outSelectionMadeFlag) = 0;

  // --- Windows. A window is shown when the call that makes it returns. The lists hold visible windows, front
  // window first. kIllegalCallSequenceProgrammingError for a window outside IMorvane_Run.
  //
  // If `windowsMenuFlag` is 1, the window menu lists the window by its title. The library owns the interface
  // that is returned: end the window with its _Release. If the window is ended while it is being made, it is
  // gone when the call returns, and the interface must not be used.
  virtual IDocumentWindow* IMorvane_CreateDocumentWindow(IDocumentWindowBehaviorFactory& factory,
                                                         TStyleFlags styleFlags, TFlag windowsMenuFlag,
                                                         TError& outError) = 0;
  virtual TError IMorvane_GetDocumentWindowsZ(IWindowListReceiver& out) = 0;
  // A borderless dialog cannot be listed in the window menu.
  virtual IModelessDialog* IMorvane_CreateModelessDialog(IModelessDialogBehaviorFactory& factory,
                                                         TStyleFlags styleFlags, TFlag windowsMenuFlag,
                                                         TError& outError) = 0;
  virtual TError IMorvane_GetModelessDialogsZ(IWindowListReceiver& out) = 0;
  // With an owner, the dialog blocks that window; without one, the application. If
  // `blockingAppModalDialogFlag` is 1, which is possible only without an owner, the call returns null and kOK
  // when the dialog has gone.
  virtual IModalDialog* IMorvane_CreateModalDialog(IModalDialogBehaviorFactory& factory, IModalOwner* owner,
                                                   TFlag blockingAppModalDialogFlag, TStyleFlags styleFlags,
                                                   TError& outError) = 0;
  virtual TError IMorvane_GetModalDialogsZ(IWindowListReceiver& out) = 0;
  virtual IFloatingWindow* IMorvane_CreateFloatingWindow(IFloatingWindowBehaviorFactory& factory,
                                                         TStyleFlags styleFlags, TError& outError) = 0;
  virtual TError IMorvane_GetFloatingWindowsZ(IWindowListReceiver& out) = 0;
  // Shows an alert and returns at once. If `blockingAppModalDialogFlag` is 1, which is possible only without
  // an owner, it returns when the alert has been answered. With an owner, the alert blocks that window and
  // appears over it; when the owner is released, the alert closes without an answer. Without an owner, the
  // alert blocks the application. The close box and quitting count as the last button, Return as the default
  // button unless another one has the focus, and Escape as Cancel if there are two or three buttons, else as
  // the only button. `listener` gets the answer, unless the run ends before; it may be null, and the client
  // keeps its ownership. kOtherError for an unknown layout, kIllegalCallSequenceProgrammingError outside
  // IMorvane_Run.
  virtual TError IMorvane_CreateAlertBox(IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                         const TAlertSpec& alertSpec, IAlertBoxListener* listener) = 0;

  // Makes a view as the last subview of `superView`. Its rectangle is empty at first: set it with
  // IView_SetParams. It is enabled, draws directly, and has kAutoInvalidationNone. So neither making it nor
  // giving it a rectangle makes anything dirty, unless the parameters with the rectangle have another
  // auto-invalidation, as the result of ViewParams of MorvaneDefaults.h has. `debugName` is cut to
  // kDebugNameChars. End the view with IView_Release.
  virtual IView* IMorvane_CreateView(IViewBehaviorFactory& factory, IView& superView, const char* debugName,
                                     TError& outError) = 0;
  // Requests that a part of the view is drawn again soon. `rect` is in window client coordinates and is
  // clipped to the view. If the view is not in a permanent mode itself, the part becomes dirty in the nearest
  // permanent view around it. It goes no further up: if a permanent view lies inside another one, invalidate
  // what has changed in both, otherwise the outer one still shows its copy of the old pixels.
  virtual TError IMorvane_InvalidateView(IView& view, const TRect& rect) = 0;

  // --- File dialogs
  // The dialogs of the system. What they have in common:
  // `behavior` gets the result, on the main thread; it may be null. The client keeps its ownership and keeps
  // it alive until then, also if the owner ends before. `modalOwner` is the window that the dialog blocks and
  // appears over; without one it blocks the application. If `blockingAppModalDialogFlag` is 0, the dialog
  // runs on a thread of its own: the call returns when the dialog is on the screen, and the result comes
  // later, in the run loop, even if the system could not show the dialog, which counts as cancelled. If it is
  // 1, which is possible only without an owner, the call returns after the result; a code that the behaviour
  // answers is only logged then. `prompt` is the title, or null for that of the system; a folder chooser
  // shows it above the folders, and null as no text. The folder, the place on the screen and the file type of
  // the last result are remembered under the number `dialogContext`, in the registry. The system's dialog may
  // change the current directory of the process. When the run ends, dialogs that are still open are closed as
  // cancelled. kIllegalCallSequenceProgrammingError outside IMorvane_Run, while that ends, and on another
  // thread than its; kOutOfMemoryError if there can be no thread or if names and extensions of the types are
  // too long for the system (1301 characters together, twice the extensions counted).

  // The dialog begins with the name `templateFileName`, a path or a name alone. If it has no extension, it
  // gets that of the type shown: the one that lists its extension, or that of the last time, or the first.
  // The result always has an extension of one of the types, unless the chosen type lists none or ".*": a name
  // without one gets the first of the chosen type. Before it overwrites a file, the system asks.
  virtual TError IMorvane_CreateSaveAsDialog(ISaveAsDialogBehavior* behavior, std::uint32_t dialogContext,
                                             IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                             const TChar* templateFileName, const TFileType* types,
                                             std::uint32_t typeCount, const TChar* prompt) = 0;
  // One existing file is chosen, whatever `allowMultiSelectFlag` says. With two or more types, another one is
  // shown that combines them all. `customizeBehavior` puts controls of the client's into the dialog; it may
  // be null. The library deletes it when the dialog has gone; if the call fails, the client keeps it.
  virtual TError IMorvane_CreateOpenDialog(IOpenDialogBehavior* behavior, std::uint32_t dialogContext,
                                           IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                           TFlag allowMultiSelectFlag, const TFileType* types,
                                           std::uint32_t typeCount, const TChar* prompt,
                                           IOpenDialogCustomizeBehavior* customizeBehavior) = 0;
  // Caution: only a chooser with the flag 1 gives its result. With 0 the user chooses in vain: neither
  // operation of the behaviour is called, and nothing is remembered. The URL of a folder ends in a backslash.
  // A folder that is none of the file system counts as cancelled.
  virtual TError IMorvane_CreateDirectoryChooserDialog(IDirectoryChooserBehavior* behavior,
                                                       std::uint32_t dialogContext, IModalOwner* modalOwner,
                                                       TFlag blockingAppModalDialogFlag,
                                                       const TChar* prompt) = 0;
  // Asks whether to save the changes of a document, in an alert with the texts 11 to 15 of the application's
  // bank 1000. In the question, "^0" stands for `documentName`, where null is the empty text. `reason`
  // chooses between the questions for closing and for quitting. `behavior` must not be null. Everything else
  // is as in IMorvane_CreateAlertBox.
  virtual TError IMorvane_CreateSaveChangesDialog(ISaveChangesBehavior* behavior, IModalOwner* modalOwner,
                                                  TFlag blockingAppModalDialogFlag, const TChar* documentName,
                                                  TCloseReason reason) = 0;

  // --- Drawing and messages
  // Draws a view and its subviews with the tools of the current drawing callback.
  virtual TError IMorvane_DrawView(IView& view, IDrawTools& tools) = 0;
  // Posts two numbers to IMorvaneRunBehavior_OnAppMessage. Safe from any thread while IMorvane_Run runs.
  virtual TError IMorvane_PostAppMessage(std::uint32_t a, std::uint32_t b) = 0;

  // --- Platforms
  // Null on this platform, with an assertion.
  virtual TError IMorvane_GetMacExtensions(void*& outMacExtensions) = 0;
  virtual TError IMorvane_GetWinExtensions(IWinExtensions*& outWinExtensions) = 0;

  virtual ~IMorvane() = default;
};

}  // namespace NSMorvane

// --- The exports of the shared library

extern "C" {

// A block on the library's heap. Throws std::bad_alloc.
void* Morvane_New(std::size_t size);

// Frees a block that came from Morvane_New.
void Morvane_Delete(void* block);

// Links under another name with each of the two C++ ABIs of the platform, in which the tables of virtual
// functions differ: a library of the other ABI is an unresolved symbol. Who looks the function up finds it
// under its plain name, and has to see to that himself.
#if defined(_MSC_VER)
#define Morvane_Create Morvane_Create_Microsoft
#elif defined(_WIN32)
#define Morvane_Create Morvane_Create_Itanium
#endif

// Makes the root object. `interfaceName` must be "IMorvane"; the caller deletes the object. On failure the
// result is null, and `*outError` is kBadInputProgrammingError for another name, kUnsupportedOSVersionError
// for a system that is too old, kOtherError while there is a root object already or if the system tells
// nothing of its monitors, or kOutOfMemoryError.
NSMorvane::IMorvane* Morvane_Create(const char* interfaceName, NSMorvane::TError* outError);

}  // extern "C"
