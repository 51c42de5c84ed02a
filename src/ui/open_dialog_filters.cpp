#include "ui/open_dialog_filters.h"

namespace zv::ui {

const std::vector<FileFilter>& openDialogFilters() {
  static const std::vector<FileFilter> filters = {
      {"Character Sheet", "*.chr"},       {"Character Template", "*.cst"}, {"Data Sheet", "*.cds"},
      {"Macro Data Sheet", "*.mds"},      {"Print Template", "*.prt"},     {"Filter", "*.flt"},
      {"Script", "*.scp;*.cnv;*.script"}, {"Group", "*.group;*.clist"},    {"All Files", "*"},
  };
  return filters;
}

}  // namespace zv::ui
