// zarvelin-cli print: a sample character through the sample template into a PDF, read back with
// poppler's pdfinfo and pdftotext; refused checks and bad templates write no file; convert keeps
// a template's bytes.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;

const std::string kData = ZV_SAMPLE_DATA_DIR;

std::string capture(const std::string& command) {
  std::string out;
  if (FILE* pipe = ::popen(command.c_str(), "r")) {
    char buffer[4096];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
      out.append(buffer, n);
    ::pclose(pipe);
  }
  return out;
}

bool havePoppler() {
  return std::system("command -v pdfinfo >/dev/null 2>&1") == 0;
}

std::string readAll(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

class PrintCommand : public ::testing::Test {
 protected:
  void SetUp() override {
    // Qt's threads end after the leak checker looks; leaks are the unit tests' concern.
    ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    dir_ = fs::temp_directory_path() / ("zv-print-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
    pdf_ = (dir_ / "out.pdf").string();
  }
  void TearDown() override { fs::remove_all(dir_); }
  zv::testing::CliResult run(std::vector<std::string> args) {
    args.insert(args.begin(), {"--data-dir", kData});
    return zv::testing::runCli(args);
  }
  fs::path dir_;
  std::string pdf_;
};

TEST_F(PrintCommand, ASampleCharacterPrintsWithItsNamesAndTotals) {
  auto result = run({"print", kData + "/characters/Maren Vell.chr", "--pdf", pdf_});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  ASSERT_TRUE(fs::exists(pdf_));
  if (!havePoppler()) GTEST_SKIP() << "pdfinfo and pdftotext are not installed";
  std::string info = capture("pdfinfo " + zv::testing::shellQuote(pdf_));
  // The warden's page, the continuation of her lists, and her notes.
  EXPECT_NE(info.find("Pages:           3"), std::string::npos) << info;
  EXPECT_TRUE(info.find("(A4)") != std::string::npos || info.find("(letter)") != std::string::npos)
      << info;
  std::string text = capture("pdftotext -layout " + zv::testing::shellQuote(pdf_) + " -");
  for (const char* expected :
       {"Maren Vell", "Calling: Bell-keeper", "Traits (20)", "Skills (25)", "Vigor 29",
        "Marks 77 of 100", "Lantern Eye", "Brother Hale of the Bell", "Page 2",
        "Owes the Ferryman three silver"})
    EXPECT_NE(text.find(expected), std::string::npos) << expected << "\n" << text;
}

TEST_F(PrintCommand, ABadTemplateOrARefusedCheckWritesNoFile) {
  fs::path bad = dir_ / "bad.prt";
  std::ofstream(bad, std::ios::binary) << std::string("\0\0\0\0\0\0\x1b\0", 8);
  auto result = run(
      {"print", kData + "/characters/Maren Vell.chr", "--template", bad.string(), "--pdf", pdf_});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "[Error] File " + bad.string() + " not print template\n");
  EXPECT_FALSE(fs::exists(pdf_));

  // The sample template with its game system changed: the check refuses it.
  std::string bytes = readAll(kData + "/hollowmark.prt");
  auto at = bytes.find("Hollowmark");
  ASSERT_NE(at, std::string::npos);
  bytes.replace(at, 10, "Otherworld");
  fs::path other = dir_ / "other.prt";
  std::ofstream(other, std::ios::binary) << bytes;
  result = run(
      {"print", kData + "/characters/Maren Vell.chr", "--template", other.string(), "--pdf", pdf_});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err,
            "[Error] The game system for the character sheet (Hollowmark) is different from the "
            "game system for the selected print template (Otherworld)\n");
  EXPECT_FALSE(fs::exists(pdf_));
  EXPECT_EQ(run({"print", "--pdf", pdf_}).exitCode, 2);
}

TEST_F(PrintCommand, DetailsPrintAfterTheTemplatesPagesAndPagesRenderAsPictures) {
  auto result = run({"print", kData + "/characters/Ines Calloway.chr", "--pdf", pdf_});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  if (!havePoppler()) GTEST_SKIP() << "poppler's tools are not installed";
  // Her page, the continuation of her lists, her notes, and her details on a page of their own.
  std::string info = capture("pdfinfo " + zv::testing::shellQuote(pdf_));
  EXPECT_NE(info.find("Pages:           4"), std::string::npos) << info;
  std::string last = capture("pdftotext -f 4 -l 4 " + zv::testing::shellQuote(pdf_) + " -");
  EXPECT_NE(last.find("The Wexmoor Ledger"), std::string::npos) << last;
  EXPECT_NE(last.find("Forty-one lamps"), std::string::npos) << last;
  EXPECT_EQ(last.find("Hollowmark"), std::string::npos) << "no frame on a detail page";
  // Every page renders as a picture.
  ASSERT_EQ(std::system(("pdftoppm -r 30 -png " + zv::testing::shellQuote(pdf_) + " " +
                         zv::testing::shellQuote((dir_ / "page").string()))
                            .c_str()),
            0);
  for (int page = 1; page <= 4; ++page) {
    const fs::path png = dir_ / ("page-" + std::to_string(page) + ".png");
    ASSERT_TRUE(fs::exists(png)) << png;
    EXPECT_EQ(readAll(png).substr(1, 3), "PNG");
  }
}

TEST_F(PrintCommand, DumpShowsATemplatesPagesAndObjects) {
  auto result = run({"dump", kData + "/hollowmark.prt"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  const std::string& json = result.out;
  for (const char* expected :
       {"\"gameSystem\":\"Hollowmark\"", "\"fileType\":3", "\"sheetType\":\"Warden\"",
        "\"name\":\"Warden\",\"pageType\":\"Normal\"",
        "\"name\":\"Continued\",\"pageType\":\"Continuation\"",
        "\"name\":\"Notes\",\"pageType\":\"Optional\",\"expression\":\"@notes\"",
        "\"name\":\"Frame\",\"pageType\":\"Background\"", "\"continuationTag\":\"Lists\"",
        "\"isContinuation\":1", "\"kindName\":\"picture reference\"",
        "\"reference\":\"omen-calm.png\"", "\"horizontalCells\":4", "\"sides\":6"})
    EXPECT_NE(json.find(expected), std::string::npos) << expected << "\n" << json;

  fs::path bad = dir_ / "bad.prt";
  std::string bytes = readAll(kData + "/hollowmark.prt");
  std::ofstream(bad, std::ios::binary) << bytes.substr(0, bytes.size() / 2);
  result = run({"dump", bad.string()});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err.rfind("[Error] Error reading print template " + bad.string(), 0), 0u)
      << result.err;
}

TEST_F(PrintCommand, ConvertWritesATemplateBackByteForByte) {
  fs::path out = dir_ / "copy.prt";
  auto result = run({"convert", kData + "/hollowmark.prt", out.string()});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(readAll(out), readAll(kData + "/hollowmark.prt"));
}

}  // namespace
}  // namespace zv
