#include "export/media_extraction.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "core/file_io.h"
#include "core/time_stamp.h"

namespace orchidlamp {
namespace {

constexpr std::array<std::uint8_t, 16> kPngStart = {0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A,
                                                    0x00, 0x00, 0x00, 0x0D, 0x49, 0x48, 0x44, 0x52};
constexpr std::array<std::uint8_t, 4> kPngEnd = {0x49, 0x45, 0x4E, 0x44};
// The IEND type and its CRC: the saved image runs through IEND offset + 7.
constexpr std::size_t kPngEndTail = 7;
constexpr std::array<std::uint8_t, 11> kJpgStart = {0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x10,
                                                    0x4A, 0x46, 0x49, 0x46, 0x00};
constexpr std::array<std::uint8_t, 2> kJpgEnd = {0xFF, 0xD9};

// Finds a marker by its rarest byte: memchr runs at memory speed, about ten
// times glibc's memmem over a backup, and each hit is checked whole. Where that
// byte turns out common (a false hit every 64 bytes or less), memmem takes
// over, so no input makes the scan slower than memmem by more than a constant.
class Finder {
 public:
  explicit Finder(ByteView pattern) : pattern_(pattern) {
    // Zero bytes and text are what a backup is mostly made of.
    auto commonness = [](std::uint8_t b) { return b == 0x00 ? 3 : (b >= 0x20 && b < 0x7F) ? 2 : b == 0xFF ? 1 : 0; };
    for (std::size_t k = 1; k < pattern_.size(); ++k)
      if (commonness(pattern_[k]) < commonness(pattern_[anchor_])) anchor_ = k;
  }

  // The first occurrence at or after `from`, or nullopt.
  std::optional<std::size_t> From(ByteView haystack, std::size_t from) const {
    const std::size_t size = haystack.size(), length = pattern_.size();
    if (length == 0 || from >= size) return std::nullopt;
    std::size_t misses = 0;
    // The first anchor byte at or after at + anchor_ starts the first candidate:
    // no occurrence starts before it.
    for (std::size_t at = from; at + anchor_ < size;) {
      const void* hit = std::memchr(haystack.data() + at + anchor_, pattern_[anchor_], size - at - anchor_);
      if (!hit) return std::nullopt;
      const std::size_t start = static_cast<std::size_t>(static_cast<const std::uint8_t*>(hit) - haystack.data()) - anchor_;
      if (length <= size - start && std::memcmp(haystack.data() + start, pattern_.data(), length) == 0) return start;
      at = start + 1;
      if (++misses > 16 && (at - from) / misses < 64) return Memmem(haystack, at);
    }
    return std::nullopt;
  }

 private:
  std::optional<std::size_t> Memmem(ByteView haystack, std::size_t from) const {
    if (from >= haystack.size()) return std::nullopt;
    const void* hit = ::memmem(haystack.data() + from, haystack.size() - from, pattern_.data(), pattern_.size());
    if (!hit) return std::nullopt;
    return static_cast<std::size_t>(static_cast<const std::uint8_t*>(hit) - haystack.data());
  }

  ByteView pattern_;
  std::size_t anchor_ = 0;
};

std::vector<std::size_t> FindAllWith(const Finder& finder, ByteView haystack) {
  std::vector<std::size_t> hits;
  for (auto at = finder.From(haystack, 0); at; at = finder.From(haystack, *at + 1)) hits.push_back(*at);
  return hits;
}

Message SuccessMessage(std::size_t count, std::string_view kindWord) {
  return Message{"Successfully saved " + std::to_string(count) + " " + std::string(kindWord) +
                     " images in the media folder.",
                 "Extracting Media", MessageIcon::None};
}

// Saves the positional pairs; the i-th end hit + `endTail` is the last byte saved.
MediaExtraction SavePairs(const Workspace& ws, const std::vector<std::size_t>& starts,
                          const std::vector<std::size_t>& ends, std::size_t endTail, std::string_view kindWord,
                          std::string_view endName, std::string_view extension, Progress* progress) {
  MediaExtraction run;
  const ByteView bytes = ws.file().View();
  Report(progress, 0, starts.size());
  for (std::size_t i = 0; i < starts.size(); ++i) {
    const std::size_t s = starts[i];
    if (i >= ends.size()) {
      run.failure = Fail("The " + std::string(kindWord) + " image at offset " + std::to_string(s) + " has no " +
                         std::string(endName) + " after it; " + std::to_string(run.saved.size()) +
                         " images were saved before it.");
      return run;
    }
    const std::size_t e = ends[i] + endTail;
    if (e >= bytes.size()) {
      run.failure = Fail("The " + std::string(kindWord) + " image at offset " + std::to_string(s) +
                         " runs past the end of the file; " + std::to_string(run.saved.size()) +
                         " images were saved before it.");
      return run;
    }
    const ByteView image = e < s ? ByteView{} : bytes.subspan(s, e - s + 1);
    Result<std::string> path = SaveMediaFile(ws, image, i, extension);
    if (!path) {
      run.failure = path.failure();
      return run;
    }
    run.saved.push_back(std::move(path.value()));
    Report(progress, i + 1, starts.size());
  }
  if (!run.saved.empty()) run.success = SuccessMessage(run.saved.size(), kindWord);
  return run;
}

}  // namespace

std::vector<std::size_t> FindAll(ByteView haystack, ByteView pattern) {
  return FindAllWith(Finder(pattern), haystack);
}

Result<std::string> SaveMediaFile(const Workspace& ws, ByteView image, std::size_t number, std::string_view extension) {
  const std::string path =
      ws.ProgramFolder() + "media/" + DdHhNnSs(ws.clock()()) + "_" + std::to_string(number) + std::string(extension);
  const Status written = WriteInPlace(path, image);
  if (!written) return written.failure();
  return path;
}

MediaExtraction ExtractPngImages(const Workspace& ws, Progress* progress) {
  const ByteView bytes = ws.file().View();
  const std::vector<std::size_t> starts = FindAll(bytes, kPngStart);
  const std::vector<std::size_t> ends = FindAll(bytes, kPngEnd);
  return SavePairs(ws, starts, ends, kPngEndTail, "PNG", "IEND chunk", ".PNG", progress);
}

MediaExtraction ExtractJpgImages(const Workspace& ws, Progress* progress) {
  const ByteView bytes = ws.file().View();
  const Finder startFinder(kJpgStart), endFinder(kJpgEnd);
  std::vector<std::size_t> starts, ends;
  // Each start looks for its end right after itself; a start with no end after
  // it adds nothing to the end list.
  for (auto at = startFinder.From(bytes, 0); at; at = startFinder.From(bytes, *at + 1)) {
    starts.push_back(*at);
    if (const auto end = endFinder.From(bytes, *at + 1)) ends.push_back(*end);
  }
  return SavePairs(ws, starts, ends, 0, "JPG", "end marker (FF D9)", ".JPG", progress);
}

}  // namespace orchidlamp
