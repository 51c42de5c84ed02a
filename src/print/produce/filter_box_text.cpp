#include "print/produce/filter_box_text.h"

#include "filter/run/filter_run.h"

namespace zv {

BoxTextRunner filterBoxTextRunner(FilterContext& context, FilterRunOptions options) {
  return [&context, options](FileInfo& sheet, std::string_view text,
                             int pageNumber) -> std::optional<std::string> {
    FilterRunOptions run = options;
    run.pageNumber = pageNumber;
    run.label = "<string>";
    return runFilterText(sheet, text, 0, run, context);
  };
}

}  // namespace zv
