#include "expr/builtin_table.h"

#include <algorithm>
#include <array>

#include "core/text.h"
#include "expr/builtin_call.h"
#include "expr/builtins.h"
#include "expr/opcodes.h"

namespace zv {

namespace {

constexpr std::uint8_t k1 = kOpBuiltin1;
constexpr std::uint8_t k2 = kOpBuiltin2;
constexpr std::uint8_t k3 = kOpBuiltin3;
constexpr std::uint8_t k4 = kOpBuiltin4;
constexpr std::uint8_t kN = kOpBuiltinN;

// Sorted ignoring case (checked by a test).
constexpr std::array<BuiltinInfo, 74> kBuiltins = {{
    {"abs", 22, k1},
    {"addelement", 38, k2},
    {"categorybonus", 46, k2},
    {"ceil", 5, k1},
    {"checkrequirements", 70, k3},
    {"childiteminfo", 26, k2},
    {"chrval", 31, k1},
    {"clearmap", 72, k1},
    {"concat", 20, kN},
    {"configparam", 36, k1},
    {"countitems", 18, k4},
    {"dialogfieldvalue", 42, k2},
    {"dround", 7, k1},
    {"dupstr", 21, k2},
    {"eval", 23, k1},
    {"evaluatedefault", 56, k1},
    {"fileexists", 50, kN},
    {"finditemvalue", 54, k3},
    {"float", 1, k1},
    {"format", 11, kN},
    {"getassoc", 43, k2},
    {"getcategorylist", 60, kN},
    {"getfilevalue", 59, k2},
    {"getglobal", 52, k1},
    {"getmap", 66, k2},
    {"getsourcedir", 51, k1},
    {"incategory", 45, k1},
    {"index", 9, k2},
    {"integer", 0, k1},
    {"itemcheckexpression", 63, k1},
    {"itemcostfunction", 62, k1},
    {"iteminfo", 24, k1},
    {"listdirectory", 65, k3},
    {"listentries", 28, k1},
    {"listiteminfo", 29, k3},
    {"listmap", 68, k2},
    {"listoptions", 37, k3},
    {"log", 14, k1},
    {"log10", 15, k1},
    {"lookup", 10, k2},
    {"max", 4, kN},
    {"min", 3, kN},
    {"optavailable", 73, k1},
    {"optcount", 58, k1},
    {"optnumbervalue", 71, k1},
    {"optpresent", 25, k1},
    {"opttextvalue", 32, k1},
    {"optvalue", 30, kN},
    {"parentiteminfo", 27, k1},
    {"putassoc", 44, k3},
    {"putmap", 67, k3},
    {"rand", 6, k1},
    {"removeallelements", 40, k1},
    {"removeelement", 39, k2},
    {"replaceString", 35, k3},
    {"replaceToken", 69, k3},
    {"rolldice", 8, kN},
    {"round", 2, k1},
    {"setconfigparam", 61, k2},
    {"setelement", 55, k3},
    {"setglobal", 53, k2},
    {"setvariable", 57, k2},
    {"sizeof", 17, k1},
    {"sortelements", 41, k2},
    {"split", 34, kN},
    {"sqrt", 13, k1},
    {"strindex", 16, k2},
    {"strlen", 33, k1},
    {"substr", 12, k3},
    {"tolower", 48, k1},
    {"totalitems", 49, k4},
    {"totalitemvalues", 64, k2},
    {"toupper", 47, kN},
    {"variteminfo", 74, k2},
}};

constexpr int kBuiltinIds = 75;

std::array<BuiltinFunction, kBuiltinIds>& registry() {
  static std::array<BuiltinFunction, kBuiltinIds> functions{};
  return functions;
}

}  // namespace

std::span<const BuiltinInfo> builtinTable() {
  return kBuiltins;
}

const BuiltinInfo* findBuiltin(std::string_view name) {
  auto it = std::lower_bound(kBuiltins.begin(), kBuiltins.end(), name,
                             [](const BuiltinInfo& row, std::string_view key) {
                               return compareIgnoringCase(row.name, key) < 0;
                             });
  if (it == kBuiltins.end() || compareIgnoringCase(it->name, name) != 0) return nullptr;
  return &*it;
}

int builtinArity(std::uint8_t token) {
  switch (token) {
    case kOpBuiltin1:
      return 1;
    case kOpBuiltin2:
      return 2;
    case kOpBuiltin3:
      return 3;
    case kOpBuiltin4:
      return 4;
    default:
      return -1;
  }
}

void registerBuiltin(int id, BuiltinFunction fn) {
  if (id >= 0 && id < kBuiltinIds) registry()[static_cast<std::size_t>(id)] = fn;
}

BuiltinFunction registeredBuiltin(int id) {
  if (id < 0 || id >= kBuiltinIds) return nullptr;
  if (BuiltinFunction registered = registry()[static_cast<std::size_t>(id)]) return registered;
  return standardBuiltin(id);
}

}  // namespace zv
