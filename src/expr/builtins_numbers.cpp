// Built-in functions on numbers: conversions, rounding, extremes, random draws and dice.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <queue>
#include <vector>

#include "core/random.h"
#include "expr/builtins.h"
#include "expr/builtins_args.h"
#include "expr/builtins_system.h"

namespace zv {

namespace {

constexpr double kLargestInteger = 2147483647.0;

/// A whole number computed from `magnitude`: an integer when the magnitude is below 2147483647,
/// otherwise (or when it isn't finite) it stays a real.
Value wholeNumber(double whole, double magnitude) {
  if (std::fabs(magnitude) < kLargestInteger) {
    return Value(static_cast<std::int32_t>(whole));
  }
  return Value(whole);
}

double signOf(double x) {
  return x < 0 ? -1.0 : 1.0;
}

/// The argument as a real: a real stays, a text is parsed, an integer converted.
double realArgument(const BuiltinCall& call) {
  return floatOf(call.args[0]);
}

/// Runs a rounding rule on the single argument: an integer stays, anything else is made a real
/// and rounded by `rule`, which works on the magnitude.
int roundWith(BuiltinCall& call, double (*rule)(double magnitude)) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  const Value& x = call.args[0];
  if (x.isInteger()) {
    call.result = x;
    return 0;
  }
  double real = realArgument(call);
  call.result = wholeNumber(signOf(real) * rule(std::fabs(real)), real);
  return 0;
}

/// The rightmost of the arguments that `better` can't beat, walking from the last to the first.
int extreme(BuiltinCall& call, bool (*better)(int comparison)) {
  if (call.args.empty()) return fail(kExprStackUnderflow);
  std::size_t best = call.args.size() - 1;
  for (std::size_t i = best; i-- > 0;) {
    if (better(compareValues(call.args[i], call.args[best]))) best = i;
  }
  call.result = call.args[best];
  return 0;
}

/// The magnitude of a real, with 0.0 for 0 and the logarithm `log` of anything else.
int logarithm(BuiltinCall& call, double (*log)(double)) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  double magnitude = std::fabs(realArgument(call));
  call.result = Value(magnitude == 0.0 ? 0.0 : log(magnitude));
  return 0;
}

/// The sum of the best `keep` of `dice` dice of `sides` sides. Only the kept dice are held, so a
/// huge number of dice needs no memory for the others.
std::int32_t rollKeepingBest(std::int32_t keep, std::int32_t dice, std::int32_t sides) {
  if (dice < 1 || sides < 1 || keep < 1) return 0;
  std::size_t kept = static_cast<std::size_t>(std::min(keep, dice));
  std::priority_queue<std::int64_t, std::vector<std::int64_t>, std::greater<>> best;
  for (std::int32_t i = 0; i < dice; ++i) {
    std::int64_t die =
        static_cast<std::int64_t>(randomBelow(static_cast<std::uint32_t>(sides))) + 1;
    if (best.size() < kept) {
      best.push(die);
    } else if (die > best.top()) {
      best.pop();
      best.push(die);
    }
  }
  std::int64_t sum = 0;
  for (; !best.empty(); best.pop())
    sum += best.top();
  return static_cast<std::int32_t>(
      std::min<std::int64_t>(sum, std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

int builtinInteger(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  const Value& x = call.args[0];
  if (x.isFloat()) {
    call.result = wholeNumber(std::trunc(x.real()), x.real());
  } else {
    call.result = Value(integerOf(x));
  }
  return 0;
}

int builtinFloat(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  call.result = Value(floatOf(call.args[0]));
  return 0;
}

int builtinRound(BuiltinCall& call) {
  return roundWith(call, [](double magnitude) { return std::trunc(magnitude + 0.5); });
}

int builtinCeil(BuiltinCall& call) {
  return roundWith(call, [](double magnitude) {
    double whole = std::floor(magnitude);
    return std::fabs(whole - magnitude) < 0.001 ? whole : whole + 1.0;
  });
}

int builtinDround(BuiltinCall& call) {
  return roundWith(call, [](double magnitude) {
    double whole = std::floor(magnitude);
    return magnitude - 0.500001 > whole ? whole + 1.0 : whole;
  });
}

int builtinMin(BuiltinCall& call) {
  return extreme(call, [](int comparison) { return comparison < 0; });
}

int builtinMax(BuiltinCall& call) {
  return extreme(call, [](int comparison) { return comparison > 0; });
}

int builtinRand(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  std::int64_t n = integerArgument(call, 0);
  // A negative bound draws from its magnitude, as the remainder of a draw by it would.
  std::uint32_t bound = static_cast<std::uint32_t>(n < 0 ? -n : n);
  call.result = Value(bound == 0 ? 1 : static_cast<std::int32_t>(randomBelow(bound) + 1));
  return 0;
}

int builtinRolldice(BuiltinCall& call) {
  switch (call.args.size()) {
    case 1:
      // A dice text goes to the die roller the program installed; without one, integer 0.
      return builtinRolldiceText(call);
    case 3:
      call.result = Value(rollKeepingBest(integerArgument(call, 0), integerArgument(call, 1),
                                          integerArgument(call, 2)));
      return 0;
    default:
      return fail(kExprStackUnderflow);
  }
}

int builtinSqrt(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  call.result = Value(std::sqrt(std::fabs(realArgument(call))));
  return 0;
}

int builtinLog(BuiltinCall& call) {
  return logarithm(call, [](double x) { return std::log(x); });
}

int builtinLog10(BuiltinCall& call) {
  return logarithm(call, [](double x) { return std::log10(x); });
}

int builtinAbs(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  const Value& x = call.args[0];
  if (x.isInteger()) {
    std::int64_t magnitude = std::abs(static_cast<std::int64_t>(x.integer()));
    if (magnitude > std::numeric_limits<std::int32_t>::max()) {
      call.result = Value(static_cast<double>(magnitude));
    } else {
      call.result = Value(static_cast<std::int32_t>(magnitude));
    }
  } else {
    call.result = Value(std::fabs(realArgument(call)));
  }
  return 0;
}

}  // namespace zv
