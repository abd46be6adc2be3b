#include "convert/zip_archive.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <thread>

#include "core/bytes.h"
#include "core/paths.h"

namespace orchidlamp {
namespace {

struct ArchiveCloser {
  void operator()(zip_t* za) const { zip_discard(za); }
};
using ArchiveHandle = std::unique_ptr<zip_t, ArchiveCloser>;

struct EntryCloser {
  void operator()(zip_file_t* f) const { zip_fclose(f); }
};
using EntryHandle = std::unique_ptr<zip_file_t, EntryCloser>;

std::string ErrorText(int code) {
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  std::string text = zip_error_strerror(&error);
  zip_error_fini(&error);
  return text;
}

Result<ArchiveHandle> OpenForReading(const std::string& path) {
  int code = 0;
  zip_t* za = zip_open(path.c_str(), ZIP_RDONLY, &code);
  if (!za) return Fail("Cannot open the desktop backup " + path + ": " + ErrorText(code));
  return ArchiveHandle(za);
}

// A name is refused when any reading of it could leave the target folder, even
// though only its last component is used: such an archive is not a backup.
bool IsHostileName(std::string_view name) {
  if (name.empty() || name.front() == '/' || name.front() == '\\') return true;
  if (name.size() >= 2 && name[1] == ':') return true;
  std::size_t start = 0;
  while (start <= name.size()) {
    const std::size_t end = std::min(name.find_first_of("/\\", start), name.size());
    if (name.substr(start, end - start) == "..") return true;
    start = end + 1;
  }
  return false;
}

bool IsFolderEntry(std::string_view name) { return name.back() == '/' || name.back() == '\\'; }

struct PlannedEntry {
  zip_uint64_t index;
  std::string target;
  std::uint64_t size;
};

Status Copy(zip_t* za, const PlannedEntry& entry, const std::string& archivePath) {
  EntryHandle in(zip_fopen_index(za, entry.index, 0));
  if (!in) return Fail("Cannot read " + entry.target + " from " + archivePath + ": " + zip_strerror(za));
  const int fd = ::open(entry.target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (fd < 0) return Fail("Cannot write " + entry.target + ": " + std::strerror(errno));
  auto fail = [&](std::string text) -> Status {
    ::close(fd);
    ::unlink(entry.target.c_str());
    return Fail(std::move(text));
  };
  std::array<char, 1 << 16> buffer;
  std::uint64_t written = 0;
  for (;;) {
    const zip_int64_t n = zip_fread(in.get(), buffer.data(), buffer.size());
    if (n < 0) return fail("Cannot read " + entry.target + " from " + archivePath + ": " + zip_file_strerror(in.get()));
    if (n == 0) break;
    // The stated size was checked against the limits; an entry that inflates
    // past it is lying about its size.
    written += static_cast<std::uint64_t>(n);
    if (written > entry.size) return fail("The entry " + entry.target + " in " + archivePath + " is larger than it states");
    for (zip_int64_t done = 0; done < n;) {
      const ssize_t w = ::write(fd, buffer.data() + done, static_cast<std::size_t>(n - done));
      if (w < 0 && errno == EINTR) continue;
      if (w < 0) return fail("Cannot write " + entry.target + ": " + std::strerror(errno));
      done += w;
    }
  }
  if (::close(fd) != 0) {
    ::unlink(entry.target.c_str());
    return Fail("Cannot write " + entry.target + ": " + std::strerror(errno));
  }
  return Ok();
}

// An entry deflated ahead of zip_close, with what libzip needs to store it as
// is. The stream is kept in blocks, so it grows without copies.
struct Deflated {
  static constexpr std::size_t kBlock = std::size_t{1} << 20;
  std::vector<Bytes> blocks;
  std::uint64_t deflatedSize = 0;
  std::uint64_t size = 0;
  std::uint32_t crc = 0;
  bool ok = false;

  void Add(ByteView bytes) {
    while (!bytes.empty()) {
      if (blocks.empty() || blocks.back().size() == kBlock) blocks.emplace_back().reserve(kBlock);
      const std::size_t take = std::min(bytes.size(), kBlock - blocks.back().size());
      Append(blocks.back(), bytes.first(take));
      bytes = bytes.subspan(take);
      deflatedSize += take;
    }
  }
  // Copies up to n bytes from `at` on; returns how many.
  std::size_t CopyOut(std::uint64_t at, std::uint8_t* out, std::size_t n) const {
    std::size_t given = 0;
    while (given < n && at < deflatedSize) {
      const Bytes& block = blocks[static_cast<std::size_t>(at / kBlock)];
      const std::size_t offset = static_cast<std::size_t>(at % kBlock);
      const std::size_t take = std::min(n - given, block.size() - offset);
      std::memcpy(out + given, block.data() + offset, take);
      given += take;
      at += take;
    }
    return given;
  }
};

// Deflates the whole content with the parameters libzip's own deflate uses at
// level 9 (raw stream, 32 KiB window, memory level 9, default strategy), so the
// stored bytes are the ones libzip would have written.
Deflated Deflate(EntryContent& content) {
  Deflated out;
  z_stream z{};
  if (deflateInit2(&z, 9, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY) != Z_OK) return out;
  try {
    Bytes in(std::size_t{1} << 16), sink(std::size_t{1} << 16);
    uLong crc = crc32(0L, Z_NULL, 0);
    content.Rewind();
    for (bool last = false; !last;) {
      const std::size_t n = content.Read(in.data(), in.size());
      last = n == 0;
      crc = crc32(crc, in.data(), static_cast<uInt>(n));
      out.size += n;
      z.next_in = in.data();
      z.avail_in = static_cast<uInt>(n);
      do {
        z.next_out = sink.data();
        z.avail_out = static_cast<uInt>(sink.size());
        if (deflate(&z, last ? Z_FINISH : Z_NO_FLUSH) == Z_STREAM_ERROR) {
          deflateEnd(&z);
          return out;
        }
        out.Add(ByteView(sink).first(sink.size() - z.avail_out));
      } while (z.avail_out == 0);
    }
    out.crc = static_cast<std::uint32_t>(crc);
    out.ok = true;
  } catch (const std::bad_alloc&) {
    out = Deflated{};
  } catch (const std::length_error&) {
    out = Deflated{};
  }
  deflateEnd(&z);
  return out;
}

// Deflates the contents on up to as many threads as the machine has cores,
// the largest first, so one large entry does not wait behind small ones; the
// deflated entries (about a quarter of the backup) are held until zip_close
// writes them. With one core (or one entry) nothing is done ahead: libzip
// deflates as it writes, and nothing is held.
std::vector<Deflated> DeflateAhead(const std::vector<EntryContent*>& contents) {
  const std::size_t threads =
      std::min<std::size_t>({std::max(1u, std::thread::hardware_concurrency()), contents.size(), 4});
  if (threads < 2) return {};
  // Past 4 GiB the headers depend on how libzip learns the sizes: left to it.
  for (const EntryContent* content : contents)
    if (content->Size() >= 0xFFFFFFFFu) return {};
  std::vector<std::size_t> order(contents.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return contents[a]->Size() > contents[b]->Size(); });
  std::vector<Deflated> deflated(contents.size());
  std::atomic<std::size_t> next{0};
  auto work = [&] {
    for (std::size_t i; (i = next.fetch_add(1)) < order.size();) deflated[order[i]] = Deflate(*contents[order[i]]);
  };
  std::vector<std::thread> helpers;
  try {
    for (std::size_t t = 1; t < threads; ++t) helpers.emplace_back(work);
  } catch (const std::system_error&) {
    // Fewer threads than asked for: the ones running share the work.
  }
  work();
  for (std::thread& helper : helpers) helper.join();
  for (const Deflated& d : deflated)
    if (!d.ok) return {};
  return deflated;
}

// Serves an EntryContent to libzip the way its own file source serves a file:
// the size and time in the stat, the host system and permissions as file
// attributes, so the entry's headers come out as they would for the file. An
// entry deflated ahead is served deflated, with its size, CRC and the flags
// libzip's deflate at level 9 sets, and libzip stores it unchanged.
struct ContentSource {
  ContentSource(EntryContent* c, const Deflated* d, std::time_t t, std::uint32_t m)
      : content(c), deflated(d), mtime(t), mode(m) {
    zip_error_init(&error);
  }
  ~ContentSource() { zip_error_fini(&error); }
  ContentSource(const ContentSource&) = delete;
  ContentSource& operator=(const ContentSource&) = delete;

