#pragma once
// The pictures that @writepicture puts out: where a field's picture comes from and how it gets
// into the format asked for.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/fileinfo.h"
#include "filter/run/filter_context.h"

namespace zv {

enum class PictureSource { Found, NotAPicture, Empty, NotAvailable };

/// The picture bytes of a field: a `picture` field's stored block, or for a field that chooses
/// from a list of pictures (`dispbm`) the file named by its value (an index from 1 into its
/// names, clamped to them) in the data directory.
PictureSource pictureOfField(FileInfo& sheet, const DlgItem& field,
                             const std::filesystem::path& dataDir, std::string& bytes);

/// True for "jpg", "jpeg", "gif", "png", "dib" and "bmp".
bool isPictureFormat(std::string_view format);

/// The format that picture bytes are in, by their first bytes: "jpg", "gif", "png", "bmp" or ""
/// for an unknown one.
std::string pictureFormatOf(std::string_view bytes);

/// The picture in `format`: its own bytes when it is in that format already (a "dib" is a
/// "bmp" without its 14-byte file header), else the converter's result. nullopt with the reason
/// in `error` otherwise.
std::optional<std::string> renderPicture(std::string_view bytes, std::string_view format,
                                         const PictureConverter& converter, std::string& error);

}  // namespace zv
