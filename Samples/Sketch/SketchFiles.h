// Files of documents, told as "file://" URLs.
#pragma once

#include <string>

#include "SketchDocument.h"

namespace NSSketch {

// The path of a URL from the library. A command line may have left quotes around the path.
std::u16string PathFromURL(const char* url);

// The last part of a path.
std::u16string NameOfPath(const std::u16string& path);

// Whether two paths name the same file.
bool IsSamePath(const std::u16string& a, const std::u16string& b);

// On failure false, with a message for the user, and nothing in `outDocument`.
bool LoadSketch(const std::u16string& path, CSketchDocument& outDocument, std::u16string& outMessage);

}  // namespace NSSketch
