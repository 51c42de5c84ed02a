#include "rules/value/dist_adj.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"

namespace zv {

namespace {
constexpr std::size_t kMaxDistributed = 20;
}

std::optional<std::vector<int>> distributeTotal(const std::vector<int>& values, int excluded,
                                                double oldTotal, double newTotal) {
  if (values.size() > kMaxDistributed) {
    showError("distAdj: error -- too many distributed adjustments");
    return std::nullopt;
  }
  const int sign = newTotal < 0 ? -1 : 1;
  const double target = std::fabs(newTotal);
  const int oldSign = oldTotal < 0 ? -1 : 1;
  double old = std::fabs(oldTotal);
  if (old == 0.0) old = target;
  std::vector<int> out(values.size(), 0);
  std::vector<double> fractions(values.size(), 0.0);
  int sum = 0;
  std::size_t zeros = 0;
  std::size_t counted = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (static_cast<int>(i) == excluded) {
      out[i] = values[i];
      continue;
    }
    ++counted;
    const int v = values[i];
    if (v == 0) ++zeros;
    const double share = old == 0.0 ? 0.0 : oldSign * v / old;
    const double exact = target * share;
    out[i] = std::min(static_cast<int>(std::trunc(exact)), static_cast<int>(target));
    fractions[i] = exact - std::trunc(exact);
    sum += out[i];
  }
  if (counted > 0 && zeros == counted) {
    sum = 0;
    const double each = target / static_cast<double>(counted);
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (static_cast<int>(i) == excluded) continue;
      out[i] = static_cast<int>(std::trunc(each));
      fractions[i] = each - std::trunc(each);
      sum += out[i];
    }
  }
  std::vector<std::size_t> order(values.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return fractions[a] > fractions[b]; });
  while (counted > 0 && sum < static_cast<int>(target)) {
    for (std::size_t i : order) {
      if (static_cast<int>(i) == excluded || sum >= static_cast<int>(target)) continue;
      ++out[i];
      ++sum;
    }
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (static_cast<int>(i) != excluded) out[i] *= sign;
  }
  return out;
}

bool distAdj(Item& item, std::int32_t kind, int excluded, double oldTotal, double newTotal) {
  std::vector<Option*> options;
  for (const auto& option : item.options) {
    if (option->kind == kind) options.push_back(option.get());
  }
  if (options.empty()) return true;
  std::vector<int> values;
  for (const Option* option : options) {
    values.push_back(static_cast<int>(leadingInteger(option->value)));
  }
  std::optional<std::vector<int>> spread = distributeTotal(values, excluded, oldTotal, newTotal);
  if (!spread) return false;
  for (std::size_t i = 0; i < options.size(); ++i) {
    if ((*spread)[i] != values[i]) options[i]->value = strprintf("%d", (*spread)[i]);
  }
  return true;
}

}  // namespace zv
