#pragma once
// The built-in functions of the expression language that stand on the item rules: options,
// level and cost, categories and requirements. wireItemRules registers them with the
// expression engine, which does not know this library.

#include "expr/builtin_call.h"

namespace zv {

/// Registers every built-in below under its id.
void registerRuleBuiltins();

// Options of the current item.
int builtinOptavailable(BuiltinCall& call);    ///< optavailable(name)
int builtinOptpresent(BuiltinCall& call);      ///< optpresent(name)
int builtinOptcount(BuiltinCall& call);        ///< optcount(name)
int builtinOptvalue(BuiltinCall& call);        ///< optvalue(name [, n]), optvalue(list, key, name)
int builtinOpttextvalue(BuiltinCall& call);    ///< opttextvalue(name)
int builtinOptnumbervalue(BuiltinCall& call);  ///< optnumbervalue(name)
int builtinListoptions(BuiltinCall& call);     ///< listoptions(field, name, separator)

// Level and cost of the current item.
int builtinItemcostfunction(BuiltinCall& call);     ///< itemcostfunction(level)
int builtinItemcheckexpression(BuiltinCall& call);  ///< itemcheckexpression(level)
int builtinEvaluatedefault(BuiltinCall& call);      ///< evaluatedefault(x)

// Categories.
int builtinIncategory(BuiltinCall& call);     ///< incategory(name)
int builtinCategorybonus(BuiltinCall& call);  ///< categorybonus(list, item)
int builtinGetcategorylist(
    BuiltinCall& call);  ///< getcategorylist(list, names [, costs [, counts]])

// Requirements.
int builtinCheckrequirements(BuiltinCall& call);  ///< checkrequirements(list, excludedTest, adding)

}  // namespace zv
