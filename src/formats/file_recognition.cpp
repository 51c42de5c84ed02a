#include "formats/file_recognition.h"

#include <fstream>

#include "core/headless_host.h"
#include "core/messages.h"
#include "core/paths.h"
#include "core/text.h"
#include "formats/tokens/keywords.h"
#include "formats/print_template_header.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

namespace {

constexpr size_t kFirstWordCapacity = 128;
constexpr size_t kGameSystemCapacity = 24;

/// Reads the header tokens that follow the first word, as long as they are header tokens.
void scanHeader(TokenStream& stream, Recognition& result) {
  std::string word;
  for (;;) {
    int id = stream.readKeyword(word, kFirstWordCapacity);
    int16_t number = 0;
    std::string text;
    switch (id) {
      case kLevel:
        if (stream.readInt(number) != kTokenOk) return;
        result.info.level = number;
        break;
      case kVersion:
        if (stream.readInt(number) != kTokenOk) return;
        result.info.version = number;
        break;
      case kRealsize:
        if (stream.readInt(number) != kTokenOk) return;
        stream.setRealSize(number & 0x0F);
        break;
      case kIntsize:
        if (stream.readInt(number) != kTokenOk) return;
        stream.setIntSize(number & 0x0F);
        break;
      case kGamesystem:
        if (stream.readWord(text, kGameSystemCapacity) != kTokenOk) return;
        result.gameSystem = text;
        break;
      case kTitle:
      case kDescription:
        if (!stream.readText(text)) return;
        result.info.description = text;
        break;
      case kCopyright:
      case kHelp:
      case kChargenScript:
      case kChargenTemplate:
      case kSheettype:
        if (!stream.readText(text)) return;
        break;
      default:
        return;
    }
  }
}

bool startsWithGroupSignature(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::string signature(kGroupFileSignature);
  std::string head(signature.size(), '\0');
  return in.read(head.data(), static_cast<std::streamsize>(head.size())) && head == signature;
}

bool fileReadable(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return static_cast<bool>(in);
}

}  // namespace

const char* fileTypeName(int code) {
  switch (code) {
    case kFileReportedAlready:
      return "reported";
    case kFileCannotOpen:
      return "cannot-open";
    case kFileCharacterSheet:
      return "character-sheet";
    case kFileCharacterTemplate:
      return "character-template";
    case kFilePrintTemplate:
      return "print-template";
    case kFileMacroDataSheet:
      return "macro-data-sheet";
    case kFilePlainText:
      return "plain-text";
    case kFileDataSheet:
      return "data-sheet";
    case kFileFilter:
      return "filter";
    case kFileConversionScript:
      return "conversion-script";
    case kFileGroup:
      return "group";
    case kFileDataSheetList:
      return "data-sheet-list";
    default:
      return "unknown";
  }
}

bool scriptHeaderLooksRight(const std::filesystem::path& path) {
  FileByteStream file(path.string(), FileByteStream::Mode::Read);
  if (!file.isOpen()) return false;
  TokenStream stream;
  stream.setStream(&file);
  std::string word;
  if (stream.readWord(word, kFirstWordCapacity) != kTokenOk) return false;
  return equalsIgnoringCase(word, "Conversion script v. 1");
}

Recognition recogniseFile(const std::filesystem::path& path, const RecognitionProbes& probes) {
  Recognition result;
  std::error_code error;
  if (std::filesystem::is_directory(path, error) || !fileReadable(path)) {
    result.code = kFileCannotOpen;
    return result;
  }

  if (auto header = readPrintTemplateHeader(path)) {
    result.code = kFilePrintTemplate;
    result.gameSystem = header->gameSystem;
    result.info = {header->description, header->level, header->version};
    return result;
  }

  std::string ext = extensionOf(path);
  {
    // A file that isn't a token file may trip the token reader's own messages (an unterminated
    // string, say); only the recogniser's verdict is for the user, so those stay silent.
    HeadlessHost silent(nullptr);
    HostInstallation quiet(silent);
    FileByteStream file(path.string(), FileByteStream::Mode::Read);
    TokenStream stream;
    stream.setName(path.filename().string());
    stream.setStream(&file);
    std::string firstWord;
    if (file.isOpen() && stream.openStream(kTokenFileMagic) == kTokenOk &&
        stream.readWord(firstWord, kFirstWordCapacity) == kTokenOk) {
      int code = kFileUnknown;
      if (firstWord == "Character Sheet file v. 1") {
        code = ext == ".cst" ? kFileCharacterTemplate : kFileCharacterSheet;
      } else if (firstWord == "Data Sheet file v. 1") {
        code = kFileDataSheet;
      } else if (firstWord == "Macro Data Sheet file v. 1") {
        code = kFileMacroDataSheet;
      }
      if (code != kFileUnknown) {
        scanHeader(stream, result);
        result.code = code;
        return result;
      }
      result.gameSystem.clear();
    }
  }

  if (startsWithGroupSignature(path)) {
    result.code = kFileGroup;
    return result;
  }

  if (ext == ".chr" || ext == ".cst" || ext == ".cds" || ext == ".mds") {
    showTitled(Severity::Error, "Unrecognizable Format",
               "The format of this file cannot be recognized. This application cannot open it.");
    result.code = kFileReportedAlready;
  } else if (ext == ".flt") {
    bool reads = probes.filterHeaderReads ? probes.filterHeaderReads(path) : true;
    result.code = reads ? kFileFilter : kFileUnknown;
  } else if (ext == ".cnv") {
    bool reads =
        probes.scriptHeaderReads ? probes.scriptHeaderReads(path) : scriptHeaderLooksRight(path);
    result.code = reads ? kFileConversionScript : kFileUnknown;
  } else if (ext == ".inc" || ext == ".txt") {
    result.code = kFilePlainText;
  } else if (ext == ".clist" || ext == ".group") {
    result.code = kFileGroup;
  } else if (ext == ".dlist") {
    result.code = kFileDataSheetList;
  } else {
    result.code = kFileUnknown;
  }
  return result;
}

}  // namespace zv