  EntryContent* content;
  const Deflated* deflated;
  std::time_t mtime;
  std::uint32_t mode;
  std::uint64_t at = 0;
  zip_error_t error;
};

zip_int64_t ServeContent(void* userdata, void* data, zip_uint64_t length, zip_source_cmd_t command) {
  auto* source = static_cast<ContentSource*>(userdata);
  switch (command) {
    case ZIP_SOURCE_OPEN:
      if (source->deflated) source->at = 0;
      else source->content->Rewind();
      return 0;
    case ZIP_SOURCE_READ: {
      const auto n = static_cast<std::size_t>(std::min<zip_uint64_t>(length, ZIP_INT64_MAX));
      if (!source->deflated) return static_cast<zip_int64_t>(source->content->Read(static_cast<std::uint8_t*>(data), n));
      const std::size_t given = source->deflated->CopyOut(source->at, static_cast<std::uint8_t*>(data), n);
      source->at += given;
      return static_cast<zip_int64_t>(given);
    }
    case ZIP_SOURCE_CLOSE:
      return 0;
    case ZIP_SOURCE_STAT: {
      zip_stat_t* st = ZIP_SOURCE_GET_ARGS(zip_stat_t, data, length, &source->error);
      if (!st) return -1;
      zip_stat_init(st);
      st->valid = ZIP_STAT_SIZE | ZIP_STAT_MTIME;
      st->size = source->content->Size();
      st->mtime = source->mtime;
      if (const Deflated* d = source->deflated) {
        st->valid |= ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_CRC;
        st->size = d->size;
        st->comp_size = d->deflatedSize;
        st->comp_method = ZIP_CM_DEFLATE;
        st->crc = d->crc;
      }
      return sizeof(*st);
    }
    case ZIP_SOURCE_GET_FILE_ATTRIBUTES: {
      zip_file_attributes_t* attributes = ZIP_SOURCE_GET_ARGS(zip_file_attributes_t, data, length, &source->error);
      if (!attributes) return -1;
      zip_file_attributes_init(attributes);
      attributes->valid = ZIP_FILE_ATTRIBUTES_HOST_SYSTEM | ZIP_FILE_ATTRIBUTES_EXTERNAL_FILE_ATTRIBUTES;
      attributes->host_system = ZIP_OPSYS_UNIX;
      attributes->external_file_attributes = source->mode << 16;
      if (source->deflated) {
        // Deflate needs version 2.0; bits 1-2 = 01 say "maximum compression".
        attributes->valid |= ZIP_FILE_ATTRIBUTES_VERSION_NEEDED | ZIP_FILE_ATTRIBUTES_GENERAL_PURPOSE_BIT_FLAGS;
        attributes->version_needed = 20;
        attributes->general_purpose_bit_flags = 0x0002;
        attributes->general_purpose_bit_mask = 0x0006;
      }
      return sizeof(*attributes);
    }
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&source->error, data, length);
    case ZIP_SOURCE_FREE:
      return 0;
    case ZIP_SOURCE_SUPPORTS:
      return ZIP_SOURCE_SUPPORTS_READABLE | ZIP_SOURCE_MAKE_COMMAND_BITMASK(ZIP_SOURCE_GET_FILE_ATTRIBUTES) |
             ZIP_SOURCE_MAKE_COMMAND_BITMASK(ZIP_SOURCE_SUPPORTS);
    default:
      zip_error_set(&source->error, ZIP_ER_OPNOTSUPP, 0);
      return -1;
  }
}

}  // namespace

