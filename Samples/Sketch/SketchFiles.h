// Files of documents.
#pragma once

#include <string>

#include "SketchDocument.h"

namespace NSSketch {

// The last part of a path.
std::u16string NameOfPath(const std::u16string& path);

// A path that starts in the current folder, from its drive on; separators are those of the system.
std::u16string FullPath(const std::u16string& path);

// Whether two paths name the same file.
bool IsSamePath(const std::u16string& a, const std::u16string& b);

// On failure false, with a message for the user, and nothing in `outDocument`.
bool LoadSketch(const std::u16string& path, CSketchDocument& outDocument, std::u16string& outMessage);

// Writes the bytes to a file beside the one at `path`, and moves it over that one when it is complete: a
// failure leaves the old file as it was. On failure false, with a message for the user.
bool SaveFile(const std::u16string& path, const std::string& bytes, std::u16string& outMessage);

}  // namespace NSSketch
