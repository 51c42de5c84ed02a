#pragma once
// An option of an item: a fraction of the cost, a multiplier, a flat addition, a percentage, a
// side cost, free text, an expression or an adjustment, with its name, value and the texts that
// the option editor and the display use. Options are plain values: copying an Option copies all
// of its texts, so items copied from master lists own their options outright.

#include <cstdint>
#include <string>

#include "core/bit_field.h"

namespace zv {

/// The kinds of an option. Each equals the id of the keyword that names the kind in sheet and
/// data sheet files, so one number serves the file and the record.
enum OptionKind : std::int32_t {
  kOptionAdjustment = 18,     ///< `adj`: no effect on the cost; a value for expressions
  kOptionText = 29,           ///< `text`: free text
  kOptionExpression = 56,     ///< `exp`: an expression, evaluated where it is used
  kOptionFraction = 60,       ///< `frac`: a share of the cost
  kOptionMultiplier = 61,     ///< `mult`: a factor
  kOptionAddition = 62,       ///< `add`: a flat amount
  kOptionPercentage = 63,     ///< `percent`: a percentage, as an integer
  kOptionAuxCost = 65,        ///< `auxcost`: a second cost, by the auxiliary expression
  kOptionAdjDistLevel = 121,  ///< `adjdistlevel`: shares a total level across its options
  kOptionAdjDistCost = 122,   ///< `adjdistcost`: shares a total cost across its options
};

/// True for the ten kinds above.
constexpr bool isOptionKind(std::int32_t kind) {
  switch (kind) {
    case kOptionAdjustment:
    case kOptionText:
    case kOptionExpression:
    case kOptionFraction:
    case kOptionMultiplier:
    case kOptionAddition:
    case kOptionPercentage:
    case kOptionAuxCost:
    case kOptionAdjDistLevel:
    case kOptionAdjDistCost:
      return true;
    default:
      return false;
  }
}

/// The kinds whose file form carries the auxiliary expression between the name and the value
/// (`adj`, `auxcost`, `adjdistlevel`, `adjdistcost`); the others keep it in the wrapped tail.
constexpr bool optionKindCarriesExpression(std::int32_t kind) {
  return kind == kOptionAdjustment || kind == kOptionAuxCost || kind == kOptionAdjDistLevel ||
         kind == kOptionAdjDistCost;
}

/// The longest value that an option of a kind with an expression may have in a file.
inline constexpr std::size_t kMaxOptionValueLength = 511;

struct Option {
  std::int32_t kind = kOptionText;
  std::uint32_t flags = 0;
  std::string name;             ///< the name by which expressions find the option
  std::string origName;         ///< the name the data sheet gave it (keyword `original`)
  std::string auxExpression;    ///< an expression in `x` that turns the value into a number
  std::string value;            ///< the value text, in the option value language
  std::string checkExpression;  ///< "expression;message" or "?!expression;message"
  std::string relatedItem;      ///< another item the value refers to (keyword `itemref`)
  std::string relatedCategory;  ///< the category of that item (keyword `itemrefcat`)
  std::string selectItem;       ///< keyword `selitem`: what the option editor offers to choose
  std::string alias;            ///< a second name, compared like the name
  std::string format;           ///< the display template (keyword `dispexp`)
  std::string qualifier;        ///< shown in parentheses behind the name (keyword `qual`)
  std::string category;         ///< keyword `cat`
  std::int16_t editDlg = 0;     ///< keyword `editdlg`: which editor edits the option

  // flags
  /// Left out of displays and printouts.
  bool hidden() const { return bits::test(flags, 0); }
  void setHidden(bool on) { bits::assign(flags, 0, on); }
  /// Transient mark of sheet conversion.
  bool converted() const { return bits::test(flags, 1); }
  void setConverted(bool on) { bits::assign(flags, 1, on); }
  /// Keyword `keepold`: the option keeps its value when the item is updated from its master.
  bool keepValue() const { return bits::test(flags, 3); }
  void setKeepValue(bool on) { bits::assign(flags, 3, on); }
  /// Keyword `noprint`: not printed where a child item shows it as inherited.
  bool noPrint() const { return bits::test(flags, 5); }
  void setNoPrint(bool on) { bits::assign(flags, 5, on); }
  /// What the text stands for (three bits); 1: a reference to be looked up.
  unsigned textKind() const { return bits::field(flags, 6, 3); }
  void setTextKind(unsigned value) { bits::setField(flags, 6, 3, value); }
  /// Keyword `noinherit`: child items of a sublist don't inherit the option.
  bool noInherit() const { return bits::test(flags, 9); }
  void setNoInherit(bool on) { bits::assign(flags, 9, on); }
  /// Keyword `noedit`: the option editor doesn't let the user change the value.
  bool noEdit() const { return bits::test(flags, 10); }
  void setNoEdit(bool on) { bits::assign(flags, 10, on); }
  /// Keyword `usemsg`: the check message is shown as it stands.
  bool useMsg() const { return bits::test(flags, 11); }
  void setUseMsg(bool on) { bits::assign(flags, 11, on); }

  friend bool operator==(const Option&, const Option&) = default;
};

}  // namespace zv
