#pragma once
// Auxiliary files: documents a game system supplies for printing (rules summaries, maps, blank
// forms), named by "*.plst" lists in the source directory, and opened or printed by the programs
// the system has for them.
//
// A list is a text file: its first line that is neither empty nor a comment (";" or "#") is its
// description; every further such line names a document, a file name in the source directory
// (or a full path), optionally followed by a tab and the caption the dialog shows for it.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct AuxDocument {
  std::string file;     ///< as the list names it
  std::string caption;  ///< the file name when the list gives none
  friend bool operator==(const AuxDocument&, const AuxDocument&) = default;
};

struct AuxFileList {
  std::filesystem::path path;
  std::string description;  ///< the file name when the list gives none
  std::vector<AuxDocument> documents;
};

/// Reads one list from its bytes (line ends LF or CR LF).
AuxFileList parseAuxFileList(std::string_view bytes, const std::filesystem::path& path);

/// Every "*.plst" of the source directory that can be read, in name order.
std::vector<AuxFileList> auxFileLists(const std::filesystem::path& sourceDirectory);

/// The file a list's entry stands for: a full path as it is, else a name in the source
/// directory, matched ignoring case.
std::filesystem::path auxDocumentPath(const std::filesystem::path& sourceDirectory,
                                      std::string_view file);

/// Opens the document with the program the system has for its type. False after "The file %s
/// cannot be opened because it does not exist." (title "File Does Not Exist"), or, when the
/// system has no program for it, "The file %s cannot be opened because no application can be
/// found to open it." (title "File Cannot Be Opened"; a ".pdf" gets the Acrobat Reader text).
bool openAuxDocument(const std::filesystem::path& sourceDirectory, std::string_view file);

/// Prints the document: it is copied to a temporary file "qx%d" with its extension in the
/// temporary directory (deleted at exit), which `printCommand` gets as its last argument. False
/// after "The file "%s" cannot be printed because it cannot be found." (title "File Not
/// Found"), "Unable to create temporary file %s to print/view file.", or "Unable to print
/// through the specified application \r\n(%s, error %d)" (title "Unable to Print") with the
/// command and its exit status.
bool printAuxDocument(const std::filesystem::path& sourceDirectory, std::string_view file,
                      std::string_view printCommand);

/// A word of a shell command line, quoted so that the shell passes it unchanged.
std::string shellQuoted(std::string_view word);

}  // namespace zv
