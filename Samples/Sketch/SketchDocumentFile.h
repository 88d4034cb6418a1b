// The files of Sketch: UTF-8 text with one statement a line.
//
//   # A comment; blank lines may stand anywhere.
//   canvas 800 600
//   background #FFFFFF
//   line 10 10 200 40                          color=#2F6FDE width=3
//   rectangle 10 60 200 120                    color=#202428 width=1 fill=#F2C14E
//   ellipse 10 140 200 200                     width=0 fill=#2F6FDE
//   polyline 10 220 60 260 110 220 160 260     width=4
//   text 10 300 "Letters \"in quotes\""        size=24
//   picture 10 340 14 344 #FF000000FF00 #0000FFFFFFFF  width=0
//
// `canvas` and `background` stand in front of all shapes, each once at most. The numbers of a line and of a
// polyline are points, those of a rectangle, an ellipse and a picture left, top, right, bottom, and those of
// a text the top left corner. A picture has a word for each row of its pixels, from the top, with six digits
// for each pixel. Attributes may be left out. In a text, \" and \\ stand for a quote and a backslash, \n for
// the end of a line.
#pragma once

#include <string>
#include <string_view>

#include "SketchDocument.h"

namespace NSSketch {

// Reads the bytes of a file. On failure false, with `outMessage` like "line 7: rectangle needs four numbers",
// and nothing in `outDocument`.
bool ReadSketchDocument(std::string_view bytes, CSketchDocument& outDocument, std::string& outMessage);

// The bytes of a file with this document. What was read and has not been changed comes out as it was, to the
// byte, with its comments.
std::string WriteSketchDocument(const CSketchDocument& document);

// "line", "rectangle", "ellipse", "polyline", "text", "picture".
std::string_view NameOfKind(TShapeKind kind);

}  // namespace NSSketch