Status ExtractArchive(const std::string& archivePath, const std::string& folder, const ExtractLimits& limits) {
  auto archive = OpenForReading(archivePath);
  if (!archive) return archive.failure();
  zip_t* za = archive.value().get();

  zip_stat_t entryStat;
  std::uint64_t archiveSize = 0;
  {
    struct stat st {};
    if (::stat(archivePath.c_str(), &st) == 0) archiveSize = static_cast<std::uint64_t>(st.st_size);
  }
  const std::uint64_t byRatio = archiveSize > UINT64_MAX / limits.ratio ? UINT64_MAX : archiveSize * limits.ratio;
  const std::uint64_t totalLimit = std::max(byRatio, limits.totalFloor);
  const std::uint64_t entryLimit = std::max(byRatio, limits.entryFloor);

  const zip_int64_t count = zip_get_num_entries(za, 0);
  if (count < 0) return Fail("Cannot read the desktop backup " + archivePath + ": " + zip_strerror(za));
  if (static_cast<std::uint64_t>(count) > limits.maxEntries)
    return Fail("The desktop backup " + archivePath + " holds too many entries (" + std::to_string(count) + ")");

  std::vector<PlannedEntry> plan;
  std::set<std::string> names;
  std::uint64_t total = 0;
  for (zip_uint64_t i = 0; i < static_cast<zip_uint64_t>(count); ++i) {
    zip_stat_init(&entryStat);
    if (zip_stat_index(za, i, 0, &entryStat) != 0 || !(entryStat.valid & ZIP_STAT_NAME) ||
        !(entryStat.valid & ZIP_STAT_SIZE))
      return Fail("Cannot read the desktop backup " + archivePath + ": " + zip_strerror(za));
    const std::string name = entryStat.name;
    if (IsHostileName(name)) return Fail("The desktop backup " + archivePath + " holds an unsafe entry name: " + name);
    if (IsFolderEntry(name)) continue;
    const std::string base = FileNameOf(name);
    if (base.empty() || base == "." || base == "..")
      return Fail("The desktop backup " + archivePath + " holds an unsafe entry name: " + name);
    if (!names.insert(base).second)
      return Fail("The desktop backup " + archivePath + " holds two entries named " + base);
    if ((entryStat.valid & ZIP_STAT_ENCRYPTION_METHOD) && entryStat.encryption_method != ZIP_EM_NONE)
      return Fail("The desktop backup " + archivePath + " is encrypted (" + name + ")");
    const std::uint64_t size = entryStat.size;
    if (size > entryLimit || total + size > totalLimit || total + size < total)
      return Fail("The desktop backup " + archivePath + " unpacks to more than it can hold (" + name + ")");
    total += size;
    plan.push_back({i, JoinPath(folder, base), size});
  }

  for (const PlannedEntry& entry : plan) {
    Status copied = Copy(za, entry, archivePath);
    if (!copied) return copied;
  }
  return Ok();
}

