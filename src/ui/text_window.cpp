#include "ui/text_window.h"

#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>

#include "ui/text_codec.h"

namespace zv::ui {

std::optional<QString> readTextFile(const std::string& path) {
  QFile file(fromNativePath(path));
  if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) return std::nullopt;
  QByteArray bytes = file.readAll();
  if (file.error() != QFileDevice::NoError) return std::nullopt;
  QString text = fromSystemText(std::string_view(bytes.constData(), bytes.size()));
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  text.replace(QChar('\r'), QChar('\n'));
  return text;
}

TextWindow::TextWindow(std::string path, const QString& contents, QWidget* parent)
    : QPlainTextEdit(parent), path_(std::move(path)) {
  setReadOnly(true);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setPlainText(contents);
  QString shown = fromNativePath(path_);
  setWindowTitle(QFileInfo(shown).fileName());
  setWindowFilePath(shown);
}

}  // namespace zv::ui
