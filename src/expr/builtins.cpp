#include "expr/builtins.h"

#include <array>

#include "expr/builtins_items.h"
#include "expr/builtins_system.h"

namespace zv {

namespace {

constexpr std::size_t kBuiltinIds = 75;

constexpr std::array<BuiltinFunction, kBuiltinIds> makeTable() {
  std::array<BuiltinFunction, kBuiltinIds> table{};
  table[0] = &builtinInteger;
  table[1] = &builtinFloat;
  table[2] = &builtinRound;
  table[3] = &builtinMin;
  table[4] = &builtinMax;
  table[5] = &builtinCeil;
  table[6] = &builtinRand;
  table[7] = &builtinDround;
  table[8] = &builtinRolldice;
  table[9] = &builtinIndex;
  table[10] = &builtinLookup;
  table[11] = &builtinFormat;
  table[12] = &builtinSubstr;
  table[13] = &builtinSqrt;
  table[14] = &builtinLog;
  table[15] = &builtinLog10;
  table[16] = &builtinStrindex;
  table[17] = &builtinSizeof;
  table[20] = &builtinConcat;
  table[21] = &builtinDupstr;
  table[22] = &builtinAbs;
  table[31] = &builtinChrval;
  table[33] = &builtinStrlen;
  table[34] = &builtinSplit;
  table[35] = &builtinReplaceString;
  table[38] = &builtinAddelement;
  table[39] = &builtinRemoveelement;
  table[40] = &builtinRemoveallelements;
  table[41] = &builtinSortelements;
  table[43] = &builtinGetassoc;
  table[44] = &builtinPutassoc;
  table[47] = &builtinToupper;
  table[48] = &builtinTolower;
  table[50] = &builtinFileexists;
  table[55] = &builtinSetelement;
  table[57] = &builtinSetvariable;
  table[65] = &builtinListdirectory;
  table[66] = &builtinGetmap;
  table[67] = &builtinPutmap;
  table[68] = &builtinListmap;
  table[69] = &builtinReplaceToken;
  table[72] = &builtinClearmap;
  table[18] = &builtinCountitems;
  table[23] = &builtinEval;
  table[24] = &builtinIteminfo;
  table[26] = &builtinChilditeminfo;
  table[27] = &builtinParentiteminfo;
  table[28] = &builtinListentries;
  table[29] = &builtinListiteminfo;
  table[49] = &builtinTotalitems;
  table[54] = &builtinFinditemvalue;
  table[64] = &builtinTotalitemvalues;
  table[74] = &builtinVariteminfo;
  table[52] = &builtinGetglobal;
  table[36] = &builtinConfigparam;
  table[42] = &builtinDialogfieldvalue;
  table[51] = &builtinGetsourcedir;
  table[59] = &builtinGetfilevalue;
  table[61] = &builtinSetconfigparam;
  table[53] = &builtinSetglobal;
  return table;
}

constexpr std::array<BuiltinFunction, kBuiltinIds> kStandardBuiltins = makeTable();

}  // namespace

BuiltinFunction standardBuiltin(int id) {
  if (id < 0 || id >= static_cast<int>(kBuiltinIds)) return nullptr;
  return kStandardBuiltins[static_cast<std::size_t>(id)];
}

}  // namespace zv
