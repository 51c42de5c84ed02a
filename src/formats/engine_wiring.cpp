#include "formats/engine_wiring.h"

#include "formats/datasheet/data_sheet_loader.h"
#include "formats/sheet/expr_sheet_symbols.h"
#include "rules/install.h"

namespace zv {

void wireEngineServices(EngineContext& context) {
  wireItemRules(context);
  context.services.storeListTotal = storeListTotalInVariable;
  context.services.loadDataSheet = [](FileInfo& sheet, std::string_view name) {
    return ensureDataSheet(&sheet, name, true);
  };
  context.servicesWired = true;
}

void ensureEngineServices() {
  if (!engine().servicesWired) wireEngineServices(engine());
}

}  // namespace zv
