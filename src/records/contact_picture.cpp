#include "records/contact_picture.h"

#include "core/file_io.h"

namespace orchidlamp {

ContactPictureSink ContactPictureWriter(std::string programFolder) {
  return [folder = std::move(programFolder)](ByteView jpeg, std::int64_t number) -> std::string {
    const std::string path = folder + "PIC" + std::to_string(number) + ".jpg";
    return WriteInPlace(path, jpeg) ? path : std::string();
  };
}

}  // namespace orchidlamp
