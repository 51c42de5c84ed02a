#pragma once
// Merge Data Sheet, a command of a data sheet document: the items and options of another data
// sheet of the same game system join the document's. An entry that differs from the one already
// there is the user's choice, asked through the host.

#include <filesystem>

#include "formats/data_sheet_document.h"

namespace zv {

/// The answers of the merge conflict dialog, in the order of its buttons.
enum class MergeChoice { KeepOld, TakeNew, KeepBoth, KeepOldForAll, TakeNewForAll, KeepBothForAll };

/// The labels of the conflict dialog's choices, in MergeChoice order.
const std::vector<std::string>& mergeChoiceLabels();

/// Merges the data sheet at `path` into `document`. The file must be a data sheet ("'%s' is not a
/// data sheet file") of the document's game system. Items merge by name and kind at each level
/// (a category or sublist into the one of that name, or copied in whole); options likewise,
/// groups by name and kind. Identical entries are skipped; differing ones ask the host (title
/// "Merge Conflict"): keep the old, take the new (the old is deleted), or keep both, the "for
/// all" answers standing for the rest of this merge. Each change marks the document changed.
/// Returns the number of changes made, or -1 when the merge failed or was cancelled (changes
/// made up to a Cancel stay). `dataDir` is where the macro processor looks for includes second.
int mergeDataSheetFile(DataSheetDocument& document, const std::filesystem::path& path,
                       const std::filesystem::path& dataDir = {});

/// The command: asks for the file ("Merge Data Sheet") in `directory`, then merges it. -1 when
/// no file was picked.
int mergeDataSheetCommand(DataSheetDocument& document, const std::filesystem::path& directory,
                          const std::filesystem::path& dataDir = {});

}  // namespace zv
