#include "filter/file/filter_messages.h"

#include "core/messages.h"

namespace zv {

void reportFilterError(std::string_view text, int line) {
  showTitled(Severity::Error, kFilterErrorTitle, strprintf("%s\r\n\r\nLine: %d", text, line));
}

}  // namespace zv
