#include "ui/print/qt_print_device.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPolygon>
#include <cmath>

#include "core/codepage.h"

namespace zv {

namespace {
QString qtext(std::string_view text) {
  return QString::fromStdString(windows1252ToUtf8(text));
}

QRect qrect(const Rect32& r) {
  return QRect(QPoint(r.left, r.top), QPoint(r.right - 1, r.bottom - 1));
}

/// A device-independent bitmap without its file header gets one, so that QImage reads it.
QByteArray pictureBytes(std::string_view bytes) {
  QByteArray data(bytes.data(), static_cast<qsizetype>(bytes.size()));
  if (bytes.size() >= 40 && bytes[0] == 40 && bytes[1] == 0 && bytes[2] == 0 && bytes[3] == 0) {
    QByteArray header(14, '\0');
    quint32 size = static_cast<quint32>(14 + bytes.size());
    header[0] = 'B';
    header[1] = 'M';
    for (int i = 0; i < 4; ++i)
      header[2 + i] = static_cast<char>((size >> (8 * i)) & 0xFF);
    auto u32 = [&](int at) {
      return static_cast<quint32>(static_cast<unsigned char>(bytes[at])) |
             (static_cast<quint32>(static_cast<unsigned char>(bytes[at + 1])) << 8) |
             (static_cast<quint32>(static_cast<unsigned char>(bytes[at + 2])) << 16) |
             (static_cast<quint32>(static_cast<unsigned char>(bytes[at + 3])) << 24);
    };
    quint32 bits = u32(14) & 0xFFFF;
    quint32 used = u32(32);
    quint32 palette = bits <= 8 ? (used ? used : (1u << bits)) : used;
    quint32 offset = 14 + 40 + palette * 4;
    for (int i = 0; i < 4; ++i)
      header[10 + i] = static_cast<char>((offset >> (8 * i)) & 0xFF);
    data.prepend(header);
  }
  return data;
}
}  // namespace

QColor colourOf(std::uint32_t c) {
  return QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF);
}

QtPrintDevice::QtPrintDevice(QPaintDevice& device, QPainter* painter)
    : device_(device), painter_(painter), ppi_{device.logicalDpiX(), device.logicalDpiY()} {}

QFont QtPrintDevice::qfont(const DeviceFont& f) const {
  QFont font(qtext(f.face));
  font.setPixelSize(std::max(1, f.height));
  font.setBold(f.charStyle & kCharBold);
  font.setItalic(f.charStyle & kCharItalic);
  font.setUnderline(f.charStyle & kCharUnderline);
  font.setStrikeOut(f.charStyle & kCharStrikeout);
  switch (f.pitchFamily & 0xF0) {
    case 0x10:
      font.setStyleHint(QFont::Serif);
      break;
    case 0x20:
      font.setStyleHint(QFont::SansSerif);
      break;
    case 0x30:
      font.setStyleHint(QFont::TypeWriter);
      break;
    case 0x40:
      font.setStyleHint(QFont::Cursive);
      break;
    case 0x50:
      font.setStyleHint(QFont::Decorative);
      break;
    default:
      break;
  }
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

int QtPrintDevice::textWidth(const DeviceFont& font, std::string_view text) {
  QFontMetricsF metrics(qfont(font), &device_);
  return static_cast<int>(std::ceil(metrics.horizontalAdvance(qtext(text))));
}

int QtPrintDevice::fontHeight(const DeviceFont& font) {
  QFontMetricsF metrics(qfont(font), &device_);
  return static_cast<int>(std::ceil(metrics.height()));
}

void QtPrintDevice::setPen(std::optional<Pen> pen) {
  if (!painter_) return;
  if (!pen) {
    painter_->setPen(Qt::NoPen);
    return;
  }
  QPen qpen(colourOf(pen->colour));
  qpen.setWidth(pen->width);
  qpen.setCapStyle(Qt::FlatCap);
  qpen.setJoinStyle(Qt::MiterJoin);
  painter_->setPen(qpen);
}

void QtPrintDevice::setBrush(std::optional<std::uint32_t> colour) {
  if (!painter_) return;
  painter_->setBrush(colour ? QBrush(colourOf(*colour)) : QBrush(Qt::NoBrush));
}

void QtPrintDevice::rectangle(const Rect32& r) {
  if (painter_) painter_->drawRect(qrect(r));
}

void QtPrintDevice::roundRect(const Rect32& r, int w, int h) {
  if (painter_) painter_->drawRoundedRect(qrect(r), w / 2.0, h / 2.0, Qt::AbsoluteSize);
}

void QtPrintDevice::ellipse(const Rect32& r) {
  if (painter_) painter_->drawEllipse(qrect(r));
}

void QtPrintDevice::polygon(const std::vector<DevicePoint>& points) {
  if (!painter_) return;
  QPolygon polygon;
  for (const DevicePoint& p : points)
    polygon << QPoint(p.x, p.y);
  painter_->drawPolygon(polygon);
}

void QtPrintDevice::line(DevicePoint a, DevicePoint b) {
  if (painter_) painter_->drawLine(a.x, a.y, b.x, b.y);
}

void QtPrintDevice::fillRect(const Rect32& r, std::uint32_t colour) {
  if (painter_) painter_->fillRect(qrect(r), colourOf(colour));
}

void QtPrintDevice::text(DevicePoint origin, std::string_view text, const DeviceFont& font,
                         std::uint32_t colour, int rotation) {
  if (!painter_) return;
  QFont qf = qfont(font);
  QFontMetricsF metrics(qf, &device_);
  painter_->save();
  painter_->setFont(qf);
  painter_->setPen(colourOf(colour));
  painter_->translate(origin.x, origin.y);
  if (rotation != 0) painter_->rotate(-rotation / 10.0);
  painter_->drawText(QPointF(0, metrics.ascent()), qtext(text));
  painter_->restore();
}

std::optional<std::pair<int, int>> QtPrintDevice::pictureSize(std::string_view bytes) {
  QImage image;
  if (bytes.empty() || !image.loadFromData(pictureBytes(bytes))) return std::nullopt;
  return std::pair{image.width(), image.height()};
}

bool QtPrintDevice::picture(const Rect32& r, std::string_view bytes) {
  QImage image;
  if (bytes.empty() || !image.loadFromData(pictureBytes(bytes))) return false;
  if (painter_) {
    painter_->save();
    painter_->setRenderHint(QPainter::SmoothPixmapTransform);
    painter_->drawImage(qrect(r), image);
    painter_->restore();
  }
  return true;
}

}  // namespace zv
