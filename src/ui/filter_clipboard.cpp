#include "ui/filter_clipboard.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QRegularExpression>

#include "ui/text_codec.h"

namespace zv::ui {

QString mimeTypeForClipFormat(std::string_view name) {
  QString text = fromSystemText(name).trimmed();
  if (text.contains('/')) return text;
  return "application/x-zarvelin-" + text.toLower().replace(' ', '-');
}

std::unique_ptr<QMimeData> mimeDataFor(const ClipboardContents& contents) {
  auto data = std::make_unique<QMimeData>();
  for (const ClipboardEntry& entry : contents.entries) {
    const QByteArray bytes(entry.bytes.data(), static_cast<qsizetype>(entry.bytes.size()));
    if (entry.format == kPlainTextFormat) {
      data->setText(fromSystemText(entry.bytes));
    } else if (entry.format == kRichTextFormat) {
      data->setData("text/rtf", bytes);
      data->setData("application/rtf", bytes);
    } else if (entry.format == kHtmlFormat) {
      QString page = fromSystemText(contents.html);
      page.replace(QRegularExpression("charset\\s*=\\s*\"?windows-1252\"?",
                                      QRegularExpression::CaseInsensitiveOption),
                   "charset=\"utf-8\"");
      data->setHtml(page);
    } else {
      data->setData(mimeTypeForClipFormat(entry.format), bytes);
    }
  }
  return data;
}

bool QtClipboardSink::open() {
  return QGuiApplication::clipboard() != nullptr;
}

void QtClipboardSink::put(const ClipboardContents& contents) {
  QGuiApplication::clipboard()->setMimeData(mimeDataFor(contents).release());
}

std::optional<std::string> convertPictureWithQt(std::string_view bytes, std::string_view format,
                                                std::string& error) {
  QImage image;
  if (!image.loadFromData(reinterpret_cast<const uchar*>(bytes.data()),
                          static_cast<int>(bytes.size()))) {
    error = "The picture can't be read.";
    return std::nullopt;
  }
  const QByteArray written = format == "dib"
                                 ? QByteArray("bmp")
                                 : QByteArray(format.data(), static_cast<qsizetype>(format.size()));
  if (!QImageWriter::supportedImageFormats().contains(written)) {
    error = "Pictures can't be written as " + std::string(format) + " here.";
    return std::nullopt;
  }
  QByteArray out;
  QBuffer buffer(&out);
  buffer.open(QIODevice::WriteOnly);
  if (!image.save(&buffer, written.constData())) {
    error = "The picture can't be written as " + std::string(format) + ".";
    return std::nullopt;
  }
  std::string result(out.constData(), static_cast<std::size_t>(out.size()));
  if (format == "dib" && result.size() > 14) result.erase(0, 14);
  return result;
}

}  // namespace zv::ui
