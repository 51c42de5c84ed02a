#pragma once
// Message helpers: every box the engine shows goes through these, and so through the host port.

#include <string>
#include <string_view>

#include "core/host.h"
#include "core/strfmt.h"

namespace zv {

/// A box titled by its severity: "Error", "Warning" or "Message".
void showMessage(Severity severity, std::string_view text);
/// A box with a title of its own.
void showTitled(Severity severity, std::string_view title, std::string_view text);
inline void showError(std::string_view text) { showMessage(Severity::Error, text); }
inline void showWarning(std::string_view text) { showMessage(Severity::Warning, text); }

/// Message 28: a broken invariant, reported with the source file and line; the caller then fails
/// its operation as a read or write error would.
void reportInternalError(const char* file, int line);
#define ZV_INTERNAL_ERROR() ::zv::reportInternalError(__FILE__, __LINE__)

/// A question with the given buttons; the default is the first button of the set.
Button askQuestion(std::string_view title, std::string_view text, ButtonSet buttons);
Button askQuestion(std::string_view title, std::string_view text, ButtonSet buttons,
                   Button defaultButton);

/// Keeps the busy cursor on while it lives; nested uses are counted.
class BusyCursor {
public:
  BusyCursor();
  ~BusyCursor();
  BusyCursor(const BusyCursor&) = delete;
  BusyCursor& operator=(const BusyCursor&) = delete;
};

}  // namespace zv
