// The compiler: precedence and associativity, name resolution, literal-only compiles, and the
// numbered errors with their texts.

#include <string>

#include "core/fileinfo.h"
#include "expr/lexer.h"
#include "expr/opcodes.h"
#include "expr_test_support.h"

namespace zv::testing {
namespace {

struct Case {
  const char* text;
  const char* expected;
};

class CompilerTest : public ExprTest {
 protected:
  void check(std::initializer_list<Case> cases) {
    for (const Case& c : cases)
      EXPECT_EQ(eval(c.text), c.expected) << c.text;
  }
};

TEST_F(CompilerTest, PrecedenceAndAssociativity) {
  check({
      {"2 + 3 * 4", "int 14"},
      {"(2 + 3) * 4", "int 20"},
      {"10 - 4 - 3", "int 3"},
      {"2 * 3 ^ 2", "int 18"},
      {"2^3^2", "int 64"},
      {"-2^2", "int 4"},
      {"1 ? 2 : 3 ? 4 : 5", "int 4"},
      {"0 ? 2 : 0 ? 4 : 5", "int 5"},
      {"not 2 = 1", "int 0"},
      {"3 > 2 > 1", "int 0"},
      {"1 < 2 < 3", "int 1"},
      {"1 or 0 and 0", "int 1"},
      {"1 + 2 = 3", "int 1"},
      {"1 = 1 and 2 = 2", "int 1"},
      {"12 / 4 * 3", "float 9"},
      {"2 * (3 + (4 - 1)) mod 5", "int 2"},
      {"1)", "int 1"},
  });
}

TEST_F(CompilerTest, ErrorsAtCompileTime) {
  struct ErrorCase {
    const char* text;
    int code;
    const char* message;
  };
  const ErrorCase cases[] = {
      {"", -26, "Internal error"},
      {"   ", -26, "Internal error"},
      {"()", -30, "Empty expression"},
      {"\"abc", -30, "Empty expression"},
      {"a # b", -12, "Bad operator"},
      {"\xBD%", -12, "Bad operator"},
      {"(1 + 2", -8, "Expression incomplete"},
      {"t[1", -8, "Expression incomplete"},
  };
  for (const ErrorCase& c : cases) {
    EXPECT_EQ(errorOf(c.text), c.code) << c.text;
    EXPECT_EQ(expressionErrorText(), c.message) << c.text;
  }
}

TEST_F(CompilerTest, ErrorsAtRunTime) {
  struct ErrorCase {
    const char* text;
    int code;
  };
  std::string forty;
  for (int i = 0; i < 40; ++i)
    forty += "1 ";
  std::string thirtyNine;
  for (int i = 0; i < 39; ++i)
    thirtyNine += "1 ";
  const ErrorCase cases[] = {
      {"1 +", -5},   {"2 3", -8},     {"1 ? 2", -5},       {"1, 2", -8},
      {"1 & 1", -8}, {"x := 1", -26}, {forty.c_str(), -7}, {thirtyNine.c_str(), -8},
  };
  for (const ErrorCase& c : cases) {
    Code code;
    bool isConstant = false;
    EXPECT_GT(compileExpression(&table_, c.text, code, {}, isConstant), 0) << c.text;
    EXPECT_EQ(errorOf(c.text), c.code) << c.text;
  }
}

TEST_F(CompilerTest, OperatorStackHoldsFortyEntries) {
  std::string minuses(41, '-');
  EXPECT_EQ(errorOf(minuses + "1"), -7);
  EXPECT_EQ(expressionErrorText(), "Stack overflow or missing argument");
  std::string fewer(38, '-');
  EXPECT_EQ(eval(fewer + "1"), "int 1");
}

TEST_F(CompilerTest, CodeLengthLimit) {
  std::string longText = "\"" + std::string(70000, 'x') + "\"";
  EXPECT_EQ(errorOf(longText), -3);
  EXPECT_EQ(expressionErrorText(), "No memory");
  std::string fits = "\"" + std::string(60000, 'x') + "\"";
  EXPECT_EQ(errorOf(fits), 0);
}

TEST_F(CompilerTest, CompileReportsLengthAndConstancy) {
  Code code;
  bool isConstant = false;
  int length = compileExpression(&table_, "1 + 2", code, {}, isConstant);
  EXPECT_EQ(length, 5 + 5 + 1 + 1);  // two integer literals, add, end
  EXPECT_EQ(static_cast<std::size_t>(length), code.size());
  EXPECT_EQ(lastErrorCode(), length);
  EXPECT_TRUE(isConstant);
  EXPECT_EQ(code.back(), kOpEnd);

  EXPECT_GT(compileExpression(&table_, "1 + x", code, {}, isConstant), 0);
  EXPECT_FALSE(isConstant);
}

TEST_F(CompilerTest, NullTableAllowsOnlyConstants) {
  Code code;
  bool isConstant = false;
  EXPECT_EQ(compileExpression(nullptr, "1 + x", code, {}, isConstant), -19);
  EXPECT_EQ(expressionErrorText(), "Only constants allowed");
  EXPECT_EQ(compileExpression(nullptr, "abs(1)", code, {}, isConstant), -19);
  Value out;
  ASSERT_EQ(parseExp(nullptr, "1 + 2", out), 0);
  EXPECT_EQ(describe(out), "int 3");
}

TEST_F(CompilerTest, UnknownNamesBecomePlaceholders) {
  EXPECT_EQ(eval("later + 1"), "float 1");
  Symbol* later = table_.find("LATER");
  ASSERT_NE(later, nullptr);
  EXPECT_TRUE(later->undefined());
  EXPECT_TRUE(later->isVariable());
  EXPECT_EQ(later->name, "later");
}

TEST_F(CompilerTest, ResolverAnswersFirstAsLiterals) {
  table_.setResolver([](std::string_view name, Value& out) {
    if (name == "@cost") {
      out.setFloat(2.5);
      return true;
    }
    if (name == "@name") {
      out.setString("Sword\\n");
      return true;
    }
    if (name == "@level") {
      out.setInteger(3);
      return true;
    }
    return false;
  });
  Code code;
  bool isConstant = true;
  ASSERT_GT(compileExpression(&table_, "@cost", code, {}, isConstant), 0);
  EXPECT_EQ(code[0], kOpFloat);
  EXPECT_FALSE(isConstant);
  EXPECT_EQ(eval("@cost * 2"), "float 5");
  EXPECT_EQ(eval("@level + 1"), "int 4");
  EXPECT_EQ(eval("@name"), "string \"Sword\r\n\"");
  EXPECT_EQ(table_.find("@cost"), nullptr);
  // The previous resolver comes back for restoring.
  SymbolTable::Resolver previous = table_.setResolver(nullptr);
  EXPECT_TRUE(static_cast<bool>(previous));
  EXPECT_EQ(eval("@level"), "float 0");  // now a placeholder variable
}

bool testAttributes(const FileInfo&, std::string_view name, Value& out) {
  if (name == "currentversion") {
    out.setInteger(253);
    return true;
  }
  if (name == "gamesystem") {
    out.setString("Tiny");
    return true;
  }
  return false;
}

TEST_F(CompilerTest, SheetAttributesOfAnOwnedTable) {
  engineContext_->services.sheetAttribute = testAttributes;
  FileInfo sheet;
  table_.owner = &sheet;
  EXPECT_EQ(eval("@currentversion"), "int 253");
  EXPECT_EQ(eval("@gamesystem"), "string \"Tiny\"");
  EXPECT_EQ(eval("@nosuchattribute"), "int 0");
  EXPECT_EQ(table_.find("@nosuchattribute"), nullptr);
  table_.owner = nullptr;
}

TEST_F(CompilerTest, BasicSheetAttributes) {
  FileInfo sheet;
  sheet.name = "hero.chr";
  sheet.gameSystemName = "Tiny";
  sheet.notes = "Brave";
  sheet.sheetType = "PC";
  sheet.level = 4;
  sheet.dataFiles = {"base.cds", "magic.cds"};
  host_.setFixedTime(LocalTime{2024, 3, 9, 10, 0, 0, true});
  table_.owner = &sheet;
  check({
      {"@currentversion", "int 253"},
      {"@filename", "string \"hero.chr\""},
      {"@GameSystem", "string \"Tiny\""},
      {"@notes", "string \"Brave\""},
      {"@sheettype", "string \"PC\""},
      {"@charsheetlevel", "int 4"},
      {"@datasheets", "string \"base.cds,magic.cds\""},
      {"@date", "string \"3/9/2024\""},
      {"@pagenumber", "int 0"},
      {"@unknown + 1", "int 1"},
  });
  host_.setFixedTime(LocalTime{});
  EXPECT_EQ(eval("@date"), "string \"1/1/1997\"");
  table_.owner = nullptr;
}

TEST_F(CompilerTest, ReservedNames) {
  EXPECT_TRUE(isReservedName("and"));
  EXPECT_TRUE(isReservedName("ENDWHILE"));
  EXPECT_TRUE(isReservedName("Abs"));
  EXPECT_TRUE(isReservedName("replacestring"));
  EXPECT_FALSE(isReservedName("strength"));
  EXPECT_EQ(defineVariable(table_, "and", "1"), nullptr);
  EXPECT_EQ(expressionErrorText(), "Name is a reserved word: and");
  EXPECT_EQ(defineVariable(table_, "ABS", "1"), nullptr);
  EXPECT_EQ(expressionErrorText(), "Name is a reserved word: ABS");
}

TEST_F(CompilerTest, LexerTokens) {
  struct TokenCase {
    const char* text;
    int code;
    const char* tokenText;
  };
  const TokenCase cases[] = {
      {"<=", kOpLessEqual, "<="},  {"<>", kOpNotEqual, "<>"},
      {"!=", kOpNotEqual, "!="},   {":=", kOpStore, ":="},
      {":", kOpColon, ":"},        {"\xD7", kOpMultiply, "\xD7"},
      {"Mod", kOpMod, "Mod"},      {"~x", kOpName, "~x"},
      {"&_y", kOpName, "&_y"},     {"a`b c`d e", kOpName, "a`b c`d"},
      {"@cost", kOpName, "@cost"}, {"`abc", kOpName, "`abc"},
      {"#", kOpIllegal, "#"},      {"&5", kOpInteger, "5"},
  };
  for (const TokenCase& c : cases) {
    ExprToken token;
    nextExpressionToken(c.text, 0, token);
    EXPECT_EQ(token.code, c.code) << c.text;
    EXPECT_EQ(token.text, c.tokenText) << c.text;
  }
  ExprToken token;
  EXPECT_EQ(nextExpressionToken("", 0, token), kNoPosition);
  EXPECT_EQ(token.code, kOpEnd);
  EXPECT_EQ(nextExpressionToken("a`b\x01`", 0, token), kNoPosition);
  std::string longName(70, 'n');
  EXPECT_EQ(nextExpressionToken(longName + "+", 0, token), 70u);
  EXPECT_EQ(token.text, std::string(64, 'n'));
}

TEST_F(CompilerTest, ErrorTextsOfEveryCode) {
  const char* texts[] = {"No error",
                         "Symbol undefined NAME",
                         "Variable redefined NAME",
                         "No memory",
                         "Variable recursively defined",
                         "Stack underflow or missing argument",
                         "Variable of wrong type for indexing or array undefined",
                         "Stack overflow or missing argument",
                         "Expression incomplete",
                         "Expression too complicated",
                         "Ill-formed string",
                         "Error in array definition",
                         "Bad operator",
                         "Duplicate argument: NAME",
                         "Comma or parenthesis expected in function definition",
                         "Incomplete function definition",
                         "Symbol expected for argument",
                         "Function name expected",
                         "Bad format invocation",
                         "Only constants allowed",
                         "Bad procedure declaration",
                         "Illegal symbol for local variable name: NAME",
                         "No return in procedure: must be last statement before }",
                         "Parenthesis missing around if",
                         "Unrecognized statement: NAME",
                         "Semicolon missing",
                         "Internal error",
                         "Local variable 'NAME' redefined",
                         "Local variable 'NAME' undefined",
                         "Assignment missing",
                         "Empty expression",
                         "Error in array NAME, element 7",
                         "Missing parenthesis around while expression",
                         "Name is a reserved word: NAME",
                         "Odd number of elements in associative array: NAME",
                         "User interrupt in NAME",
                         "Bad default value",
                         "Variable in default value missing",
                         "Recursive optValue reference",
                         "Number too large",
                         "Unable to format expression option."};
  for (int code = 0; code >= -40; --code) {
    EXPECT_EQ(expressionErrorText(code, "NAME", 7), texts[-code]) << code;
  }
  EXPECT_EQ(expressionErrorText(-41, "NAME", 0), "Unknown error -41");
  EXPECT_EQ(expressionErrorText(12, "NAME", 0), "Unknown error 12");
  EXPECT_EQ(expressionErrorText(-2, std::string(70, 'v'), 0),
            "Variable redefined " + std::string(64, 'v'));
}

TEST_F(CompilerTest, ReportShowsTheErrorAndTheExpression) {
  EXPECT_EQ(errorOf("1 +"), -5);
  reportExpressionError("1 +");
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0],
            "[Error] Expression error: Stack underflow or missing argument (1 +)");
}

}  // namespace
}  // namespace zv::testing
