#pragma once
// The internal text window: a file shown read-only as plain text, when no Editor program is set.

#include <QPlainTextEdit>
#include <QString>
#include <optional>
#include <string>

namespace zv::ui {

/// The contents of a file as the text window shows them: Windows-1252 decoded, line ends made
/// "\n". nullopt when the file can't be read.
std::optional<QString> readTextFile(const std::string& path);

class TextWindow : public QPlainTextEdit {
  Q_OBJECT
 public:
  TextWindow(std::string path, const QString& contents, QWidget* parent = nullptr);
  /// The file shown, as the engine names it.
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace zv::ui
