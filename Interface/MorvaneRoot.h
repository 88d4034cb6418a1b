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
  // Together with the company, it tells a second launch from another program.
  TChar fProductName[kStartupNameChars + 1];
  TChar fDisplayName[kStartupNameChars + 1];  // what the user reads
  TFlag fStartupFlag;                         // kept, without effect
  std::uint32_t fReserved;
  // How long the application stays alive without windows after quitting, in milliseconds; 0 for not at all.
  std::uint32_t fLingerMS;
};

// Why there is nothing to show.
enum TNoDocumentKind : std::uint32_t {
  kNoDocumentAtStart = 5003,  // a start, or a second launch while lingering, without files
  kNoDocumentAtReopen = 5004  // a second launch without files, while this one is running without documents
};

// Implemented by the client: the application as the library sees it. IMorvane_Run deletes it when
// it succeeds; with any other code it stays the client's. Everything is called on the thread that called
// IMorvane_Run.
//
// A code other than kOK comes back through IMorvaneRunBehavior_OnUnhandledError, and the application goes on;
// before the loop has started, and behind it, it is the result of IMorvane_Run instead.
class IMorvaneRunBehavior {
 public:
  // Once, before anything else.
  virtual TError IMorvaneRunBehavior_OnStartUp() = 0;
  // Once, at the end; also in a second instance that has handed its files over.
  virtual TError IMorvaneRunBehavior_OnCleanUp() = 0;
  // The user or the system asks the application to quit, or there is no document window: the last one has
  // gone, or nothing was opened. Ask the documents, then call IMorvane_StartQuitting. It may be ignored, and
  // then comes again, without a document window after each message or idle call.
  virtual TError IMorvaneRunBehavior_OnQuitEvent() = 0;
  // There is nothing to show: open an empty document, or nothing, and the quit event follows.
  virtual TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind kind) = 0;
  // One file to open, as a "file://" URL: from the command line, a second launch, or dropped on a document
  // window. When no document window has come of all files, the quit event follows. What a second launch hands
  // over is a full path, unless it is too long for that; one with blanks, of a file that does not exist,
  // stands in quotes.
  virtual TError IMorvaneRunBehavior_OnOpenURL(const char* url) = 0;
  // Fill the menu bar of one document window.
  virtual TError IMorvaneRunBehavior_OnSetupMenuBar(IMenuBarState& state) = 0;
  // A command that nothing in the window has taken. Set `outHandled`, 0 on the way in, to 1 if it is taken
  // now; the same holds wherever an operation has this flag. A command of a document window that is not taken
  // here either comes a second time.
  virtual TError IMorvaneRunBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) = 0;
  // A key that nothing in the window has taken. Tab is used up before, by the window, whether it moves the
  // focus or not.
  virtual TError IMorvaneRunBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) = 0;
  // Idle time. `inOutDelayMS`, 1 on the way in, is the delay of the next call in milliseconds: from 1 to
  // 0x7FFFFFFF, to which other values are brought. The last answer holds: that of a call which
  // IMorvane_WakeUpIdle has brought about takes the place of what was asked for before. A call comes when the
  // loop turns after its time, which is within 25 ms while a window is shown and the thread is free. The
  // first one comes right after the start. A call that fails asks for nothing: the next one comes when one
  // that was asked for before is due, or else after about a second.
  virtual TError IMorvaneRunBehavior_OnIdle(std::int64_t& inOutDelayMS) = 0;
  // Around the drawing of a view tree.
  virtual TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools& tools) = 0;
  virtual TError IMorvaneRunBehavior_OnEndDraw(IDrawTools& tools) = 0;
  // 1 when the application comes to the front, 0 when another one does.
  virtual TError IMorvaneRunBehavior_OnAppActivation(TFlag active) = 0;
  virtual TError IMorvaneRunBehavior_OnThemeChanged() = 0;
  virtual TError IMorvaneRunBehavior_OnEnterMenuLoop() = 0;
  virtual TError IMorvaneRunBehavior_OnExitMenuLoop() = 0;
  // What IMorvane_PostAppMessage has posted.
  virtual TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t a, std::uint32_t b) = 0;
  // Something went wrong in a callback or in the library, and nobody was there to be told. It comes when the
  // message is through in which it happened; inside a loop of the system, which shows a menu or moves a
  // window, when that has ended. Of several codes that are waiting then only the oldest one comes, and the
  // others are dropped: the debug output has a line for each. The result is not looked at.
  virtual TError IMorvaneRunBehavior_OnUnhandledError(TError error) = 0;

  virtual ~IMorvaneRunBehavior() = default;
};

