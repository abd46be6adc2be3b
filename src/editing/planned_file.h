#pragma once

// The writing tail the split and the merge share. Each first makes a plan: the
// header and name table, and the size of the records, found by walking every
// record and checking its range, so a bad tag fails before anything is
// written. Then the same writer fills either a byte array or, through one small
// buffer, the output file: a written file is never held whole.

#include <optional>
#include <string>
#include <string_view>

#include "core/bytes.h"
#include "core/file_io.h"
#include "core/result.h"

namespace orchidlamp {

struct PlannedFile {
  Bytes head;
  std::size_t recordBytes = 0;
};

// The whole file in memory: `write(out)` appends to a buffer sized once.
template <typename Write>
Bytes BuildPlanned(const PlannedFile& plan, Write&& write) {
  Bytes file;
  file.reserve(plan.head.size() + plan.recordBytes);
  PreferHugePages(file.data(), file.capacity());
  write(file);
  return file;
}

// The command: `makePlan()`, then `write(plan, out)` over `path` from offset 0
// WITHOUT truncating (an existing longer file keeps its tail), and the "File
// saved as" message titled `title`. An empty path is a cancelled dialog: nothing
// is written and there is no message. Nothing is written when planning fails.
// `progress` hears of every buffer written.
template <typename MakePlan, typename Write>
Result<std::optional<Message>> WritePlanned(const std::string& path, std::string_view title, MakePlan&& makePlan,
                                            Write&& write, Progress* progress) {
  if (path.empty()) return std::optional<Message>{};
  return Guarded([&]() -> Result<std::optional<Message>> {
    const auto plan = makePlan();
    BufferedFileWriter out(path, BufferedFileWriter::Mode::InPlace);
    if (out.failure()) return *out.failure();
    out.ReportTo(progress, plan.head.size() + plan.recordBytes);
    write(plan, out);
    if (Status written = out.Finish(); !written) return written.failure();
    return std::optional<Message>{Message{"File saved as " + path, std::string(title), MessageIcon::Information}};
  });
}

}  // namespace orchidlamp
