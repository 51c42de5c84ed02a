#pragma once
// What filter runs take from the program around them: the data directory, the short date
// pattern, the preferences of a run, picture conversion, and the one-time note of suppressed
// output. The program keeps one context for its whole life; a test or a batch makes its own.

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zv {

/// Converts a picture's bytes into the format named ("jpg", "gif", "png", "dib", "bmp"):
/// the converted bytes, or nullopt with the reason in `error`.
using PictureConverter = std::function<std::optional<std::string>(
    std::string_view bytes, std::string_view format, std::string& error)>;

struct FilterContext {
  std::filesystem::path dataDir;  ///< where filters, and pictures named by sheets, are found
  /// The system's short date pattern ("m/d/yy" when the system says nothing).
  std::string shortDatePattern = "m/d/yy";
  /// "AskForFilters": copying asks for the filter, with the sheet's own chosen.
  bool askForFilters = true;
  /// Set once "Output Suppressed" has been shown: it shows once per program run.
  bool outputSuppressedShown = false;
  /// Converts pictures for @writepicture; without one a picture goes out only in the format it
  /// is stored in.
  PictureConverter convertPicture;
};

/// How the header commands met in a body act: as text (the word and its blanks dropped, the
/// rest of the line written) or not at all.
enum class HeaderWordsInBody { AsText, Silent };

/// The choices of one run.
struct FilterRunOptions {
  HeaderWordsInBody headerWords = HeaderWordsInBody::AsText;
  bool blankSheet = false;            ///< a blank sheet: fields give nothing, lists are skipped
  int pageNumber = 0;                 ///< the page being printed, for "@pagenumber"
  bool useAliases = false;            ///< the preference "UseAliases"
  bool printInheritedOptions = true;  ///< the preference "PrintInheritedOptions"
  /// The frame label of messages and the call stack: the filter's file name, or "<string>".
  std::string label = "<string>";
};

/// The two preferences of a run as the game system's preferences give them: "UseAliases" is on
/// when it exists and doesn't begin with "0"; "PrintInheritedOptions" is on unless it begins
/// with "0".
inline void applyFilterPreferences(FilterRunOptions& options,
                                   const std::optional<std::string>& useAliases,
                                   const std::optional<std::string>& printInheritedOptions) {
  options.useAliases =
      useAliases.has_value() && !(!useAliases->empty() && useAliases->front() == '0');
  options.printInheritedOptions = !(printInheritedOptions && !printInheritedOptions->empty() &&
                                    printInheritedOptions->front() == '0');
}

}  // namespace zv