// The root object. There is one in a process; Morvane_Create makes it, and the client deletes it. Windows
// that are left end with it.
//
// Operations are for the thread that runs IMorvane_Run, unless they say otherwise. Every one can give
// kBadInputProgrammingError for a wrong argument, with nothing changed, and the code of whatever went wrong
// inside. Those that return an object return null on failure, with the code in `outError`.
class IMorvane {
 public:
  // True if the object is sound.
  virtual bool IMorvane_CheckInvariant() const = 0;

  // --- Debugging
  // Null for none. The object stays the client's. Works before IMorvane_Run.
  virtual TError IMorvane_SetDebugOutput(IDebugOutput* output) = 0;
  // A flag for each layer; kBadInputProgrammingError for one that is neither 0 nor 1. How they stand at the
  // start is told at TDebugSettings.
  virtual TError IMorvane_SetDebugSettings(const TDebugSettings& settings) = 0;
  virtual TError IMorvane_GetDebugSettings(TDebugSettings& outSettings) = 0;

  // --- The run of the application
  // Runs the application and returns when it has ended. Once in the life of the object. `behavior` is
  // deleted at the end if the result is kOK, and stays the client's otherwise.
  virtual TError IMorvane_Run(IMorvaneRunBehavior* behavior, const TStartupParams& params) = 0;
  // The run behaviour; null outside IMorvane_Run.
  virtual TError IMorvane_GetBehavior(IMorvaneRunBehavior*& outBehavior) = 0;
  virtual TError IMorvane_GetBehavior(IMorvaneRunBehavior*& outBehavior) const = 0;
  // Closes the visible windows one at a time, front first, each with
  // IxxxBehavior_OnRequestClose(kCloseByLibrary); when no window is left, IMorvane_Run ends. A window that
  // stays stops the process where it is. While IMorvane_IsQuitting gives 1 already, it is out of order: that
  // is reported as an assertion, and the front window is asked again.
  virtual TError IMorvane_StartQuitting() = 0;
  // Ends what IMorvane_StartQuitting began; only while IMorvane_IsQuitting gives 1. Windows that are closed
  // already stay closed.
  virtual TError IMorvane_StopQuitting() = 0;
  // 1 from IMorvane_StartQuitting on, also while the application lingers.
  virtual TError IMorvane_IsQuitting(TFlag& outIsQuittingFlag) = 0;

  // Sizes and work areas, in screen coordinates.
  virtual TError IMorvane_GetMonitors(TMonitorList& outMonitors) = 0;

  // --- Clipboard. During IMorvane_Run; kIllegalCallSequenceProgrammingError otherwise. While another program
  // holds the clipboard open, kOtherError: try again.
  virtual TError IMorvane_IsFormatOnClipboard(const TClipboardFormat& format, TFlag& outExistsFlag) = 0;
  // A copy of the data, which the caller deletes. kProgrammingError if the format is not there.
  virtual IData* IMorvane_GetClipboardData(const TClipboardFormat& format, TError& outError) = 0;
  // Empties the clipboard and puts the formats there. Takes `clipbardDataGetter` over on success. If one
  // format fails, those before it are there. Each IData has at least one byte. That of "utxt" is UTF-16 with
  // a zero unit at the end, counted in bytes; an odd count gives kBadInputProgrammingError.
  virtual TError IMorvane_ReplaceClipboardContents(const TClipboardFormat* formats, std::uint32_t formatCount,
                                                   IClipboardDataGetter* clipbardDataGetter) = 0;

