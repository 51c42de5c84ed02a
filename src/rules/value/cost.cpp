#include "rules/value/cost.h"

#include <cmath>

#include "core/fileinfo.h"
#include "core/strfmt.h"
#include "core/value.h"
#include "expr/expr_error.h"
#include "rules/value/option_refs.h"
#include "rules/value/option_value.h"
#include "rules/value/tokens.h"

namespace zv {

double roundCost(double value, int mode) {
  const double magnitude = std::fabs(value);
  const double whole = std::floor(magnitude);
  double rounded = 0.0;
  switch (mode) {
    case 0:
      rounded = std::floor(magnitude + 0.5);
      break;
    case 2:
      rounded = whole;
      break;
    case 3:
      rounded = magnitude - whole < 0.001 ? whole : whole + 1.0;
      break;
    default:
      rounded = magnitude - whole <= 0.5 ? whole : whole + 1.0;
      break;
  }
  return value < 0 ? -rounded : rounded;
}

int roundingModeOf(const Item& item) {
  return item.owner != nullptr ? item.owner->rounding : 1;
}

double computeCost(Item& item) {
  const double c = item.cost;
  const double a = item.add;
  const double m = item.mult;
  const double x = item.aux;
  std::string formula = item.totalCostFormula;
  if (formula.empty() && item.owner != nullptr) formula = item.owner->totalCostFormula;
  if (!formula.empty()) {
    std::string text = replaceWord(formula, "aux", strprintf("%.15g", x));
    text = replaceWord(text, "c", strprintf("%f", c));
    text = replaceWord(text, "a", strprintf("%.15g", a));
    text = replaceWord(text, "m", strprintf("%.15g", m));
    text = expandOptionRefs(item, text, nullptr, true);
    Value result;
    if (evaluateForItem(&item, nullptr, text, result) != 0) {
      reportExpressionError(text);
      return c;
    }
    return valueToDouble(result);
  }
  const int mode = roundingModeOf(item);
  if (x != 0.0) return roundCost((x + a) * m, mode) + c;
  if (a == 0.0 && m == 1.0) return c;
  return roundCost((c + a) * m, mode);
}

}  // namespace zv
