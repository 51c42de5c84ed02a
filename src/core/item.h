#pragma once
// One element of a list or of a category: an item, or a sublist that owns children.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/basic_records.h"
#include "core/bit_field.h"
#include "core/fixed_string.h"
#include "core/option.h"
#include "core/record_limits.h"
#include "core/record_types.h"
#include "core/value.h"

namespace zv {

enum class ItemKind : std::int32_t { Item = 0, Sublist = 1 };

using ItemChain = std::vector<std::unique_ptr<Item>>;

struct Item {
  Item() = default;
  explicit Item(ItemKind itemKind, std::string itemName = {})
      : kind(itemKind), name(std::move(itemName)) {}
  Item(const Item&) = delete;
  Item& operator=(const Item&) = delete;

  ItemKind kind = ItemKind::Item;
  std::uint32_t flagsA = 0;
  std::uint32_t flagsB = 0;
  std::int16_t sizeX = 0;  ///< display size in pixels; written only when both are positive
  std::int16_t sizeY = 0;
  Item* parent = nullptr;     ///< the sublist that holds this item; null at list level
  std::int32_t sourceId = 0;  ///< the data sheet id the item came from; 0 for a sheet's own
  /// The stable identity of the source data sheet: four bytes, all kept.
  FixedString<kDsidLength + 1> dsid;
  FileInfo* owner = nullptr;  ///< null in master items
  ListInfo* list = nullptr;   ///< null in master items
  std::int32_t position = 0;  ///< zero-based place among its siblings
  std::int32_t depth = 0;     ///< nesting under sublists; 0 at list level

  std::string name;
  std::string original;
  std::string origCat;
  std::string cat;
  std::string className;  ///< keyword `class`
  std::string lookupArray;
  std::string script;
  std::string format;
  std::string sformat;
  std::string varName;
  std::string checkExp;
  std::string checkMsg;

  double levelValue = 0.0;  ///< the numeric level last assigned, for display and sorting
  std::string level;        ///< the level as entered: an expression or a literal
  std::string defaultText;  ///< keyword `default`
  std::string defFormula;
  Value value;  ///< the evaluated level, in its own number or string form
  Symbol* levelSymbol = nullptr;

  double cost = 0.0;  ///< the cost before options
  Symbol* costSymbol = nullptr;
  std::string formula;  ///< the cost formula
  double mult = 1.0;    ///< accumulated multiplier of options and adjustments
  double add = 0.0;
  double aux = 0.0;
  double totalCost = 0.0;
  std::string totalCostFormula;
  double childCost = 0.0;  ///< the children's sum of a sublist with childcostsseparate
  std::string notes;
  std::vector<std::unique_ptr<Option>> options;
  std::string adj;
  std::string prereq;  ///< items only, never sublists
  std::string autoitems;
  std::string alias;
  std::int32_t autoID = 0;
  std::int32_t autoParent = 0;
  std::int32_t defaultSource = 0;
  std::vector<AltFormat> altFormats;
  ItemChain children;  ///< members of a sublist
  /// Transient: the last level check of the item failed (never stored in a file).
  bool checkFailed = false;

  bool isSublist() const { return kind == ItemKind::Sublist; }

  // flagsA
  bool useDefault() const { return bits::test(flagsA, 0); }
  void setUseDefault(bool on) { bits::assign(flagsA, 0, on); }
  /// Whether the item adds to its list's total; the record stores the opposite in bit 1.
  bool inTotal() const { return !bits::test(flagsA, 1); }
  void setInTotal(bool on) { bits::assign(flagsA, 1, !on); }
  bool open() const { return bits::test(flagsA, 2); }
  void setOpen(bool on) { bits::assign(flagsA, 2, on); }
  /// Transient: the item is being assigned, so dependants must not re-enter it.
  bool settling() const { return bits::test(flagsA, 3); }
  void setSettling(bool on) { bits::assign(flagsA, 3, on); }
  bool converted() const { return bits::test(flagsA, 5); }
  void setConverted(bool on) { bits::assign(flagsA, 5, on); }
  bool autoAdded() const { return bits::test(flagsA, 6); }
  void setAutoAdded(bool on) { bits::assign(flagsA, 6, on); }
  bool dontMarkAuto() const { return bits::test(flagsA, 7); }
  void setDontMarkAuto(bool on) { bits::assign(flagsA, 7, on); }
  bool generic() const { return bits::test(flagsA, 8); }
  void setGeneric(bool on) { bits::assign(flagsA, 8, on); }
  /// Which item editor the item uses (three bits).
  unsigned editDlg() const { return bits::field(flagsA, 9, 3); }
  void setEditDlg(unsigned value) { bits::setField(flagsA, 9, 3, value); }
  bool addAsList() const { return bits::test(flagsA, 12); }
  void setAddAsList(bool on) { bits::assign(flagsA, 12, on); }
  bool autoChargeCost() const { return bits::test(flagsA, 13); }
  void setAutoChargeCost(bool on) { bits::assign(flagsA, 13, on); }
  bool uniqueVar() const { return bits::test(flagsA, 14); }
  void setUniqueVar(bool on) { bits::assign(flagsA, 14, on); }
  bool keepCost() const { return bits::test(flagsA, 15); }
  void setKeepCost(bool on) { bits::assign(flagsA, 15, on); }
  /// The weight for random choice (nine bits).
  unsigned rand() const { return bits::field(flagsA, 16, 9); }
  void setRand(unsigned value) { bits::setField(flagsA, 16, 9, value); }
  bool inheritOpts() const { return bits::test(flagsA, 25); }
  void setInheritOpts(bool on) { bits::assign(flagsA, 25, on); }
  /// The sort mode of a sublist's members (four bits).
  unsigned sort() const { return bits::field(flagsA, 26, 4); }
  void setSort(unsigned value) { bits::setField(flagsA, 26, 4, value); }
  bool setListCost() const { return bits::test(flagsA, 30); }
  void setSetListCost(bool on) { bits::assign(flagsA, 30, on); }
  bool childCostsSeparate() const { return bits::test(flagsA, 31); }
  void setChildCostsSeparate(bool on) { bits::assign(flagsA, 31, on); }

