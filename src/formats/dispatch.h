#pragma once
// The dispatcher's decision: which kind of document a path opens as. Acting on it (creating the
// window, reading the document) belongs to the program that asked.

#include <set>
#include <string>

#include "core/text.h"
#include "formats/file_recognition.h"

namespace zv {

enum class OpenAction {
  Nothing,          ///< the recogniser has shown its message already
  ShowMessage,      ///< show `title` / `text` and open nothing
  ConvertExternal,  ///< an external converter claims the extension
  OpenSheet,        ///< a character sheet or template
  OpenPrintTemplate,
  OpenMacroDataSheet,
  OpenDataSheet,
  OpenGroup,
  OpenAsText,    ///< in the Editor program if one is set, else an internal text window
  HandToSystem,  ///< ask the system for the program that handles the type; as text if none
};

struct OpenRequest {
  std::string path;
  bool forceText = false;
  /// Extensions (lower case, without the dot) that external converter records claim.
  std::set<std::string> convertedExtensions;
  /// The external editor to use for text (AppSettings::effectiveEditor()); empty for none.
  std::string editor;
  RecognitionProbes probes;
};

struct OpenDecision {
  OpenAction action = OpenAction::Nothing;
  int code = kFileUnknown;
  std::string path;           ///< the path with its separators made native
  std::string gameSystem;     ///< as the recogniser found it
  std::string title;          ///< for ShowMessage
  std::string text;           ///< for ShowMessage
  std::string editorCommand;  ///< for OpenAsText with an Editor: "%s %s" of editor and path
};

/// Decides what opening a path does.
OpenDecision decideOpen(const OpenRequest& request);

/// True for the extensions that open as text when the recogniser doesn't know the content.
bool opensAsTextWhenUnknown(const std::string& path);

}  // namespace zv
