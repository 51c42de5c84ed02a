#include "formats/tokens/keywords.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "core/text.h"

namespace zv {

namespace {

constexpr std::array<KeywordRow, kKeywordRowCount> kRows{{
    {"add", 62},
    {"addaslist", 119},
    {"addwholelist", 143},
    {"adj", 18},
    {"adjdistcost", 122},
    {"adjdistlevel", 121},
    {"alias", 163},
    {"altformat", 177},
    {"appearance", 5},
    {"array", 28},
    {"assocfiles", 173},
    {"autoadded", 82},
    {"autochargecost", 120},
    {"autoid", 145},
    {"autoitems", 81},
    {"autoparent", 146},
    {"auxcost", 65},
    {"begin", 127},
    {"bgcolor", 153},
    {"bm", 105},
    {"button", 155},
    {"cat", 1},
    {"catname", 47},
    {"cdelay", 184},
    {"center", 35},
    {"changeexp", 193},
    {"chargenScript", 115},
    {"chargenTemplate", 116},
    {"charName", 6},
    {"charset", 126},
    {"charstyle", 93},
    {"checkbox", 30},
    {"checkexp", 41},
    {"checkmsg", 77},
    {"checkoninsert", 182},
    {"childcostsseparate", 136},
    {"class", 2},
    {"columns", 111},
    {"columnSpacing", 112},
    {"colwidth", 175},
    {"combobox", 54},
    {"comment", 176},
    {"constcost", 83},
    {"copyright", 73},
    {"cost", 15},
    {"costprompt", 57},
    {"created", 11},
    {"datafile", 46},
    {"default", 21},
    {"defbaseable", 165},
    {"defbased", 164},
    {"defcheckexp", 78},
    {"defcheckmsg", 79},
    {"defFormula", 70},
    {"define", 26},
    {"deftab", 101},
    {"deleteauto", 147},
    {"description", 140},
    {"desiredLevel", 8},
    {"dialog", 38},
    {"disallowsat", 195},
    {"dispbm", 157},
    {"dispexp", 139},
    {"dontmarkauto", 128},
    {"dsid", 170},
    {"dupexpected", 168},
    {"editdlg", 118},
    {"edittext", 31},
    {"editvar", 36},
    {"end", 3},
    {"exp", 56},
    {"facename", 94},
    {"filter", 53},
    {"firstindent", 98},
    {"font", 37},
    {"fontcolor", 159},
    {"fontexp", 160},
    {"fontindex", 161},
    {"fontlist", 158},
    {"forceconst", 52},
    {"format", 42},
    {"formula", 17},
    {"frac", 60},
    {"func", 27},
    {"gamesystem", 66},
    {"generic", 91},
    {"groupbox", 32},
    {"height", 22},
    {"help", 75},
    {"info", 4},
    {"inheritopts", 133},
    {"intotal", 71},
    {"intsize", 197},
    {"item", 14},
    {"itemref", 130},
    {"itemrefcat", 144},
    {"just", 100},
    {"keepcost", 132},
    {"keepold", 169},
    {"left", 33},
    {"level", 20},
    {"levelprompt", 58},
    {"lineheight", 99},
    {"list", 13},
    {"listheader", 125},
    {"listprompt", 68},
    {"lm", 102},
    {"loc", 40},
    {"logo", 88},
    {"lookuparray", 80},
    {"main", 39},
    {"maxAttempts", 138},
    {"maxitems", 117},
    {"memlist", 45},
    {"menuchar", 67},
    {"menupos", 113},
    {"menuposition", 114},
    {"mod", 19},
    {"mult", 61},
    {"new", 12},
    {"noadj", 188},
    {"noautodup", 148},
    {"noborder", 154},
    {"nocheckoninsert", 194},
    {"noedit", 166},
    {"noinherit", 198},
    {"noprereq", 189},
    {"noprint", 137},
    {"notes", 10},
    {"notesloc", 51},
    {"notesopen", 150},
    {"noviolation", 167},
    {"open", 134},
    {"opt", 55},
    {"options", 64},
    {"origcat", 109},
    {"original", 76},
    {"pageinfo", 107},
    {"percent", 63},
    {"picture", 84},
    {"pitch", 96},
    {"pixinx", 186},
    {"pixiny", 187},
    {"playerName", 7},
    {"pointsize", 95},
    {"prereq", 49},
    {"priority", 174},
    {"ptemplate", 59},
    {"qual", 181},
    {"rand", 129},
    {"realsize", 196},
    {"richtext", 178},
    {"right", 34},
    {"rm", 103},
    {"rounding", 72},
    {"rtloc", 180},
    {"rtopen", 179},
    {"ruleset", 190},
    {"runchargen", 142},
    {"script", 156},
    {"scriptadded", 151},
    {"see", 171},
    {"selitem", 192},
    {"setlistcost", 135},
    {"sformat", 48},
    {"sheettype", 141},
    {"shortcuts", 183},
    {"size", 185},
    {"skin", 152},
    {"sort", 90},
    {"story", 9},
    {"strings", 50},
    {"sublist", 44},
    {"tabs", 92},
    {"tabwidth", 106},
    {"template", 74},
    {"text", 29},
    {"textcolor", 97},
    {"textline", 191},
    {"title", 87},
    {"tm", 104},
    {"totalcost", 124},
    {"totalcostformula", 108},
    {"transparent", 162},
    {"ulist", 123},
    {"uniquevar", 131},
    {"univar", 14},
    {"unspent", 24},
    {"usedefault", 69},
    {"usedefvarname", 149},
    {"usemsg", 172},
    {"value", 16},
    {"var", 25},
    {"varname", 43},
    {"version", 110},
    {"weight", 23},
}};

// Names by id, for the writer: the first row in the table order above that carries each id.
struct NamesById {
  std::array<std::string_view, 256> names{};
  NamesById() {
    for (const KeywordRow& row : kRows) {
      if (names[static_cast<size_t>(row.id)].empty()) names[static_cast<size_t>(row.id)] = row.name;
    }
    names[kItem] = "item";
  }
};

// The rows of each first letter (ignoring case), and the longest name: a word is looked up only
// among the rows of its first letter, and a longer word is no keyword at all.
struct RowsByFirstLetter {
  std::array<std::uint16_t, 257> start{};
  std::size_t longest = 0;
  RowsByFirstLetter() {
    std::array<std::uint16_t, 256> count{};
    for (const KeywordRow& row : kRows) {
      ++count[toLowerChar(static_cast<unsigned char>(row.name[0]))];
      longest = std::max(longest, row.name.size());
    }
    for (std::size_t c = 0; c < 256; ++c)
      start[c + 1] = static_cast<std::uint16_t>(start[c] + count[c]);
  }
};

}  // namespace

const KeywordRow* keywordRows() {
  return kRows.data();
}

int keywordId(std::string_view name) {
  static const RowsByFirstLetter letters;
  if (name.empty() || name.size() > letters.longest) return 0;
  const unsigned char first = toLowerChar(static_cast<unsigned char>(name[0]));
  size_t low = letters.start[first];
  size_t high = letters.start[first + 1];
  while (low < high) {
    size_t mid = (low + high) / 2;
    int order = compareIgnoringCase(kRows[mid].name, name);
    if (order == 0) return kRows[mid].id;
    if (order < 0) {
      low = mid + 1;
    } else {
      high = mid;
    }
  }
  return 0;
}

std::string_view keywordName(int id) {
  static const NamesById byId;
  if (id <= 0 || id >= 256) return {};
  return byId.names[static_cast<size_t>(id)];
}

}  // namespace zv
