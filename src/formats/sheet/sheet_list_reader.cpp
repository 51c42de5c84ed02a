// The list block of the sheet grammar and the item blocks inside it.
//
// An item has no closing keyword: its block ends at the first keyword that doesn't belong to it,
// which goes back to the list (or sublist) reader. A sublist's members stand between `memlist`
// and `end`, and its own keywords follow that `end`.

#include <cctype>

#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "formats/sheet/sheet_grammar.h"

namespace zv {

namespace {

class ListSink : public ItemSink {
 public:
  explicit ListSink(ListInfo& list) : list_(list) {}
  Item& addItem(std::unique_ptr<Item> item) override { return list_.appendItem(std::move(item)); }

 private:
  ListInfo& list_;
};

class MemberSink : public ItemSink {
 public:
  explicit MemberSink(Item& sublist) : sublist_(sublist) {}
  Item& addItem(std::unique_ptr<Item> item) override {
    return sublist_.appendChild(std::move(item));
  }

 private:
  Item& sublist_;
};

int lineNumber() {
  return tokenLineState().lineNumber;
}

bool isNameStart(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool isNameChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

// The "name=expression" form of a change expression: the name, or empty for an expression alone.
std::string_view changeExpressionName(std::string_view text, std::string_view& expression) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
    ++i;
  const std::size_t start = i;
  if (i >= text.size() || !isNameStart(text[i])) return {};
  while (i < text.size() && isNameChar(text[i]))
    ++i;
  const std::size_t end = i;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
    ++i;
  if (i >= text.size() || text[i] != '=' || (i + 1 < text.size() && text[i + 1] == '=')) return {};
  expression = text.substr(i + 1);
  return text.substr(start, end - start);
}

constexpr std::size_t kChangeNameLength = 63;
constexpr int kChangeNameNumbers = 32000;

}  // namespace

bool SheetGrammar::readListBlock(ListInfo& list) {
  if (!readWord(list.name)) return reported_ ? false : fail("Couldn't read list name");
  bool hasPrompt = false;
  SheetToken token = next();
  for (;;) {
    if (token.failed()) return false;
    if (token.closesBlock()) break;
    bool handled = false;
    if (!readListKeyword(list, token, handled)) {
      if (reported_) return false;
      return fail(strprintf("Error reading list: %s", list.name.str()));
    }
    if (handled) {
      if (token.is(kListprompt)) hasPrompt = true;
      token = next();
      continue;
    }
    // Every token that is no list keyword starts an item.
    ListSink sink(list);
    SheetToken following;
    if (!readItemBlock(std::move(token), sink, following)) return false;
    token = std::move(following);
  }
  if (!hasPrompt || list.listPrompt.empty()) list.listPrompt = "Total";
  return true;
}

bool SheetGrammar::readListKeyword(ListInfo& list, const SheetToken& token, bool& handled) {
  handled = true;
  std::int16_t number = 0;
  switch (token.id) {
    case kCatname:
      return readWord(list.catName);
    case kOpen:
      list.setOpen(true);
      return true;
    case kVar: {
      double total = 0.0;
      if (!readWord(list.totalVarName) || !readReal(total)) return false;
      list.total = total;
      if (SheetSymbolBinder* symbols = options_.symbols) {
        SheetSymbolBinder::Result result =
            symbols->defineVariable(sheet_, list.totalVarName.str(), "0");
        if (result.ok &&
            (result.symbol == nullptr || symbols->setNumber(sheet_, *result.symbol, total))) {
          list.totalSymbol = result.symbol;
        } else {
          showError(strprintf("Error defining %s", list.totalVarName.str()));
        }
      }
      return true;
    }
    case kListprompt:
      return readWord(list.listPrompt);
    case kCostprompt:
      return readWord(list.costPrompt);
    case kLevelprompt:
      return readWord(list.levelPrompt);
    case kMenuchar:
      return readWord(list.menuChar);
    case kFont:
      // A font resets the character set and pitch, so those must follow it.
      list.font.fontCharset = 0;
      list.font.fontPitch = 0;
      return readWord(list.font.fontFace) && readInt(list.font.fontSize);
    case kCharset:
      return readInt(list.font.fontCharset);
    case kPitch:
      return readInt(list.font.fontPitch);
    case kFontcolor: {
      std::int32_t color = 0;
      if (!readLong(color)) return false;
      list.font.fontColor = static_cast<std::uint32_t>(color);
      return true;
    }
    case kLoc:
      return readCoordX(list.loc.x) && readCoordY(list.loc.y) && readCoordX(list.loc.width) &&
             readCoordY(list.loc.height);
    case kMaxitems:
      if (!readInt(number)) return false;
      list.maxItems = number;
      return true;
    case kCheckexp:
      return readText(list.checkExp);
    case kCheckmsg:
      return readText(list.checkMsg);
    case kDefcheckmsg:
      return readText(list.defCheckMsg);
    case kListheader:
      return readText(list.listHeader);
    case kEditdlg:
      if (!readInt(number)) return false;
      list.setEditDlg(static_cast<std::uint16_t>(number));
      return true;
    case kFormat:
      return readText(list.format);
    case kChangeexp:
      if (!readText(list.changeExp)) return false;
      defineChangeExpression(list);
      return true;
    case kAltformat: {
      AltFormat format;
      if (!readText(format.name) || !readText(format.header) || !readText(format.format))
        return false;
      list.altFormats.push_back(std::move(format));
      return true;
    }
    case kHelp:
      return readText(list.help);
    default:
      handled = false;
      return true;
  }
}

// A change expression is "name=expression", or an expression alone that takes the name of the
// total variable, or when that is taken the first free one of "<name>0", "<name>1", ...
void SheetGrammar::defineChangeExpression(ListInfo& list) {
  SheetSymbolBinder* symbols = options_.symbols;
  if (symbols == nullptr || list.changeExp.empty()) return;
  std::string_view expression = list.changeExp;
  std::string name(changeExpressionName(list.changeExp, expression));
  if (name.empty()) {
    expression = list.changeExp;
    const std::string base = list.totalVarName.str();
    name = base;
    if (symbols->isDefined(sheet_, name)) {
      name.clear();
      for (int n = 0; n < kChangeNameNumbers; ++n) {
        std::string candidate = strprintf("%s%d", base, n);
        if (!symbols->isDefined(sheet_, candidate)) {
          name = std::move(candidate);
          break;
        }
      }
    }
    if (name.empty()) {
      showError(strprintf("Error defining %s", base));
      return;
    }
  } else if (name.size() > kChangeNameLength) {
    name.resize(kChangeNameLength);
  }
  SheetSymbolBinder::Result result = symbols->defineVariable(sheet_, name, expression);
  if (result.ok) {
    list.changeSymbol = result.symbol;
  } else {
    showError(strprintf("Error defining %s", name));
  }
}

bool SheetGrammar::readItemBlock(SheetToken start, ItemSink& sink, SheetToken& following) {
  SheetToken token = std::move(start);
  while (token.is(kComment)) {
    std::string comment;
    if (!readText(comment)) {
      if (reported_) return false;
      return fail(strprintf("Error reading list: %s (line %d)", "(Unknown)", lineNumber()));
    }
    token = next();
  }
  if (token.failed()) return false;
  ItemKind kind = ItemKind::Item;
  if (token.is(kItem)) {  // `univar` has the same id
    kind = ItemKind::Item;
  } else if (token.is(kSublist)) {
    kind = ItemKind::Sublist;
  } else {
    return fail(strprintf("Unexpected token: %s (line %d)", token.text, lineNumber()));
  }
  auto fresh = std::make_unique<Item>(kind);
  fresh->sourceId = options_.sourceId;
  if (!readText(fresh->name)) {
    if (reported_) return false;
    return fail(strprintf("Error reading list: %s (line %d)", "(Unknown)", lineNumber()));
  }
  Item& item = sink.addItem(std::move(fresh));
  for (;;) {
    token = next();
    if (token.failed()) return false;
    bool handled = false;
    if (!readItemKeyword(item, token, handled)) {
      if (reported_) return false;
      return fail(strprintf("Error reading list: %s (line %d)", item.name, lineNumber()));
    }
    if (!handled) {
      following = std::move(token);
      return true;
    }
  }
}

bool SheetGrammar::readSublistMembers(Item& sublist) {
  if (sublistDepth_ >= kMaxSublistDepth) return false;
  ++sublistDepth_;
  MemberSink sink(sublist);
  SheetToken token = next();
  bool ok = true;
  for (;;) {
    if (token.failed()) {
      ok = false;
      break;
    }
    if (token.closesBlock()) break;
    SheetToken following;
    if (!readItemBlock(std::move(token), sink, following)) {
      ok = false;
      break;
    }
    token = std::move(following);
  }
  --sublistDepth_;
  return ok;
}

bool SheetGrammar::readItemKeyword(Item& item, const SheetToken& token, bool& handled) {
  handled = true;
  std::int16_t number = 0;
  std::int32_t longNumber = 0;
  auto unsignedNumber = [&number] { return static_cast<std::uint16_t>(number); };
  switch (token.id) {
    case kDsid:
      return readWord(item.dsid);

    // Flags.
    case kAutoadded:
      item.setAutoAdded(true);
      return true;
    case kDontmarkauto:
      item.setDontMarkAuto(true);
      return true;
    case kUsedefvarname:
      item.setUseDefVarName(true);
      return true;
    case kNoviolation:
      item.setNoViolation(true);
      return true;
    case kCheckoninsert:
      item.setCheckOnInsert(true);
      return true;
    case kNocheckoninsert:
      item.setNoCheckOnInsert(true);
      return true;
    case kDupexpected:
      item.setDupExpected(true);
      return true;
    case kNoadj:
      item.setNoAdj(true);
      return true;
    case kNoprereq:
      item.setNoPrereq(true);
      return true;
    case kDisallowsat:
      item.setDisallowSat(true);
      return true;
    case kDefbaseable:
      item.setDefBaseable(true);
      return true;
    case kDefbased:
      item.setDefBased(true);
      return true;
    case kGeneric:
      item.setGeneric(true);
      return true;
    case kSetlistcost:
      item.setSetListCost(true);
      return true;
    case kSee:
      item.setSee(true);
      return true;
    case kChildcostsseparate:
      item.setChildCostsSeparate(true);
      return true;
    case kAddaslist:
      item.setAddAsList(true);
      return true;
    case kAddwholelist:
      item.setAddWholeList(true);
      return true;
    case kAutochargecost:
      item.setAutoChargeCost(true);
      return true;
    case kNoautodup:
      item.setNoAutoDup(true);
      return true;
    case kKeepcost:
      item.setKeepCost(true);
      return true;
    case kDeleteauto:
      item.setDeleteAuto(true);
      return true;
    case kInheritopts:
      item.setInheritOpts(true);
      return true;
    case kUniquevar:
      item.setUniqueVar(true);
      return true;
    case kOpen:
      if (item.isSublist()) item.setOpen(true);
      return true;

    // Numbers, kept to the width of their bit fields.
    case kUsedefault:
      if (!readInt(number)) return false;
      item.setUseDefault((number & 1) != 0);
      return true;
    case kRand:
      if (!readInt(number)) return false;
      item.setRand(unsignedNumber());
      return true;
    case kIntotal:
      if (!readInt(number)) return false;
      item.setInTotal(number != 0);
      return true;
    case kEditdlg:
      if (!readInt(number)) return false;
      item.setEditDlg(unsignedNumber());
      return true;
    case kSort:
      if (!readInt(number)) return false;
      item.setSort(unsignedNumber());
      return true;
    case kPriority:
      if (!readInt(number)) return false;
      item.setPriority(unsignedNumber());
      return true;
    case kAutoid:
      if (!readLong(longNumber)) return false;
      item.autoID = longNumber;
      sheet_.noteAutoID(longNumber);
      return true;
    case kAutoparent:
      return readLong(item.autoParent);
    case kSize:
      return readCoordX(item.sizeX) && readCoordY(item.sizeY);
    case kAltformat: {
      AltFormat format;
      if (!readText(format.name) || !readText(format.header) || !readText(format.format))
        return false;
      item.altFormats.push_back(std::move(format));
      return true;
    }

    // Texts.
    case kCat:
      return readJoinedText(item.cat);
    case kAdj:
      return readJoinedText(item.adj);
    case kAutoitems:
      return readText(item.autoitems);
    case kClass:
      return readText(item.className);
    case kOriginal:
      return readText(item.original);
    case kOrigcat:
      return readText(item.origCat);
    case kNotes:
      return readText(item.notes);
    case kFormula:
      return readText(item.formula);
    case kScript:
      return readText(item.script);
    case kDefault:
      return readText(item.defaultText);
    case kDefFormula:
      return readText(item.defFormula);
    case kTotalcostformula:
      return readText(item.totalCostFormula);
    case kCheckexp:
      return readText(item.checkExp);
    case kCheckmsg:
      return readText(item.checkMsg);
    case kFormat:
      return readText(item.format);
    case kSformat:
      return readText(item.sformat);
    case kAlias:
      return readText(item.alias);
    case kLookuparray:
      return readText(item.lookupArray);
    case kVarname:
      return readText(item.varName);
    case kPrereq:
      return readText(item.prereq);
    case kLevel:
      return readText(item.level);

    case kOpt:
      if (!readOptionBlock(item)) return false;
      if (sheet_.fileType == 1 && options_.applyOptions) options_.applyOptions(sheet_, item);
      return true;
    case kCost:
      if (!readReal(item.cost)) return false;
      if (item.totalCost == 0.0) item.totalCost = item.cost;
      return true;
    case kTotalcost:
      return readReal(item.totalCost);

    case kMemlist:
      // Members belong to sublists only; in an item the read stops.
      return item.isSublist() && readSublistMembers(item);

    // Keywords of older files, read and dropped.
    case kDesiredLevel:
      return readInt(number);
    case kComment: {
      std::string comment;
      return readText(comment);
    }
    case kColwidth: {
      if (!readInt(number)) return false;
      std::int16_t width = 0;
      for (int i = 0; i < number; ++i)
        if (!readInt(width)) return false;
      return true;
    }
    case kTextline:
      return true;

    default:
      handled = false;
      return true;
  }
}

}  // namespace zv
