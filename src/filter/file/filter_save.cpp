#include "filter/file/filter_save.h"

#include <cstdio>
#include <fstream>

#include "core/messages.h"
#include "filter/file/translation.h"

namespace zv {

std::string filterFileText(const FilterDocument& document) {
  const FilterStyle& style = document.style;
  std::string out = strprintf("@gamesystem %s\r\n", document.gameSystem.str());
  if (!document.description.empty()) out += strprintf("@description %s\r\n", document.description);
  if (!document.sheetType.empty()) out += strprintf("@sheettype %s\r\n", document.sheetType.str());
  out += strprintf("@margins %d %d %d %d\r\n", document.marginLeft, document.marginTop,
                   document.marginRight, document.marginBottom);
  out += strprintf("@tabwidth %d\r\n", document.tabWidth);
  out += strprintf("@columns %d %d\r\n", style.columns, style.columnGap);
  out += strprintf("@face %s\r\n", style.face.str());
  out += strprintf("@fontinfo %d %x %x %x\r\n", style.size, unsigned{style.flags},
                   unsigned{style.charset}, unsigned{style.pitch});
  out += strprintf("@parinfo %d %d\r\n", style.firstIndent, style.spacing);
  out += strprintf("@leftindent %d\r\n", style.leftIndent);
  out += strprintf("@deftab %d\r\n", style.defaultTab);
  if (!document.clipFormat.empty())
    out += strprintf("@clipformat %s\r\n", document.clipFormat.str());
  if (document.landscape != 0) out += "@landscape 1\n";
  if (!document.extension.empty()) out += strprintf("@extension %s\r\n", document.extension.str());
  if (!document.sortExpression.empty()) {
    out += strprintf("@sortexp %s\r\n", document.sortExpression);
    out += strprintf("@sortorder %d\r\n", document.sortOrder);
  }
  if (!style.tabs.empty()) {
    out += "@tabs";
    for (const FilterTab& tab : style.tabs)
      out += strprintf(" %d %d", tab.alignment, tab.position);
    out += "\r\n";
  }
  for (const FilterTranslation& entry : document.translations) {
    out += "@trans ";
    out += escapeTranslationText(std::string(1, static_cast<char>(entry.code)));
    out += ' ';
    out += escapeTranslationText(entry.text);
    out += '\n';
  }
  out += document.body;
  return out;
}

bool saveFilter(const std::filesystem::path& path, const FilterDocument& document) {
  const std::string bytes = filterFileText(document);
  std::filesystem::path temporary = path;
  temporary += ".tmp";
  for (int n = 1; std::filesystem::exists(temporary); ++n) {
    temporary = path;
    temporary += strprintf(".tmp%d", n);
  }
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.flush();
    if (!out) {
      out.close();
      std::error_code ignored;
      std::filesystem::remove(temporary, ignored);
      showError(strprintf("Error writing file %s", path.string()));
      return false;
    }
  }
  std::error_code error;
  std::filesystem::rename(temporary, path, error);
  if (error) {
    std::filesystem::remove(temporary, error);
    showError(strprintf("Error renaming filter file %s", path.string()));
    return false;
  }
  return true;
}

}  // namespace zv
