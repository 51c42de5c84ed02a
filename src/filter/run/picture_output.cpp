#include "filter/run/picture_output.h"

#include <algorithm>

#include "core/paths.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "filter/file/filter_loader.h"
#include "formats/tokens/keywords.h"

namespace zv {

PictureSource pictureOfField(FileInfo& sheet, const DlgItem& field,
                             const std::filesystem::path& dataDir, std::string& bytes) {
  (void)sheet;
  if (field.kind == kPicture) {
    if (field.pictureData.empty()) return PictureSource::Empty;
    bytes = field.pictureData;
    return PictureSource::Found;
  }
  if (field.kind != kDispbm) return PictureSource::NotAPicture;
  if (field.pictureNames.empty()) return PictureSource::NotAvailable;
  long index = field.symbol != nullptr ? valueToInteger(field.symbol->value) : 1;
  index = std::clamp(index, 1L, static_cast<long>(field.pictureNames.size()));
  const std::filesystem::path file =
      findDataFile(dataDir, field.pictureNames[static_cast<std::size_t>(index - 1)]);
  if (file.empty() || !readWholeFile(file, bytes) || bytes.empty()) {
    return PictureSource::NotAvailable;
  }
  return PictureSource::Found;
}

bool isPictureFormat(std::string_view format) {
  for (std::string_view known : {"jpg", "jpeg", "gif", "png", "dib", "bmp"}) {
    if (format == known) return true;
  }
  return false;
}

std::string pictureFormatOf(std::string_view bytes) {
  if (bytes.size() >= 8 && bytes.substr(0, 8) == "\x89PNG\r\n\x1a\n") return "png";
  if (bytes.size() >= 3 && bytes.substr(0, 3) == "\xFF\xD8\xFF") return "jpg";
  if (bytes.size() >= 6 && (bytes.substr(0, 6) == "GIF87a" || bytes.substr(0, 6) == "GIF89a")) {
    return "gif";
  }
  if (bytes.size() >= 14 && bytes.substr(0, 2) == "BM") return "bmp";
  return {};
}

std::optional<std::string> renderPicture(std::string_view bytes, std::string_view format,
                                         const PictureConverter& converter, std::string& error) {
  const std::string wanted = format == "jpeg" ? "jpg" : std::string(format);
  const std::string stored = pictureFormatOf(bytes);
  if (stored == wanted) return std::string(bytes);
  if (wanted == "dib" && stored == "bmp") return std::string(bytes.substr(14));
  if (converter) return converter(bytes, wanted, error);
  error = stored.empty()
              ? std::string("The picture is in a format this program can't read.")
              : strprintf("The picture is stored as %s and can't be converted to %s here.", stored,
                          wanted);
  return std::nullopt;
}

}  // namespace zv
