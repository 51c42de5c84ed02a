// Lists, items and options as the sheet writer emits them. List keywords come before the items,
// since an item (which has no closing keyword) would swallow the ones it shares with lists.

#include "core/option.h"
#include "formats/tokens/keywords.h"
#include "formats/sheet/sheet_output.h"

namespace zv {

namespace {

void writeAltFormats(SheetOut& out, const std::vector<AltFormat>& formats) {
  for (const AltFormat& format : formats) {
    out.keyword(kAltformat);
    out.string(format.name);
    out.string(format.header);
    out.string(format.format);
  }
}

bool optionNeedsWrapping(const Option& option) {
  const bool tailExpression =
      !optionKindCarriesExpression(option.kind) && !option.auxExpression.empty();
  return !option.alias.empty() || !option.checkExpression.empty() || !option.format.empty() ||
         !option.relatedItem.empty() || !option.relatedCategory.empty() ||
         !option.selectItem.empty() || !option.origName.empty() || !option.qualifier.empty() ||
         !option.category.empty() || tailExpression || option.noPrint() || option.editDlg != 0 ||
         option.noEdit() || option.useMsg() || option.noInherit() || option.keepValue();
}

void writeOption(SheetOut& out, const Option& option) {
  const bool wrapped = optionNeedsWrapping(option);
  const bool carriesExpression = optionKindCarriesExpression(option.kind);
  if (wrapped) out.keyword(kBegin);
  out.keyword(option.kind);
  out.string(option.name);
  if (carriesExpression) out.string(option.auxExpression);
  out.string(option.value);
  if (!wrapped) return;
  out.keywordText(kAlias, option.alias);
  out.keywordText(kCheckexp, option.checkExpression);
  out.keywordText(kDispexp, option.format);
  out.keywordText(kItemref, option.relatedItem);
  out.keywordText(kItemrefcat, option.relatedCategory);
  out.keywordText(kSelitem, option.selectItem);
  out.keywordText(kOriginal, option.origName);
  out.keywordText(kQual, option.qualifier);
  out.keywordText(kCat, option.category);
  if (!carriesExpression) out.keywordText(kExp, option.auxExpression);
  out.flag(kNoprint, option.noPrint());
  if (option.editDlg != 0) out.keywordInt(kEditdlg, option.editDlg);
  out.flag(kNoedit, option.noEdit());
  out.flag(kUsemsg, option.useMsg());
  out.flag(kNoinherit, option.noInherit());
  out.flag(kKeepold, option.keepValue());
  out.keyword(kEnd);
}

void writeItemAttributes(SheetOut& out, const Item& item) {
  if (!item.dsid.empty()) {
    out.keyword(kDsid);
    out.string(item.dsid.str());
  }
  out.flag(kAutoadded, item.autoAdded());
  out.flag(kDontmarkauto, item.dontMarkAuto());
  out.flag(kUsedefvarname, item.useDefVarName());
  out.flag(kNoviolation, item.noViolation());
  out.flag(kCheckoninsert, item.checkOnInsert());
  out.flag(kNocheckoninsert, item.noCheckOnInsert());
  out.flag(kDupexpected, item.dupExpected());
  out.flag(kNoadj, item.noAdj());
  out.flag(kNoprereq, item.noPrereq());
  out.flag(kDisallowsat, item.disallowSat());
  out.flag(kDefbaseable, item.defBaseable());
  if (item.useDefault()) out.keywordInt(kUsedefault, 1);
  out.flag(kDefbased, item.defBased());
  if (item.rand() != 0) out.keywordInt(kRand, static_cast<std::int16_t>(item.rand()));
  if (!item.inTotal()) out.keywordInt(kIntotal, 0);
  if (item.editDlg() != 0) out.keywordInt(kEditdlg, static_cast<std::int16_t>(item.editDlg()));
  if (item.sort() != 0) out.keywordInt(kSort, static_cast<std::int16_t>(item.sort()));
  if (item.autoID != 0) out.keywordLong(kAutoid, item.autoID);
  if (item.autoParent != 0) out.keywordLong(kAutoparent, item.autoParent);
  out.flag(kGeneric, item.generic());
  out.flag(kSetlistcost, item.setListCost());
  out.flag(kSee, item.see());
  out.flag(kChildcostsseparate, item.childCostsSeparate());
  out.flag(kAddaslist, item.addAsList());
  out.flag(kAddwholelist, item.addWholeList());
  out.flag(kAutochargecost, item.autoChargeCost());
  out.flag(kNoautodup, item.noAutoDup());
  if (item.priority() != 0) out.keywordInt(kPriority, static_cast<std::int16_t>(item.priority()));
  if (item.sizeX > 0 && item.sizeY > 0) {
    out.keyword(kSize);
    out.coord(item.sizeX);
    out.coord(item.sizeY);
  }
  out.flag(kKeepcost, item.keepCost());
  out.flag(kDeleteauto, item.deleteAuto());
  out.flag(kInheritopts, item.inheritOpts());
  out.flag(kUniquevar, item.uniqueVar());
  out.flag(kOpen, item.isSublist() && item.open());
  writeAltFormats(out, item.altFormats);
  out.keywordText(kCat, item.cat);
  out.keywordText(kClass, item.className);
  out.keywordText(kOriginal, item.original);
  out.keywordText(kOrigcat, item.origCat);
  out.keywordText(kNotes, item.notes);
  out.keywordText(kFormula, item.formula);
  out.keywordText(kScript, item.script);
  out.keywordText(kDefault, item.defaultText);
  out.keywordText(kDefFormula, item.defFormula);
  out.keywordText(kTotalcostformula, item.totalCostFormula);
  out.keywordText(kCheckexp, item.checkExp);
  out.keywordText(kCheckmsg, item.checkMsg);
  out.keywordText(kFormat, item.format);
  out.keywordText(kSformat, item.sformat);
  out.keywordText(kAlias, item.alias);
  out.keywordText(kLookuparray, item.lookupArray);
  out.keywordText(kVarname, item.varName);
  if (!item.isSublist()) out.keywordText(kPrereq, item.prereq);
  if (!item.options.empty()) writeOptionBlock(out, item.options);
  out.keywordText(kLevel, item.level);
  if (item.cost != 0.0) out.keywordReal(kCost, item.cost);
  if (item.totalCost != 0.0) out.keywordReal(kTotalcost, item.totalCost);
}

}  // namespace

void writeOptionEntry(SheetOut& out, const Option& option) {
  writeOption(out, option);
}

void writeOptionBlock(SheetOut& out, const std::vector<std::unique_ptr<Option>>& options) {
  out.keyword(kOpt);
  for (const auto& option : options)
    writeOption(out, *option);
  out.keyword(kEnd);
}

void writeItemBlock(SheetOut& out, const Item& item) {
  if (item.isSublist()) {
    out.keyword(kSublist);
    out.string(item.name);
    out.keyword(kMemlist);
    out.lineBreak();
    for (const auto& member : item.children)
      writeItemBlock(out, *member);
    out.keyword(kEnd);
  } else {
    out.keyword(kItem);
    out.string(item.name);
  }
  // A sublist's adjustment and automatic items follow its members, with its other keywords.
  out.keywordText(kAdj, item.adj);
  out.keywordText(kAutoitems, item.autoitems);
  writeItemAttributes(out, item);
  out.lineBreak();
}

void writeListBlock(SheetOut& out, const ListInfo& list) {
  auto line = [&out] { out.lineBreak(); };
  out.keyword(kList);
  out.string(list.name.str());
  line();
  out.keywordText(kCatname, list.catName.str());
  out.flag(kOpen, list.open());
  out.keyword(kVar);
  if (!list.totalVarName.empty()) out.string(list.totalVarName.str());
  out.real(list.total);
  line();
  out.keywordText(kListprompt, list.listPrompt.str());
  out.keywordText(kCostprompt, list.costPrompt.str());
  out.keywordText(kLevelprompt, list.levelPrompt.str());
  out.keywordText(kMenuchar, list.menuChar.str());
  if (list.font.fontSize > 0) {
    out.keyword(kFont);
    out.string(list.font.fontFace.str());
    out.integer(list.font.fontSize);
    out.keywordInt(kCharset, list.font.fontCharset);
    out.keywordInt(kPitch, list.font.fontPitch);
    if (list.font.fontColor != 0)
      out.keywordLong(kFontcolor, static_cast<std::int32_t>(list.font.fontColor));
  }
  if (list.loc.width != 0) {
    out.keyword(kLoc);
    out.coord(list.loc.x);
    out.coord(list.loc.y);
    out.coord(list.loc.width);
    out.coord(list.loc.height);
  }
  line();
  if (list.maxItems != 0) out.keywordInt(kMaxitems, static_cast<std::int16_t>(list.maxItems));
  out.keywordText(kCheckexp, list.checkExp);
  out.keywordText(kCheckmsg, list.checkMsg);
  out.keywordText(kDefcheckmsg, list.defCheckMsg);
  out.keywordText(kListheader, list.listHeader);
  if (list.editDlg() != 0) out.keywordInt(kEditdlg, static_cast<std::int16_t>(list.editDlg()));
  out.keywordText(kFormat, list.format);
  out.keywordText(kChangeexp, list.changeExp);
  writeAltFormats(out, list.altFormats);
  out.keywordText(kHelp, list.help);
  line();
  for (const auto& item : list.items)
    writeItemBlock(out, *item);
  out.keyword(kEnd);
  line();
}

}  // namespace zv
