#include "formats/dispatch.h"

#include <algorithm>
#include <filesystem>

#include "core/strfmt.h"

namespace zv {

namespace {

constexpr const char* kTextExtensions[] = {"cds",  "chr", "cnv",   "cst", "flt",    "mds", "mdt",
                                           "pref", "prt", "rules", "scp", "script", "sct"};

std::string extensionWithoutDot(const std::string& path) {
  std::string ext = std::filesystem::path(path).extension().string();
  if (!ext.empty() && ext.front() == '.') ext.erase(0, 1);
  return toLower(ext);
}

}  // namespace

bool opensAsTextWhenUnknown(const std::string& path) {
  std::string ext = extensionWithoutDot(path);
  return std::any_of(std::begin(kTextExtensions), std::end(kTextExtensions),
                     [&](const char* e) { return ext == e; });
}

OpenDecision decideOpen(const OpenRequest& request) {
  OpenDecision decision;
  decision.path = request.path;
  std::replace(decision.path.begin(), decision.path.end(), '\\', '/');

  if (request.convertedExtensions.count(extensionWithoutDot(decision.path)) > 0) {
    decision.action = OpenAction::ConvertExternal;
    return decision;
  }

  if (request.forceText) {
    decision.code = kFilePlainText;
  } else {
    Recognition recognition = recogniseFile(decision.path, request.probes);
    decision.code = recognition.code;
    decision.gameSystem = recognition.gameSystem;
  }

  auto asText = [&]() {
    decision.action = OpenAction::OpenAsText;
    if (!request.editor.empty()) {
      decision.editorCommand = strprintf("%s %s", request.editor, decision.path);
    }
  };

  switch (decision.code) {
    case kFileReportedAlready:
      decision.action = OpenAction::Nothing;
      break;
    case kFileCannotOpen:
      decision.action = OpenAction::ShowMessage;
      decision.title = "File Not Found";
      decision.text = strprintf("The file '%s' does not exist.", decision.path);
      break;
    case kFileUnknown:
      if (opensAsTextWhenUnknown(decision.path)) {
        asText();
      } else {
        decision.action = OpenAction::HandToSystem;
      }
      break;
    case kFileCharacterSheet:
    case kFileCharacterTemplate:
      decision.action = OpenAction::OpenSheet;
      break;
    case kFilePrintTemplate:
      decision.action = OpenAction::OpenPrintTemplate;
      break;
    case kFileMacroDataSheet:
      decision.action = OpenAction::OpenMacroDataSheet;
      break;
    case kFileDataSheet:
      decision.action = OpenAction::OpenDataSheet;
      break;
    case kFileGroup:
      decision.action = OpenAction::OpenGroup;
      break;
    case kFilePlainText:
    case kFileFilter:
    case kFileConversionScript:
    case kFileDataSheetList:
      asText();
      break;
    default:
      decision.action = OpenAction::ShowMessage;
      decision.title = "Error";
      decision.text = strprintf("The file '%s' is not a recognized file type.", decision.path);
      break;
  }
  return decision;
}

}  // namespace zv
