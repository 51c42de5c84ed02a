#pragma once
// The format directive lines that a box's text may hold at the start of a paragraph ("@bold",
// "@font 'Arial' 10pt b", "@leftindent 0.5in", "@need 3l", "@hline 10 0 0"...): they change the
// run state of the layout and are not printed.

#include <optional>
#include <string_view>

#include "print/model/print_template.h"

namespace zv {

/// What a directive line asks of the layout besides the run state.
struct DirectiveEffect {
  /// "@need": the room wanted before the next paragraph, in twips (a positive value) or lines
  /// (a negative count).
  std::optional<int> need;
  /// "@hline": a rule across the line, with its width in twips and its ends along the line.
  struct Rule {
    int width = 0;
    int start = 0;
    int end = 0;
  };
  std::optional<Rule> rule;
};

/// Applies `line` (without its line end) when it is a directive: its first non-blank character
/// is "@" and the word behind it one of the format directives. False leaves everything as it was.
bool applyLayoutDirective(std::string_view line, TextProperties& runState, DirectiveEffect& effect);

/// A measure: a number with an optional unit (`"`, in, cm, mm, pt, l or ln for lines), as twips;
/// a count of lines is negative. None when there is no number.
std::optional<int> parseLayoutMeasure(std::string_view word);

}  // namespace zv