  // flagsB
  /// Set after every successful assignment.
  bool calculated() const { return bits::test(flagsB, 1); }
  void setCalculated(bool on) { bits::assign(flagsB, 1, on); }
  bool addWholeList() const { return bits::test(flagsB, 2); }
  void setAddWholeList(bool on) { bits::assign(flagsB, 2, on); }
  bool deleteAuto() const { return bits::test(flagsB, 3); }
  void setDeleteAuto(bool on) { bits::assign(flagsB, 3, on); }
  bool noAutoDup() const { return bits::test(flagsB, 4); }
  void setNoAutoDup(bool on) { bits::assign(flagsB, 4, on); }
  bool useDefVarName() const { return bits::test(flagsB, 5); }
  void setUseDefVarName(bool on) { bits::assign(flagsB, 5, on); }
  bool defBased() const { return bits::test(flagsB, 7); }
  void setDefBased(bool on) { bits::assign(flagsB, 7, on); }
  bool defBaseable() const { return bits::test(flagsB, 8); }
  void setDefBaseable(bool on) { bits::assign(flagsB, 8, on); }
  bool noViolation() const { return bits::test(flagsB, 9); }
  void setNoViolation(bool on) { bits::assign(flagsB, 9, on); }
  bool dupExpected() const { return bits::test(flagsB, 10); }
  void setDupExpected(bool on) { bits::assign(flagsB, 10, on); }
  bool see() const { return bits::test(flagsB, 11); }
  void setSee(bool on) { bits::assign(flagsB, 11, on); }
  /// Which of two same-named master items survives a load (four bits).
  unsigned priority() const { return bits::field(flagsB, 12, 4); }
  void setPriority(unsigned value) { bits::setField(flagsB, 12, 4, value); }
  bool checkOnInsert() const { return bits::test(flagsB, 16); }
  void setCheckOnInsert(bool on) { bits::assign(flagsB, 16, on); }
  bool noCheckOnInsert() const { return bits::test(flagsB, 17); }
  void setNoCheckOnInsert(bool on) { bits::assign(flagsB, 17, on); }
  bool noAdj() const { return bits::test(flagsB, 18); }
  void setNoAdj(bool on) { bits::assign(flagsB, 18, on); }
  bool noPrereq() const { return bits::test(flagsB, 19); }
  void setNoPrereq(bool on) { bits::assign(flagsB, 19, on); }
  bool disallowSat() const { return bits::test(flagsB, 20); }
  void setDisallowSat(bool on) { bits::assign(flagsB, 20, on); }

  /// A deep copy: texts, options and members. The copy's links to a list, owner and parent and its
  /// symbol references are cleared; its members point to it as their parent.
  std::unique_ptr<Item> clone() const;

  /// Appends a member to this sublist, tying it (and its own members) to this item's owner and
  /// list with the next position and depth. Returns the member.
  Item& appendChild(std::unique_ptr<Item> child);

  /// Ties this item and its members to a sheet and list under `parentItem` at nesting `atDepth`.
  void bindTo(FileInfo* ownerFile, ListInfo* ownerList, Item* parentItem, std::int32_t atDepth);
};

/// A sublist is an item of kind 1.
using Sublist = Item;

/// Numbers the items of a chain 0, 1, 2, ... in their order.
void renumberPositions(ItemChain& chain);

}  // namespace zv
