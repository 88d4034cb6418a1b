// The clipboard: bytes in formats that have names. What they mean is the client's affair.
//
// It is open no longer than one of these calls takes. Main thread only.
#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "Interface/MorvaneClipboard.h"

namespace NSMorvane {

// `owner` is the window that the clipboard is opened for.

bool IsFormatOnClipboard(const TClipboardFormat& format, HWND owner);
// Throws XProgrammingError if the format is not there.
std::unique_ptr<IData> GetClipboardData(const TClipboardFormat& format, HWND owner);
// Empties the clipboard first. If a format fails, those before it are there, and the getter stays the
// caller's; otherwise it is deleted.
void ReplaceClipboardContents(const std::vector<TClipboardFormat>& formats, IClipboardDataGetter* getter,
                              HWND owner);

}  // namespace NSMorvane
