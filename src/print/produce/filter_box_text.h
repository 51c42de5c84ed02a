#pragma once
// The box text of page production through the filter engine: each box's text runs as a filter
// source ("<string>") for the sheet, with the output page's number for "@pagenumber".

#include "filter/run/filter_context.h"
#include "print/produce/page_production.h"

namespace zv {

/// A runner over `context` (which must outlive it) with the choices of `options`.
BoxTextRunner filterBoxTextRunner(FilterContext& context, FilterRunOptions options);

}  // namespace zv
