#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "builtin_test_support.h"

namespace zv::testing {
namespace {

class ArrayBuiltinsTest : public BuiltinTest {
 protected:
  Value ref(Symbol& array) { return Value::arrayRef(&array); }

  /// The elements, described and joined by ", ".
  std::string contents(const Symbol& array) {
    std::string out;
    for (const Value& element : array.elements) {
      if (!out.empty()) out += ", ";
      out += describe(element);
    }
    return out;
  }
};

TEST_F(ArrayBuiltinsTest, CountsAndSearches) {
  Symbol& t = makeArray("t", {I(10), I(20), I(30)});
  Symbol& mixed = makeArray("mixed", {S("Abc"), F(2.0), S("7x")});
  Symbol& empty = makeArray("empty", {});
  const BuiltinCase cases[] = {
      {"sizeof", {ref(t)}, "int 3"},
      {"sizeof", {ref(empty)}, "int 0"},
      {"index", {ref(t), I(20)}, "int 2"},
      {"index", {ref(t), I(99)}, "int -1"},
      {"index", {ref(t), S("20")}, "int 2"},
      {"index", {ref(t), F(30.0)}, "int 3"},
      {"index", {ref(empty), I(0)}, "int -1"},
      {"index", {ref(mixed), S("aBC")}, "int 1"},
      {"index", {ref(mixed), I(2)}, "int 2"},
      {"index", {ref(mixed), I(7)}, "int 3"},  // mixed kinds meet as doubles
      {"index", {ref(mixed), S("2")}, "int 2"},
      {"index", {ref(mixed), S("abc ")}, "int -1"},
  };
  for (const BuiltinCase& c : cases) {
    EXPECT_EQ(run(c.name, c.args), c.expected) << c.name << " " << describe(c.args.back());
  }
}

TEST_F(ArrayBuiltinsTest, LookupIsAStepFunction) {
  Symbol& k = makeArray("k", {I(10), S("a"), I(20), S("b"), I(30), S("c")});
  Symbol& e = makeArray("e", {});
  const BuiltinCase cases[] = {
      {"lookup", {ref(k), I(5)}, "string \"a\""},  {"lookup", {ref(k), I(10)}, "string \"a\""},
      {"lookup", {ref(k), I(15)}, "string \"b\""}, {"lookup", {ref(k), F(20.5)}, "string \"c\""},
      {"lookup", {ref(k), I(99)}, "string \"c\""}, {"lookup", {ref(e), I(1)}, "int 0"},
  };
  for (const BuiltinCase& c : cases) {
    EXPECT_EQ(run(c.name, c.args), c.expected) << describe(c.args.back());
  }
}

TEST_F(ArrayBuiltinsTest, AddingRemovingAndSetting) {
  Symbol& t = makeArray("t", {I(10), I(20), I(30)});
  EXPECT_EQ(run("addelement", {ref(t), S("x")}), "int 4");
  EXPECT_EQ(run("removeelement", {ref(t), I(9)}), "int -1");
  EXPECT_EQ(run("removeelement", {ref(t), I(0)}), "int -1");
  EXPECT_EQ(run("removeelement", {ref(t), I(2)}), "int 3");
  EXPECT_EQ(contents(t), "int 10, int 30, string \"x\"");

  Symbol& e = makeArray("e", {});
  EXPECT_EQ(run("setelement", {ref(e), I(5), I(7)}), "int 5");
  EXPECT_EQ(contents(e), "int 0, int 0, int 0, int 0, int 7");
  EXPECT_EQ(run("setelement", {ref(e), I(0), I(7)}), "int 0");
  EXPECT_EQ(run("setelement", {ref(e), I(65537), I(1)}), "int 0");
  EXPECT_EQ(run("setelement", {ref(e), I(2), S("two")}), "int 2");
  EXPECT_EQ(run("sizeof", {ref(e)}), "int 5");
  EXPECT_EQ(run("removeelement", {ref(e), I(1)}), "int 4");
  EXPECT_EQ(run("removeallelements", {ref(e)}), "int 0");
  EXPECT_EQ(run("sizeof", {ref(e)}), "int 0");
  EXPECT_EQ(run("removeelement", {ref(e), I(1)}), "int 0");
}

TEST_F(ArrayBuiltinsTest, SortingBothWays) {
  Symbol& s = makeArray("s", {I(3), I(1), I(2)});
  EXPECT_EQ(run("sortelements", {ref(s), I(1)}), "int 3");
  EXPECT_EQ(contents(s), "int 1, int 2, int 3");
  EXPECT_EQ(run("sortelements", {ref(s), I(0)}), "int 3");
  EXPECT_EQ(contents(s), "int 3, int 2, int 1");

  Symbol& words = makeArray("words", {S("pear"), S("Apple"), S("banana"), S("apricot")});
  run("sortelements", {ref(words), I(1)});
  EXPECT_EQ(contents(words),
            "string \"Apple\", string \"apricot\", string \"banana\", string \"pear\"");
}

TEST_F(ArrayBuiltinsTest, SortingManyValuesOfMixedKindsStaysInBounds) {
  std::vector<Value> values;
  for (int i = 0; i < 500; ++i) {
    values.push_back(i % 3 == 0   ? S(std::to_string(i * 7 % 101))
                     : i % 3 == 1 ? I(i * 13 % 97)
                                  : F(i * 0.5));
  }
  Symbol& many = makeArray("many", values);
  EXPECT_EQ(run("sortelements", {ref(many), I(1)}), "int 500");
  Symbol& numbers = makeArray("numbers", {});
  for (int i = 0; i < 300; ++i)
    numbers.elements.push_back(I((i * 7919) % 1000));
  run("sortelements", {ref(numbers), I(0)});
  for (std::size_t i = 1; i < numbers.elements.size(); ++i) {
    ASSERT_GE(numbers.elements[i - 1].integer(), numbers.elements[i].integer()) << i;
  }
}

TEST_F(ArrayBuiltinsTest, AssociativePairs) {
  Symbol& h = makeArray("h", {S("a"), I(1), S("b"), I(2)});
  EXPECT_EQ(run("getassoc", {ref(h), S("B")}), "int 2");
  EXPECT_EQ(run("getassoc", {ref(h), S("z")}), "int 0");
  EXPECT_EQ(run("putassoc", {ref(h), S("c"), I(3)}), "int 6");
  EXPECT_EQ(run("putassoc", {ref(h), S("A"), I(9)}), "int 6");
  EXPECT_EQ(contents(h), "string \"a\", int 9, string \"b\", int 2, string \"c\", int 3");

  Symbol& h3 = makeArray("h3", {I(1), I(2), I(3)});
  EXPECT_EQ(run("getassoc", {ref(h3), I(1)}), "error -34");
  EXPECT_EQ(expressionErrorText(), "Odd number of elements in associative array: h3");
  EXPECT_EQ(run("putassoc", {ref(h3), I(1), I(5)}), "error -34");
  EXPECT_EQ(run("sizeof", {ref(h3)}), "int 3");
}

TEST_F(ArrayBuiltinsTest, OnlyArraysWillDo) {
  Symbol& variable = define("v", "3");
  Value notArray = Value::arrayRef(&variable);
  const BuiltinCase cases[] = {
      {"sizeof", {I(3)}, "error -6"},
      {"sizeof", {notArray}, "error -6"},
      {"index", {S("t"), I(1)}, "error -6"},
      {"lookup", {I(0), I(1)}, "error -6"},
      {"addelement", {S("t"), I(1)}, "error -6"},
      {"removeelement", {S("t"), I(1)}, "error -6"},
      {"removeallelements", {S("t")}, "error -6"},
      {"setelement", {S("t"), I(1), I(1)}, "error -6"},
      {"sortelements", {S("t"), I(1)}, "error -6"},
      {"getassoc", {S("t"), I(1)}, "error -6"},
      {"putassoc", {S("t"), I(1), I(1)}, "error -6"},
      {"listdirectory", {S("t"), S("."), S("*")}, "error -6"},
  };
  for (const BuiltinCase& c : cases)
    EXPECT_EQ(run(c.name, c.args), c.expected) << c.name;
}

class FileBuiltinsTest : public ArrayBuiltinsTest {
 protected:
  FileBuiltinsTest() {
    dir_ = std::filesystem::temp_directory_path() /
           ("zv_builtins_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
            "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(dir_);
    std::filesystem::create_directories(dir_ / "Sub.dir");
    for (const char* name : {"b.txt", "A.TXT", "c.cds", "notes"})
      std::ofstream(dir_ / name) << "x";
  }
  ~FileBuiltinsTest() override { std::filesystem::remove_all(dir_); }

  std::filesystem::path dir_;
};

TEST_F(FileBuiltinsTest, Fileexists) {
  std::string dir = dir_.string();
  const BuiltinCase cases[] = {
      {"fileexists", {S(dir + "/b.txt")}, "int 1"},
      {"fileexists", {S(dir)}, "int 0"},  // a directory isn't a file
      {"fileexists", {S(dir + "/missing")}, "int 0"},
      {"fileexists", {S(dir), S("b.txt")}, "int 1"},
      {"fileexists", {S(dir + "/"), S("notes")}, "int 1"},
      {"fileexists", {S(dir), S("Sub.dir")}, "int 0"},
      {"fileexists", {S(dir + "\\c.cds")}, "int 1"},
      {"fileexists", {S("")}, "int 0"},
      {"fileexists", {}, "error -5"},
  };
  for (const BuiltinCase& c : cases) {
    EXPECT_EQ(run(c.name, c.args), c.expected) << describe(c.args.empty() ? I(0) : c.args.back());
  }
}

TEST_F(FileBuiltinsTest, ListdirectoryMatchesWildcards) {
  Symbol& names = makeArray("names", {S("old")});
  std::string dir = dir_.string();
  EXPECT_EQ(run("listdirectory", {ref(names), S(dir), S("*.txt")}), "int 2");
  EXPECT_EQ(contents(names), "string \"A.TXT\", string \"b.txt\"");
  EXPECT_EQ(run("listdirectory", {ref(names), S(dir), S("*.cds; ?ote?")}), "int 2");
  EXPECT_EQ(contents(names), "string \"c.cds\", string \"notes\"");
  EXPECT_EQ(run("listdirectory", {ref(names), S(dir), S("*.*")}), "int 5");
  EXPECT_EQ(run("listdirectory", {ref(names), S(dir), S("*.dir")}), "int 1");
  EXPECT_EQ(run("listdirectory", {ref(names), S(dir), S("")}), "int 0");
  EXPECT_EQ(run("listdirectory", {ref(names), S(dir + "/none"), S("*")}), "int 0");
  EXPECT_EQ(run("listdirectory", {ref(names), I(1), S("*")}), "error -6");
}

class MapBuiltinsTest : public BuiltinTest {};

TEST_F(MapBuiltinsTest, StoreReadListAndClear) {
  EXPECT_EQ(run("getmap", {S("m"), S("k")}), "int 0");
  EXPECT_EQ(run("listmap", {S("m"), S(",")}), "string \"\"");
  EXPECT_EQ(table_.maps(), nullptr);
  EXPECT_EQ(run("putmap", {S("m"), S("k"), I(42)}), "int 0");
  EXPECT_NE(table_.maps(), nullptr);
  EXPECT_EQ(run("getmap", {S("m"), S("k")}), "int 42");
  EXPECT_EQ(run("getmap", {S("M"), S("K")}), "int 42");
  EXPECT_EQ(run("getmap", {S("m"), S("x")}), "int 0");
  EXPECT_EQ(run("getmap", {S("zz"), S("k")}), "int 0");
  EXPECT_EQ(run("listmap", {S("m"), S(",")}), "string \"k\"");
  EXPECT_EQ(run("putmap", {S("m"), S("b"), S("text")}), "int 0");
  EXPECT_EQ(run("putmap", {S("m"), I(7), F(1.5)}), "int 0");
  EXPECT_EQ(run("getmap", {S("m"), S("7")}), "float 1.5");
  EXPECT_EQ(run("listmap", {S("m"), S(" | ")}), "string \"7 | b | k\"");
  EXPECT_EQ(run("clearmap", {S("m")}), "int 0");
  EXPECT_EQ(run("listmap", {S("m"), S(",")}), "string \"\"");
  EXPECT_EQ(run("getmap", {S("m"), S("k")}), "int 0");
  EXPECT_EQ(run("clearmap", {S("never")}), "int 0");
}

}  // namespace
}  // namespace zv::testing