  // --- Texts and time
  // The text behind a key "TYPE/BANK/ID" in the executable's resources, as in "SSTR/1000/1". The result is
  // what the receiver returns.
  virtual TError IMorvane_GetResourceString(const char* key, ITextReceiver& out) = 0;
  // Milliseconds since the system started. The upper half is 0 on this platform.
  virtual TError IMorvane_GetCurrentMS(std::uint64_t& out) = 0;
  // Has no meaning on this platform: gives 0, and an assertion.
  virtual TError IMorvane_ConvertMSToPrecisionTicks(std::uint64_t ms, std::uint64_t& out) = 0;

  // --- Icons; the caller deletes them. Their pictures are loaded when they are first asked for, so that a
  // source that does not exist shows there (IWinExtensions_GetIconHandle).
  virtual IIcon* IMorvane_CreateBuiltInIcon(TBuiltinIcon icon, TError& outError) = 0;
  // The system's icon of a file, folder or volume.
  virtual IIcon* IMorvane_CreateIconForURL(const char* fileOrFolderOrVolumeURL, TError& outError) = 0;
  // `key` is the number of an icon in the executable's resources, in decimal.
  virtual IIcon* IMorvane_CreateResourceIcon(const char* key, TError& outError) = 0;
  // A sheet of 181 by 130 pixels of 4 bytes (red, green, blue, alpha), with the four sizes at fixed places:
  // 16 at (132, 87), 32 at (132, 52), 48 at (132, 1), 128 at (1, 1). A size without an opaque pixel is left
  // out.
  virtual IIcon* IMorvane_CreatePixmapIcon(const void* pixmapRGBA, TError& outError) = 0;

  // --- Mouse
  // In the client coordinates of `window`, or in screen coordinates if it is null.
  virtual TError IMorvane_SampleMouseState(TMouseState& outState, IWindow* window) = 0;
  // A shape that goes before all others, or null. The object stays the client's.
  virtual TError IMorvane_SetOverrideMouseShape(IMouseShape* overrideShape) = 0;
  // Asks the views under the mouse for their shape once more.
  virtual TError IMorvane_RequestMouseShapeArbitration() = 0;
  // Gives all mouse events of the window to `capture`, and takes it over on success. There can be one at a
  // time: kIllegalCallSequenceProgrammingError.
  virtual TError IMorvane_AllocateMouseCapture(IWindow* window, IMouseCapture* capture) = 0;
  // Without a capture, nothing happens.
  virtual TError IMorvane_ReleaseMouseCapture() = 0;
  // Waits, for half a second at most, to see what becomes of a press of the left button, or of a single press
  // of the right one. Movements are taken out of the queue, the release stays in it. There is no capture
  // meanwhile: a release outside of the window is not seen, and the press counts as held. A press of the pre
  // pass is none here and gives kClickDragNotApplicable: hand over a copy of the event with the fType of the
  // normal pass, kMouseEventClick or kMouseEventDoubleClick.
  virtual TError IMorvane_CheckForClickDragOperation(IWindow& window, const TMouseEvent& event,
                                                     TClickDragResult& outResult) = 0;

  // --- Keyboard. Listeners and callbacks stay the client's, and must stay alive until they are detached.
  // A listener that is attached twice is told twice. While the mouse capture is in force it is told instead.
  virtual TError IMorvane_AttachModifierKeyListener(IModifierKeyListener* listener) = 0;
  // kBadInputProgrammingError for a listener that is not attached.
  virtual TError IMorvane_DetachModifierKeyListener(IModifierKeyListener* listener) = 0;
  // Calls back once, when the key with this virtual key code of the platform goes up, or when a window with a
  // focus view is deactivated. What the callback answers is reported to IMorvaneRunBehavior_OnUnhandledError.
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
  // Handles all waiting messages and returns. A view that is never done painting, such as an animation that
  // invalidates itself in Draw, keeps it no longer than for a few paints of its window.
  virtual TError IMorvane_Yield() = 0;
  // Makes IMorvaneRunBehavior_OnIdle due at once, whatever delay it has asked for. Safe from any thread while
  // IMorvane_Run runs.
  virtual TError IMorvane_WakeUpIdle() = 0;

