#pragma once

// Pictures embedded anywhere in the open backup's bytes, found by signature and
// saved one file each under the program folder's "media" folder. The record
// structure plays no part.
//
// Starts and ends are paired by their place in their lists, not by nesting: the
// i-th start takes the i-th end of the whole file. A stray end before an image
// therefore shifts every later pair, and a pair whose end lies before its start
// saves an empty file. Both are deliberate: users' media folders look so.
//
// PNG: start = PNG signature + IHDR length and type; end = "IEND"; the saved
// bytes run through the IEND chunk's CRC (IEND offset + 7).
// JPG: start = SOI + JFIF APP0 header; end = the first FF D9 after the start
// (so an embedded thumbnail's end ends the image); the saved bytes stop before
// the final D9.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/bytes.h"
#include "core/result.h"
#include "core/progress.h"
#include "core/workspace.h"

namespace orchidlamp {

struct MediaExtraction {
  std::vector<std::string> saved;  // paths in order; what the window lists
  // "Extracting Media": "Successfully saved N PNG images in the media folder."
  // Only when the run completed and saved at least one image.
  std::optional<Message> success;
  // The run stopped (an image without an end, a file that could not be
  // written); the images saved before it stay on disk and in `saved`.
  std::optional<Failure> failure;
};

MediaExtraction ExtractPngImages(const Workspace& ws, Progress* progress = nullptr);
MediaExtraction ExtractJpgImages(const Workspace& ws, Progress* progress = nullptr);

// Program folder + "media/" + ddhhnnss of now + "_" + number + extension
// (".PNG" / ".JPG"), written from offset 0 without truncating: an existing longer
// file keeps its tail. The media folder is not created here.
Result<std::string> SaveMediaFile(const Workspace& ws, ByteView image, std::size_t number,
                                  std::string_view extension);

// Offsets of every occurrence of `pattern`, each search starting one byte after
// the previous hit.
std::vector<std::size_t> FindAll(ByteView haystack, ByteView pattern);

}  // namespace orchidlamp
