#include "convert/open_backup.h"

#include <filesystem>
#include <fstream>
#include <new>
#include <stdexcept>

#include "convert/desktop_backup_reader.h"

namespace orchidlamp {

BackupKind BackupKindOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  char head[4] = {};
  in.read(head, 4);
  const bool zip = in.gcount() == 4 && head[0] == 'P' && head[1] == 'K' && head[2] == 3 && head[3] == 4;
  return zip ? BackupKind::Bbb : BackupKind::Ipd;
}

namespace {

Status OpenFound(Workspace& ws, const std::string& path, BackupKind kind, const StoredSettings& settings,
                 Progress* progress, TreeScope scope) {
  if (kind == BackupKind::Ipd) return ws.Load(path, settings, progress, scope);
  auto ipd = ConvertDesktopBackup(path, ws.clock(), SystemTempFolder(), progress);
  if (ipd) {
    Status loaded = ws.Load(ipd.value(), settings, progress, scope);
    // Nothing of it could be read, so nothing will be saved from its folder.
    if (!loaded && !ws.menus().saveAs) RemoveFolderTree(std::filesystem::path(ipd.value()).parent_path().string());
    return loaded;
  }
  // What cannot be read as a desktop backup is loaded as the IPD it may be (an
  // IPD named ".bbb" opens); when that fails too, the desktop-backup reason
  // says why the file was not read as one.
  Status loaded = ws.Load(path, settings, progress, scope);
  if (loaded) return loaded;
  Failure failure = loaded.failure();
  failure.message.detail = ipd.failure().message.text;
  return failure;
}

}  // namespace

Status OpenBackup(Workspace& ws, const std::string& path, BackupKind kind, const StoredSettings& settings,
                  Progress* progress, TreeScope scope) {
  // A backup larger than the memory the process may have is a message, not an
  // abort; every size taken from a file is checked against the file first, so
  // only real sizes get this far.
  try {
    return OpenFound(ws, path, kind, settings, progress, scope);
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  return Fail("Not enough memory to load " + path);
}

}  // namespace orchidlamp
