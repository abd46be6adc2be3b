#pragma once

#include <string>

#include "core/bytes.h"
#include "core/image_key.h"
#include "core/kinds.h"

namespace orchidlamp {

// A record node's text and image.
struct RecordLabel {
  std::string text;
  ImageKey image = ImageKey::None;
};

// Gives the tree label of a record of a known kind from its body (handle to last
// byte). The record decoders provide it; the loader only asks.
class RecordLabeller {
 public:
  virtual ~RecordLabeller() = default;
  virtual RecordLabel Label(Kind kind, ByteView body) const = 0;
};

}  // namespace orchidlamp
