#include "ui/not_yet_supported.h"

namespace zv::ui {

std::string_view unsupportedDocumentKind(const OpenDecision& decision) {
  switch (decision.action) {
    case OpenAction::OpenPrintTemplate:
      return "print template";
    case OpenAction::OpenMacroDataSheet:
      return "macro data sheet";
    case OpenAction::OpenGroup:
      return "group";
    case OpenAction::ConvertExternal:
      return "externally converted";
    case OpenAction::OpenSheet:
    case OpenAction::OpenDataSheet:
    case OpenAction::Nothing:
    case OpenAction::ShowMessage:
    case OpenAction::OpenAsText:
    case OpenAction::HandToSystem:
      break;
  }
  return {};
}

std::string notYetSupportedText(std::string_view kind, std::string_view path) {
  std::string text = "Opening ";
  text.append(kind);
  text += " files is not yet supported: ";
  text.append(path);
  return text;
}

}  // namespace zv::ui