  // --- Meaning of keys
  // The modifier keys of a portable shortcut on this platform.
  virtual TError IMorvane_ShortcutModsToModifiers(TShortcutModifiers shortcutMods,
                                                  TModifierKeys& outMods) = 0;
  // Whether one reading of the key is the wanted text, with just the wanted modifiers left over. With the
  // wanted fPhysicalTest, the key must be on the numeric keypad too. Ctrl+Shift+S is wanted as "s" with
  // Control and Shift, or as "S" with Control.
  virtual TError IMorvane_CanKeyBeInterpretedAs(const TPhysicalKeySpec& physicalKey,
                                                const TModifierKeys& physicalMods,
                                                const TKeyInterpretation& wantedInterpretation,
                                                TFlag& outFlag) = 0;
  // What the key is usually taken for: its character as it would be typed, and the modifiers that the
  // character does not stand for. All zero if the key has no meaning, as a modifier key alone. On a US
  // keyboard:
  //   A               is "a", no modifiers
  //   Shift+2         is "@", no modifiers: Shift is in the character
  //   Ctrl+Shift+F5   is kKeyCharF1 + 4, Control and Shift: the key writes nothing that Shift could change
  virtual TError IMorvane_GetDefaultInterpretation(const TPhysicalKeySpec& physicalKey,
                                                   const TModifierKeys& physicalMods,
                                                   TKeyInterpretation& outInterpretation) = 0;

  // --- Menus
  // Has the menu bars of all visible document windows filled anew, once, at the end of the current message.
  virtual TError IMorvane_RequestMenuBarsSetup() = 0;
  // A menu with its corner at a point of the window's client area; returns when it has gone.
  // `inOutSelectedIndex` comes in as -1 or the number of an item, which has no effect here, and is the chosen
  // item if `outSelectionMadeFlag` is 1. `flags`: 0 or kPopupMenuLeftButtonOnly.
  virtual TError IMorvane_DisplayPopupMenu(const TMenuItem* items, std::uint32_t itemCount, IWindow& window,
                                           const TPoint& point, std::uint32_t flags,
                                           std::int16_t& inOutSelectedIndex, TFlag& outSelectionMadeFlag) = 0;
  // The same for a right click. `outSelectedIndex` must be below `itemCount` on the way in, and stays if
  // nothing is chosen.
  virtual TError IMorvane_DisplayContextualMenu(const TMenuItem* items, std::uint32_t itemCount,
                                                IWindow& window, const TPoint& point, std::uint32_t flags,
                                                std::uint16_t& outSelectedIndex,
                                                TFlag& outSelectionMadeFlag) = 0;

  // --- Windows. They are shown when the call returns. The lists hold visible windows, front window first.
  //
  // `windowsMenuFlag` 1 lists the window by its title in the window menu. The interface that is returned
  // stays the library's: end the window with its _Release. A window that is ended while it is being made is
  // gone when the call returns; the interface must not be used then.
  virtual IDocumentWindow* IMorvane_CreateDocumentWindow(IDocumentWindowBehaviorFactory& factory,
                                                         TStyleFlags styleFlags, TFlag windowsMenuFlag,
                                                         TError& outError) = 0;
  virtual TError IMorvane_GetDocumentWindowsZ(IWindowListReceiver& out) = 0;
  // A borderless dialog cannot be listed in the window menu.
  virtual IModelessDialog* IMorvane_CreateModelessDialog(IModelessDialogBehaviorFactory& factory,
                                                         TStyleFlags styleFlags, TFlag windowsMenuFlag,
                                                         TError& outError) = 0;
  virtual TError IMorvane_GetModelessDialogsZ(IWindowListReceiver& out) = 0;
  // With an owner, the dialog blocks that window; without one, the application. `blockingAppModalDialogFlag`,
  // only without an owner: the call returns when the dialog has gone, with null and kOK.
  virtual IModalDialog* IMorvane_CreateModalDialog(IModalDialogBehaviorFactory& factory, IModalOwner* owner,
                                                   TFlag blockingAppModalDialogFlag, TStyleFlags styleFlags,
                                                   TError& outError) = 0;
  virtual TError IMorvane_GetModalDialogsZ(IWindowListReceiver& out) = 0;
  virtual IFloatingWindow* IMorvane_CreateFloatingWindow(IFloatingWindowBehaviorFactory& factory,
                                                         TStyleFlags styleFlags, TError& outError) = 0;
  virtual TError IMorvane_GetFloatingWindowsZ(IWindowListReceiver& out) = 0;
  // Shows an alert and returns; or returns when it has been answered, if `blockingAppModalDialogFlag` is 1,
  // which is possible only without an owner. With an owner the alert blocks that window and stands over it,
  // without one it blocks the application. The close box counts as the last button, Return as the default one
  // unless another has the focus, Escape as Cancel where there are two or three. The listener is told the
  // answer; it may be null, and stays the client's. kOtherError for an unknown layout.
  virtual TError IMorvane_CreateAlertBox(IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                         const TAlertSpec& alertSpec, IAlertBoxListener* listener) = 0;

