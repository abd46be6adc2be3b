#pragma once

// The service-book panel: 22 boxes, hrtnet(0) ... hrtnet(21), filled from a
// service-book record. The service-book editor writes the same boxes back under
// the same codes, so this decoding and that builder are each other's inverse.

#include <array>
#include <optional>
#include <string>

#include "core/bytes.h"
#include "core/workspace.h"

namespace orchidlamp {

// A box whose field is missing or empty is nullopt: the panel leaves such a box
// showing what it showed before.
using ServiceBookBoxes = std::array<std::optional<std::string>, kServiceBookBoxes>;

ServiceBookBoxes DecodeServiceBookPanel(ByteView body);

// Puts the boxes that the decoding set into the panel's texts.
void ApplyServiceBookBoxes(const ServiceBookBoxes& boxes, std::array<std::string, kServiceBookBoxes>& panel);

}  // namespace orchidlamp
