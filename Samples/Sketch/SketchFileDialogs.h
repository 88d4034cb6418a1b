// The file dialogs of the library, with the file types of Sketch. Each is shown by a function, which returns;
// what the user decides comes later, through one of the callbacks.
#pragma once

#include <functional>
#include <string>

#include "SketchDialogs.h"

namespace NSSketch {

using TOnPath = std::function<void(const std::u16string& path)>;

void ShowOpenDialog(const TDialogPlace& place, TOnPath onChosen);

// What is written: the document, or a picture of its page.
enum class TSketchFileType { kDocument, kPNG, kBMP };

struct TSaveQuestion {
  std::u16string fPath;  // what the user is offered; a name, or a whole path
  bool fOffersPictures;
  std::function<void(const std::u16string& path, TSketchFileType type)> fOnChosen;
  std::function<void()> fOnCancel;
};

// The user has been asked before a file is overwritten.
void ShowSaveDialog(const TDialogPlace& place, TSaveQuestion question);

}  // namespace NSSketch