Status CreateArchive(const std::string& archivePath, const std::vector<ArchiveEntry>& entries) {
  int code = 0;
  zip_t* za = zip_open(archivePath.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code);
  if (!za) return Fail("Cannot create " + archivePath + ": " + ErrorText(code));
  // libzip reads the sources in zip_close and frees them with the archive, so
  // what they serve goes after the archive handle.
  std::vector<Deflated> deflated;
  std::vector<std::unique_ptr<ContentSource>> contents;
  ArchiveHandle archive(za);
  {
    std::vector<EntryContent*> ahead;
    for (const ArchiveEntry& entry : entries)
      if (entry.content) ahead.push_back(entry.content);
    deflated = DeflateAhead(ahead);
  }
  for (const ArchiveEntry& entry : entries) {
    zip_source_t* source = nullptr;
    if (entry.content) {
      struct stat st {};
      if (::stat(entry.file.c_str(), &st) != 0)
        return Fail("Cannot add " + entry.name + " to " + archivePath + ": " + std::strerror(errno));
      const Deflated* ahead = deflated.empty() ? nullptr : &deflated[contents.size()];
      contents.push_back(std::make_unique<ContentSource>(entry.content, ahead, st.st_mtime,
                                                         static_cast<std::uint32_t>(st.st_mode)));
      source = zip_source_function(za, ServeContent, contents.back().get());
    } else {
      source = zip_source_file(za, entry.file.c_str(), 0, -1);
    }
    if (!source) return Fail("Cannot add " + entry.file + " to " + archivePath + ": " + zip_strerror(za));
    const zip_int64_t index = zip_file_add(za, entry.name.c_str(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
      zip_source_free(source);
      return Fail("Cannot add " + entry.name + " to " + archivePath + ": " + zip_strerror(za));
    }
    if (zip_set_file_compression(za, static_cast<zip_uint64_t>(index), ZIP_CM_DEFLATE, 9) != 0)
      return Fail("Cannot compress " + entry.name + " in " + archivePath + ": " + zip_strerror(za));
  }
  if (zip_close(za) != 0) {
    const std::string reason = zip_strerror(za);
    return Fail("Cannot write " + archivePath + ": " + reason);
  }
  archive.release();
  return Ok();
}

Result<std::vector<std::string>> ListArchive(const std::string& archivePath) {
  auto archive = OpenForReading(archivePath);
  if (!archive) return archive.failure();
  zip_t* za = archive.value().get();
  std::vector<std::string> names;
  const zip_int64_t count = zip_get_num_entries(za, 0);
  for (zip_int64_t i = 0; i < count; ++i) {
    const char* name = zip_get_name(za, static_cast<zip_uint64_t>(i), ZIP_FL_ENC_RAW);
    names.emplace_back(name ? name : "");
  }
  return names;
}

}  // namespace orchidlamp
