// Auxiliary files: the lists in the source directory, and opening and printing their documents
// through the host (the system's handler, a print command run by the shell), with each message.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "core/deletion_list.h"
#include "core/headless_host.h"
#include "print/job/aux_files.h"

namespace zv {
namespace {

namespace fs = std::filesystem;

class AuxFilesTest : public ::testing::Test {
 protected:
  HeadlessHost host_{nullptr};
  HostInstallation installation_{host_};
  fs::path dir_ =
      fs::temp_directory_path() /
      ("zv_aux_files_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()));

  AuxFilesTest() {
    fs::remove_all(dir_);
    fs::create_directories(dir_);
  }
  ~AuxFilesTest() override { fs::remove_all(dir_); }

  void write(const fs::path& name, const std::string& bytes) {
    std::ofstream(dir_ / name, std::ios::binary) << bytes;
  }
  static std::string read(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
};

TEST_F(AuxFilesTest, AListHasADescriptionThenADocumentALine) {
  AuxFileList list = parseAuxFileList(
      "; sheets for the table\r\n"
      "Hollowmark table sheets\r\n"
      "\r\n"
      "quick-rules.txt\tQuick rules\r\n"
      "# a comment\n"
      "map.png\n"
      "  \tno file\n",
      "table.plst");
  EXPECT_EQ(list.description, "Hollowmark table sheets");
  EXPECT_EQ(list.documents,
            (std::vector<AuxDocument>{{"quick-rules.txt", "Quick rules"}, {"map.png", "map.png"}}));
  // A list with no description line is described by its file name.
  EXPECT_EQ(parseAuxFileList("", "empty.plst").description, "empty.plst");
}

TEST_F(AuxFilesTest, TheListsOfTheSourceDirectoryInNameOrder) {
  write("b.plst", "Second\nx.txt\n");
  write("A.PLST", "First\n");
  write("notes.txt", "not a list\n");
  std::vector<AuxFileList> lists = auxFileLists(dir_);
  ASSERT_EQ(lists.size(), 2u);
  EXPECT_EQ(lists[0].description, "First");
  EXPECT_EQ(lists[1].description, "Second");
  EXPECT_EQ(lists[1].documents.size(), 1u);
  EXPECT_TRUE(auxFileLists(dir_ / "missing").empty());
}

TEST_F(AuxFilesTest, OpeningAndItsMessages) {
  write("rules.txt", "rules\n");
  write("Map.PDF", "%PDF-1.4\n");
  struct Case {
    const char* file;
    std::string message;
  };
  const Case cases[] = {
      {"gone.txt", "[File Does Not Exist] The file " + (dir_ / "gone.txt").string() +
                       " cannot be opened because it does not exist."},
      {"rules.txt", "[File Cannot Be Opened] The file " + (dir_ / "rules.txt").string() +
                        " cannot be opened because no application can be found to open it."},
      // Found ignoring case; a PDF names the reader it needs.
      {"map.pdf", "[File Cannot Be Opened] The file " + (dir_ / "Map.PDF").string() +
                      " cannot be opened because the Adobe Acrobat Reader is not "
                      "installed.\\n\\nPlease install Acrobat Reader and try again."},
  };
  for (const Case& c : cases) {
    host_.clearTranscript();
    // The headless host has no program for any file.
    EXPECT_FALSE(openAuxDocument(dir_, c.file));
    EXPECT_EQ(host_.transcript(), std::vector<std::string>{c.message}) << c.file;
  }
}

TEST_F(AuxFilesTest, PrintingHandsATemporaryCopyToThePrintCommand) {
  write("rules.txt", "the rules\n");
  fs::create_directories(dir_ / "printed");
  const std::string command = "cp -t " + shellQuoted((dir_ / "printed").string()) + " --";
  ASSERT_TRUE(printAuxDocument(dir_, "rules.txt", command));
  EXPECT_TRUE(host_.transcript().empty());
  // The command got "qx0.txt" from the temporary directory, which goes at exit.
  EXPECT_EQ(read(dir_ / "printed" / "qx0.txt"), "the rules\n");
  EXPECT_TRUE(fs::exists(dir_ / "temp" / "qx0.txt"));
  EXPECT_EQ(processDeletionList(dir_ / "temp"), 0);
  EXPECT_FALSE(fs::exists(dir_ / "temp" / "qx0.txt"));

  // A second print while the first copy is there takes the next number.
  write("temp/qx0.txt", "busy");
  ASSERT_TRUE(printAuxDocument(dir_, "rules.txt", command));
  EXPECT_TRUE(fs::exists(dir_ / "printed" / "qx1.txt"));
}

TEST_F(AuxFilesTest, PrintingFailuresAndTheirMessages) {
  write("rules.txt", "the rules\n");
  EXPECT_FALSE(printAuxDocument(dir_, "gone.txt", "true"));
  EXPECT_FALSE(printAuxDocument(dir_, "rules.txt", "exit 3;"));
  EXPECT_EQ(host_.transcript(),
            (std::vector<std::string>{
                "[File Not Found] The file \"" + (dir_ / "gone.txt").string() +
                    "\" cannot be printed because it cannot be found.",
                "[Unable to Print] Unable to print through the specified application "
                "\\n(exit 3;, error 3)"}));

  // A temporary directory that can't be made: the copy fails.
  host_.clearTranscript();
  fs::remove_all(dir_ / "temp");
  write("temp", "a file where the folder would be");
  EXPECT_FALSE(printAuxDocument(dir_, "rules.txt", "true"));
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0], "[Error] Unable to create temporary file " +
                                       (dir_ / "temp" / "qx0.txt").string() +
                                       " to print/view file.");
}

TEST_F(AuxFilesTest, ShellQuotingKeepsAWordWhole) {
  EXPECT_EQ(shellQuoted("plain"), "'plain'");
  EXPECT_EQ(shellQuoted("it's a file"), "'it'\\''s a file'");
}

}  // namespace
}  // namespace zv
