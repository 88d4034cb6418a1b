// How texts of unknown length come out of the library.
#pragma once

#include "MorvaneTypes.h"

namespace NSMorvane {

// Implemented by the client.
class ITextReceiver {
 public:
  // `text` is zero-terminated and lives only for the call. The code returned here becomes the result of the
  // operation that the receiver was given to.
  virtual TError ITextReceiver_ReceiveText(const TChar* text) = 0;

 protected:
  virtual ~ITextReceiver() = default;
};

}  // namespace NSMorvane
