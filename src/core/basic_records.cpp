#include "core/basic_records.h"

namespace zv {

PageInfo PageInfo::forNewDataSheet() {
  PageInfo page;
  page.lm = page.rm = page.tm = page.bm = 1080;
  page.facename = "Times New Roman";
  page.pointsize = 220;
  page.pitch = 18;
  page.tabs.push_back(TabStop{360, 0});
  page.deftab = 720;
  page.columnSpacing = 720;
  return page;
}

}  // namespace zv
