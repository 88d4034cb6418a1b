// The clipboard: bytes in named formats, whose meaning is up to the client.
//
// It is open only while one of these calls runs. Main thread only.
#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "Interface/MorvaneClipboard.h"

namespace NSMorvane {

// `owner` is the window that the clipboard is opened for. Inside a call to the getter, all three throw
// XIllegalCallSequence.

bool IsFormatOnClipboard(const TClipboardFormat& format, HWND owner);
// Throws XProgrammingError if the format is not there, and XUnsupportedFormat for a bitmap, which is a
// handle.
std::unique_ptr<IData> GetClipboardData(const TClipboardFormat& format, HWND owner);
// Empties the clipboard first. If a format fails, the formats before it stay there, and the getter stays the
// caller's; on success the getter is deleted. For bitmaps it throws XUnsupportedFormat and changes nothing.
void ReplaceClipboardContents(const std::vector<TClipboardFormat>& formats, IClipboardDataGetter* getter,
                              HWND owner);

}  // namespace NSMorvane
