#pragma once
// The texts of the macro processor's messages. All are shown through MacroContext::macroError,
// in a box titled "Macro Error" with "\r\n\r\nAt line %d" behind them.

namespace zv::macro_text {

inline constexpr const char* kTitle = "Macro Error";
inline constexpr const char* kAtLine = "\r\n\r\nAt line %d";
inline constexpr const char* kMainFile = "Main File";
inline constexpr const char* kRepeatName = "$$repeat";
inline constexpr const char* kUnknownName = "(unknown)";

// The numbered messages 62 to 77.
inline constexpr const char* kPrematureEnd = "Premature end in macro '%s' (line %d)";       // 62
inline constexpr const char* kDuplicate = "Duplicate definition of macro '%s' (line %d)";   // 63
inline constexpr const char* kSyntax = "Macro syntax error in '%s' (line %d)";              // 64
inline constexpr const char* kArgSyntax = "Macro argument syntax error in '%s' (line %d)";  // 65
inline constexpr const char* kUnknownArg = "Unknown macro argument in '%s': %s (line %d)";  // 66
inline constexpr const char* kUndefinedMacro = "Undefined macro: '%s' (line %d)";           // 67
inline constexpr const char* kArgCount =
    "Incorrect number of arguments for macro '%s' (line %d)";                            // 68
inline constexpr const char* kArgTooLong = "Macro argument too long in '%s' (line %d)";  // 69
inline constexpr const char* kIfNesting =
    "Maximum $$if nesting level exceeded in '%s' (line %d)";                             // 70
inline constexpr const char* kEndifMissing = "$$Endif missing in macro '%s' (line %d)";  // 71
inline constexpr const char* kEndifWithoutIf =
    "$$Endif found without matching $if... in '%s' (line %d)";  // 72
inline constexpr const char* kElseWithoutIf =
    "$$Else found without matching $$if... in '%s' (line %d)";  // 73
inline constexpr const char* kMissingBraces =
    "Missing opening {{ for body of macro '%s' (line %d)";  // 74
inline constexpr const char* kUnknownOperation =
    "Unknown operation '%s' in macro '%s' (line %d)";                                       // 75
inline constexpr const char* kIncludeNested = "Include files may not be nested (line %d)";  // 76
inline constexpr const char* kIncludeOpen = "Unable to open include file '%s' (line %d)";   // 77

// Reading and expansion.
inline constexpr const char* kIncludeRead = "Read error on include file: expected EOF.";
inline constexpr const char* kNotInMacro = "%s may not be nested inside a macro";
inline constexpr const char* kInsufficientMemory = "Insufficient memory.";
inline constexpr const char* kInvocation =
    "Macro invocation %s must be followed by '(' or tab (line %d)";
inline constexpr const char* kArgUndeclared = "Undeclared value in macro argument list: %s";
inline constexpr const char* kArgMissingParen = "Missing ')' in macro argument list after %s";
inline constexpr const char* kSimpleRecursion = "Too many levels of simple macro recursion: %s";
inline constexpr const char* kNesting =
    "Too many levels of macro nesting while expanding %s (called from %s)";
inline constexpr const char* kNoDefineName = "No define name found: %s, line %d";
inline constexpr const char* kReferenceParen = "')' missing in %s after $(%s), line %d";
inline constexpr const char* kBadIf = "Bad expression in $$if: %s";
inline constexpr const char* kBadElseIf = "Bad expression in $$elseif: %s";

// $$argdesc, $$macrodesc.
inline constexpr const char* kArgDescComma = "Missing comma for $$argdesc in macro %s.";
inline constexpr const char* kArgDescParens = "Missing parentheses for $$argdesc in macro %s.";
inline constexpr const char* kArgDescType = "Unknown argument type %s in macro %s";
inline constexpr const char* kMacroDescParen = "Missing closing paren in $$macrodesc in macro %s";

// $$scan.
inline constexpr const char* kScanUndeclared = "Undeclared value in $$scan: %s (line %d, macro %s)";
inline constexpr const char* kScanFormat = "Error in $$scan format: %s (line %d, macro %s)";
inline constexpr const char* kScanOpen = "Missing '(' in $$scan: %s (line %d, macro %s)";
inline constexpr const char* kScanComma = "Missing ',' in $$scan";
inline constexpr const char* kScanReadFormat =
    "Error reading format in $$scan: %s (line %d, macro %s)";
inline constexpr const char* kScanArgList = "Error reading arg list in $$scan (line %d, macro %s)";
inline constexpr const char* kScanCommaAfter =
    "Missing comma after %s in $$scan (line %d, macro %s)";

// $$error, $$exp.
inline constexpr const char* kErrorText = "%s (%s, line %d)";
inline constexpr const char* kExpParen = "Missing '(' in $$exp (line %d, macro %s)";
inline constexpr const char* kExpString = "Error reading string in $$exp (line %d, macro %s)";
inline constexpr const char* kExpError = "Error in expression in $$exp: %s (line %d, macro %s)";

// $$repeat.
inline constexpr const char* kRepeatSource =
    "$$repeat requires a variable reference $(varname) or string as the first argument.";
inline constexpr const char* kRepeatReference =
    "$$repeat requires string or $(varname) reference as first argument.";
inline constexpr const char* kRepeatComma = "Comma missing after first argument of $$repeat.";
inline constexpr const char* kRepeatUndefined = "The argument for $$repeat %s is not defined.";
inline constexpr const char* kRepeatString = "Unable to get string value for $$repeat";
inline constexpr const char* kRepeatArgument = "Unable to get argument for $$repeat.";
inline constexpr const char* kRepeatPattern = "Unable to get pattern for $$repeat";
inline constexpr const char* kRepeatSeparator = "Unable to get separator for $$repeat";
inline constexpr const char* kRepeatEnd = "Missing $$endrepeat after $$repeat";
inline constexpr const char* kRepeatBadPattern = "Error in $$repeat pattern: %s";
inline constexpr const char* kRepeatMemory = "Out of memory in $$repeat.";

// $$argtype.
inline constexpr const char* kTypeReserved =
    "Type name %s is reserved and not allowed in $$argtype(%s)";
inline constexpr const char* kTypeClass = "Unknown argument class (%s) for argtype %s";
inline constexpr const char* kTypeCommaName = "Expected , after $$argtype(%s";
inline constexpr const char* kTypeCommaClass = "Expected , after class for $$argtype(%s";
inline constexpr const char* kTypeCommaTitle = "Expected , after title for $$argtype(%s";
inline constexpr const char* kTypeCommaPrompt = "Expected , after prompt for $$argtype($s";
inline constexpr const char* kTypeChooseParen = "Missing ) in definition of %s argtype.";
inline constexpr const char* kTypeTerminator = "Missing , or ) after terminator for $$argtype(%s";
inline constexpr const char* kTypeValueList = "Missing ) after value list for $$argtype(%s)";
inline constexpr const char* kTypeChoices = "Bad format in choices for $$argtype(%s)";
inline constexpr const char* kTypeMemory =
    "Unable to allocate memory for argument type definitions for %s";

}  // namespace zv::macro_text
