#pragma once
// Filter output on the desktop's clipboard and pictures converted for @writepicture: the
// clipboard formats of filters mapped to MIME types, and Qt's image readers and writers.

#include <QMimeData>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "filter/rich/clipboard.h"

namespace zv::ui {

/// The MIME data of clipboard contents: plain text as text/plain (from Windows-1252); "Rich Text
/// Format" as text/rtf and application/rtf, bytes unchanged; "HTML Format" as text/html, the page
/// as the filter made it (this clipboard takes HTML unwrapped), its Windows-1252 charset
/// declaration made UTF-8; any other name as that MIME type when it holds a "/", else as
/// "application/x-zarvelin-" and the name in lower case with blanks as "-".
std::unique_ptr<QMimeData> mimeDataFor(const ClipboardContents& contents);

/// The MIME type a filter's own clipboard format name goes under.
QString mimeTypeForClipFormat(std::string_view name);

/// The application's clipboard.
class QtClipboardSink : public ClipboardSink {
 public:
  bool open() override;
  void put(const ClipboardContents& contents) override;
  void close() override {}
};

/// Converts picture bytes to "jpg", "gif", "png", "dib" or "bmp" with Qt's image formats;
/// nullopt with the reason when Qt can't read the picture or has no writer for the format.
std::optional<std::string> convertPictureWithQt(std::string_view bytes, std::string_view format,
                                                std::string& error);

}  // namespace zv::ui