  // --- Views
  // A view under `superView`, last in its order, with an empty rectangle: give it one with IView_SetParams.
  // It is enabled, draws directly, and has kAutoInvalidationNone: nothing is drawn anew because it is there,
  // or gets a rectangle, unless the parameters that bring the rectangle have another setting, as those have
  // that ViewParams of MorvaneDefaults.h makes. `debugName` is cut to kDebugNameChars. End it with
  // IView_Release.
  virtual IView* IMorvane_CreateView(IViewBehaviorFactory& factory, IView& superView, const char* debugName,
                                     TError& outError) = 0;
  // Has a part of the view drawn again soon. `rect` is in window client coordinates and is cut to the view.
  // In a view that is not in a permanent mode itself, the part becomes dirty in the nearest permanent view
  // around it. A permanent view inside another one does not tell that: what changes in the inner one has to
  // be invalidated in both, or the outer one goes on showing its copy of the old pixels.
  virtual TError IMorvane_InvalidateView(IView& view, const TRect& rect) = 0;

  // --- File dialogs. Not built yet, but for the question whether to save changes: kUnsupported.
  // `dialogContext` tells which remembered folder, position and file type to use.
  virtual TError IMorvane_CreateSaveAsDialog(ISaveAsDialogBehavior* behavior, std::uint32_t dialogContext,
                                             IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                             const TChar* templateFileName, const TFileType* types,
                                             std::uint32_t typeCount, const TChar* prompt) = 0;
  virtual TError IMorvane_CreateOpenDialog(IOpenDialogBehavior* behavior, std::uint32_t dialogContext,
                                           IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                           TFlag allowMultiSelectFlag, const TFileType* types,
                                           std::uint32_t typeCount, const TChar* prompt,
                                           IOpenDialogCustomizeBehavior* customizeBehavior) = 0;
  virtual TError IMorvane_CreateDirectoryChooserDialog(IDirectoryChooserBehavior* behavior,
                                                       std::uint32_t dialogContext, IModalOwner* modalOwner,
                                                       TFlag blockingAppModalDialogFlag,
                                                       const TChar* prompt) = 0;
  // Asks whether to save the changes of a document: an alert with the texts 11 to 15 of the application's
  // bank 1000, in whose question "^0" stands for `documentName`. `reason` chooses the question: closing or
  // quitting.
  virtual TError IMorvane_CreateSaveChangesDialog(ISaveChangesBehavior* behavior, IModalOwner* modalOwner,
                                                  TFlag blockingAppModalDialogFlag, const TChar* documentName,
                                                  TCloseReason reason) = 0;

  // --- Drawing and messages
  // Draws a view and its subviews with the tools of a drawing that is going on.
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

// The root interface, for the name "IMorvane"; the caller deletes it. On failure null, and in `*outError`:
// kBadInputProgrammingError for another name, kUnsupportedOSVersionError for a system that is too old.
NSMorvane::IMorvane* Morvane_Create(const char* interfaceName, NSMorvane::TError* outError);

}  // extern "C"
