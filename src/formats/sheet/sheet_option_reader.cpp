// The option block of an item: `opt`, options, `end`. An option is its kind keyword and the
// strings of that kind; the wrapped form `begin <kind> ... <tail> end` carries the other texts
// and flags of the option.

#include "core/messages.h"
#include "core/option.h"
#include "core/strfmt.h"
#include "formats/sheet/sheet_grammar.h"

namespace zv {

namespace {

constexpr std::string_view kReadErrorTitle = "Read Error";

int lineNumber() {
  return tokenLineState().lineNumber;
}

}  // namespace

bool SheetGrammar::readOptionBlock(Item& item) {
  for (;;) {
    SheetToken token = next();
    if (token.failed()) return false;
    if (token.closesBlock()) return true;
    if (token.is(kTextline)) continue;
    if (!readOption(item, token)) return false;
  }
}

bool SheetGrammar::readOption(Item& item, const SheetToken& start) {
  if (!start.is(kBegin) && !isOptionKind(start.id))
    return fail(strprintf("Unknown option (%s) in item (%d, line %d)", start.text, item.position,
                          lineNumber()));
  std::unique_ptr<Option> option;
  if (!readOptionEntry(start, option)) return false;
  item.options.push_back(std::move(option));
  return true;
}

bool SheetGrammar::readOptionEntry(const SheetToken& start, std::unique_ptr<Option>& result) {
  const bool wrapped = start.is(kBegin);
  SheetToken kind = start;
  if (wrapped) {
    kind = next();
    if (kind.failed()) return false;
    if (!isOptionKind(kind.id))
      return fail(
          strprintf("Unrecognized keyword for option: %s (line %d)", kind.text, lineNumber()));
  }
  auto option = std::make_unique<Option>();
  option->kind = kind.id;
  if (!readText(option->name)) return false;
  if (optionKindCarriesExpression(option->kind)) {
    if (!readText(option->auxExpression) || !readText(option->value)) return false;
    if (option->value.size() > kMaxOptionValueLength)
      return fail(strprintf("Option value too long (%s)", option->name));
  } else if (!readText(option->value)) {
    return false;
  }
  if (wrapped && !readOptionTail(*option)) return false;
  result = std::move(option);
  return true;
}

bool SheetGrammar::readOptionTail(Option& option) {
  for (;;) {
    SheetToken token = next();
    if (token.failed()) return false;
    if (token.closesBlock()) return true;
    if (token.isWord())
      return failTitled(kReadErrorTitle,
                        strprintf("Bad keyword: %s (line %d)", token.text, lineNumber()));
    bool ok = true;
    switch (token.id) {
      case kAlias:
        ok = readText(option.alias);
        break;
      case kCheckexp:
        ok = readText(option.checkExpression);
        break;
      case kDispexp:
        ok = readText(option.format);
        break;
      case kItemref:
        ok = readText(option.relatedItem);
        break;
      case kItemrefcat:
        ok = readText(option.relatedCategory);
        break;
      case kSelitem:
        ok = readText(option.selectItem);
        break;
      case kOriginal:
        ok = readText(option.origName);
        break;
      case kQual:
        ok = readText(option.qualifier);
        break;
      case kCat:
        ok = readText(option.category);
        break;
      case kExp:
        ok = readText(option.auxExpression);
        break;
      case kNoprint:
        option.setNoPrint(true);
        break;
      case kEditdlg:
        ok = readInt(option.editDlg);
        break;
      case kNoedit:
        option.setNoEdit(true);
        break;
      case kUsemsg:
        option.setUseMsg(true);
        break;
      case kNoinherit:
        option.setNoInherit(true);
        break;
      case kKeepold:
        option.setKeepValue(true);
        break;
      default:
        return failTitled(kReadErrorTitle,
                          strprintf("Unexpected keyword: %d (%s)", token.id, token.text));
    }
    if (!ok) return false;
  }
}

}  // namespace zv
