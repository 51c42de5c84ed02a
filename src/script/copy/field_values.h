#pragma once
// Storing a value into a dialog field by its kind, as conversions and script assignments do: no
// checks, the field's variable passed on to everything that depends on it.

#include <string_view>

#include "core/dialog.h"
#include "core/fileinfo.h"

namespace zv::script {

/// Stores text into a field: a check box its state (the text's integer), an edit field its
/// text, a number or formula field its expression, a combo box the choice whose text (or value)
/// it is. False for a kind that takes no text (a label, a group box, a list, a picture) and for a
/// combo box without such a choice or a value the expression engine refuses.
bool setFieldText(FileInfo& sheet, DlgItem& field, std::string_view text);

/// Copies a picture into a picture field.
void setFieldPicture(DlgItem& field, const DlgItem& from);

}  // namespace zv::script
