#pragma once
// The boundary between the system's single-byte text and Qt's strings.
// The system's text is Windows-1252; file names are the platform's own bytes.

#include <QString>
#include <string>
#include <string_view>

namespace zv::ui {

/// Windows-1252 bytes to a QString. The five bytes that Windows-1252 leaves undefined (0x81, 0x8D,
/// 0x8F, 0x90, 0x9D) map to the control characters of the same number, so every byte survives a
/// round trip.
QString fromSystemText(std::string_view text);
/// A QString to Windows-1252 bytes; a character that Windows-1252 cannot hold becomes '?'.
std::string toSystemText(const QString& text);

/// A file name as the engine holds it (the platform's bytes) to a QString, and back.
QString fromNativePath(std::string_view path);
std::string toNativePath(const QString& path);

}  // namespace zv::ui
