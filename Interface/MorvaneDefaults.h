// Defaults and small helpers for clients. Optional, and header-only: nothing in it crosses the boundary to
// the library.
//
//   RunApplication          a complete main program: the root object, the run, the exit code.
//   CDefault...             a default for each behaviour that a client implements. Its operations return kOK
//                           and handle nothing, so that a behaviour overrides only what it needs.
//   CreateDocumentWindow    a document window with a behaviour of a given type, in one call;
//   CreateModalDialog
//                           and the like for the other kinds.
//   PlaceCascaded, PlaceCentred, PlaceBeside, SetClientSize
//                           where a window first appears, and how large.
//   ShowMessage, ShowAlert, AskToSaveChanges, ShowOpenDialog, ShowSaveDialog, ShowFolderChooser
//                           dialogs whose answer comes through a callback; CCallbackScope drops the callbacks
//                           of an object that has gone.
//   CopyToClipboard, ClipboardBytes, ClipboardText
//                           the clipboard, without interfaces to implement.
//   CTimer                  calls back once or repeatedly, and ends with its owner.
//   IsKey, KeyOf            keys by their text: "Ctrl+S".
//   PathOfURL               the path of a URL that OnOpenURL gets.
//   CFailureOutput          receives assertions and failures, and nothing else of the debug output.
//   CViewOf                 a view with a behaviour of a given type, made in one call, which ends with its
//                           owner.
//   CHostedControl          a native control in a view, kept where the view is. Only in sources that include
//                           <windows.h> first.
//   RootViewOf, ChangeState and others: what takes two or more calls of the interfaces.
//   COpenPort, COpenPixels  the port or the pixels of a drawing, for the length of a block.
//   Guarded, ThrowIfFailed  exceptions inside the client, error codes at the boundary.
//   CopyText, TextOf        texts into and out of the fixed arrays of records.
//   C...Receiver            receivers that collect into a vector.
//   CReleasePtr             an owning pointer that ends an interface by its release operation.
//   C...Factory             factories that make a behaviour of a given type.
#pragma once

#include "Defaults/Application.h"
#include "Defaults/Clipboard.h"
#include "Defaults/Common.h"
#include "Defaults/DebugOutput.h"
#include "Defaults/Dialogs.h"
#include "Defaults/Drawing.h"
#include "Defaults/Factories.h"
#include "Defaults/Files.h"
#include "Defaults/HostedControl.h"
#include "Defaults/Input.h"
#include "Defaults/Placement.h"
#include "Defaults/Timers.h"
#include "Defaults/Views.h"
#include "Defaults/Windows.h"
#include "Morvane.h"
