#pragma once
// Installs the item rules where the expression engine's item fields ask for option texts.

namespace zv {

/// Gives the expression engine the option rules of this library (option strings, display texts
/// and option references). Call once at start-up.
void installItemRules();

}  // namespace zv
