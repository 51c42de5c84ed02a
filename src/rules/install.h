#pragma once
// Installs the item rules where the expression engine's item fields ask for option texts.

namespace zv {

/// Gives the expression engine the option rules of this library (option strings, display texts,
/// option references and the category test) and registers the built-in functions that stand on
/// the item rules (rules/builtins.h), and joins the requirements of a sheet to its level changes
/// (rules/requirements_check.h). Call once at start-up.
void installItemRules();

}  // namespace zv
