// How the library returns texts of unknown length.
#pragma once

#include "MorvaneTypes.h"

namespace NSMorvane {

// Implemented by the client.
class ITextReceiver {
 public:
  // `text` is zero-terminated and valid only during the call. The code that this returns becomes the result
  // of the operation that was given the receiver.
  virtual TError ITextReceiver_ReceiveText(const TChar* text) = 0;

 protected:
  virtual ~ITextReceiver() = default;
};

}  // namespace NSMorvane
