#pragma once
// The dialog fields of a sheet as scripts name them, "dialog.field" (the field by its variable
// name), and the raw text of a field's value.

#include <optional>
#include <string>
#include <string_view>

#include "core/dialog.h"
#include "core/fileinfo.h"

namespace zv::script {

/// The dialog of that name (ignoring case), or null.
DlgInfo* findDialog(FileInfo& sheet, std::string_view name);
/// The field of the dialog whose variable is `name` (ignoring case), or null.
DlgItem* findField(DlgInfo& dialog, std::string_view name);
/// "dialog.field" split at the first ".", both parts trimmed; false without a ".".
bool splitDialogField(std::string_view text, std::string& dialog, std::string& field);

/// The value of a field as text, without evaluation: a check box its state ("0" or "1"), an edit
/// field its text, a formula or number field its value, a combo box the text of its choice, a
/// picture its size "%dx%d". Nullopt for other kinds.
std::optional<std::string> fieldRawText(const DlgItem& field);

/// The value of `$$dialog.field` of the sheet: the raw text of the field; nullopt when the text
/// is not of that form or names no field of the sheet.
std::optional<std::string> sourceFieldText(FileInfo& sheet, std::string_view text);

}  // namespace zv::script
