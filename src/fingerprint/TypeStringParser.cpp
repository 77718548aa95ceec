#include "fingerprint/TypeStringParser.h"

#include <string_view>
#include <vector>

#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXFPVersion.h"
#include "QXSystem/QXErrorHandler.h"
#include "QXSystem/QXString.h"
#include "fingerprint/SplitText.h"

namespace QXFingrix {
namespace {

using QXSystem::QXStringToNumber;
using QXSystem::QXThrow;

// Reports a fault; the format's one %s, where it has one, is the type word.
bool Fail(const char* format, const TypeRow& row) {
  QXThrow.Warning(format, row.word);
  return false;
}

bool ReadVersion(const TypeRow& row, const std::string& value, unsigned& version) {
  if (!QXIsValidFingerPrintVersion(value)) return Fail("Invalid version for `%s` type!", row);
  version = QXGetFingerPrintVersion(value);
  return true;
}

// MACCS166 and Lingo: a version and nothing else.
bool ParsePlain(const TypeRow& row, const std::string& text, unsigned& version) {
  constexpr unsigned unsetVersion = 65535;
  version = unsetVersion;
  if (text == row.word) {
    version = 0;
    return true;
  }
  std::vector<std::string> tokens;
  QXSystem::QXStringTokenize(tokens, text, ",", false);
  if (tokens.empty()) return Fail("Invalid fingerprint type string!", row);
  std::vector<std::string> pair;
  for (const std::string& token : tokens) {
    if (token == row.word) continue;
    if (!SplitExactly(pair, token, '=', 2)) return Fail("Invalid `%s` type string!", row);
    if (pair[0] == "ver" && !ReadVersion(row, pair[1], version)) return false;
  }
  if (version >= unsetVersion) return Fail("Version number cannot be initialized for `%s` type!", row);
  return true;
}

// The graph kinds.
class GraphTypeParser {
 public:
  GraphTypeParser(const TypeRow& row, ParsedType& parsed) : row_(row), parsed_(parsed) {
    const unsigned numbits = row.shape == TypeShape::Hashed ? unsetParam : 0;
    parsed_ = {0, {numbits, unsetParam, unsetParam, unsetParam, unsetParam}};
  }

  bool Parse(const std::string& text) {
    std::vector<std::string> tokens;
    QXSystem::QXStringTokenize(tokens, text, ",", false);
    for (const std::string& token : tokens) {
      if (!ReadToken(token)) return false;
    }
    return CheckComplete();
  }

 private:
  using Reader = bool (GraphTypeParser::*)(const std::string& value);

  bool ReadToken(const std::string& token) {
    if (token == row_.word) {
      sawWord_ = true;
      return true;
    }
    std::vector<std::string> pair;
    if (!SplitExactly(pair, token, '=', 2)) {
      return Fail("Invalid string can not be tokenized for `%s` type!", row_);
    }
    const struct {
      const char* key;
      Reader read;
    } readers[] = {
        {"ver", &GraphTypeParser::ReadVer},
        {row_.sizeKey, &GraphTypeParser::ReadSize},
        {row_.distanceKey, &GraphTypeParser::ReadDistance},
        {"atype", &GraphTypeParser::ReadAtomType},
        {"btype", &GraphTypeParser::ReadBondType},
    };
    for (const auto& reader : readers) {
      if (reader.key && pair[0] == reader.key) return (this->*reader.read)(pair[1]);
    }
    QXThrow.Warning("'%s' is not a valid fingerprint type primitive!", pair[0].c_str());
    return false;
  }

  bool ReadVer(const std::string& value) {
    sawVersion_ = ReadVersion(row_, value, parsed_.version);
    return sawVersion_;
  }

  bool ReadSize(const std::string& value) {
    unsigned size = 0;
    if (!QXStringToNumber(value, size)) return Fail("Invalid fingerprint size for `%s` type!", row_);
    if (row_.shape == TypeShape::Hashed) parsed_.params.numbits = size;
    return true;
  }

  bool ReadDistance(const std::string& value) {
    std::vector<std::string> range;
    if (!SplitExactly(range, value, '-', 2)) return Fail("Invalid fingerprint distance for `%s` type!", row_);
    if (!QXStringToNumber(range[0], parsed_.params.minDistance)) {
      return Fail("Invalid fingerprint minimum distance for `%s` type!", row_);
    }
    if (!QXStringToNumber(range[1], parsed_.params.maxDistance)) {
      return Fail("Invalid fingerprint maximum distance for `%s` type!", row_);
    }
    return true;
  }

  bool ReadAtomType(const std::string& value) {
    if (!QXIsValidFPAtomType(value)) return false;
    parsed_.params.atype = QXGetFPAtomType(value);
    return true;
  }

  bool ReadBondType(const std::string& value) {
    if (!QXIsValidFPBondType(value)) return false;
    parsed_.params.btype = QXGetFPBondType(value);
    return true;
  }

  bool CheckComplete() const {
    const TypeParams& params = parsed_.params;
    if (!sawWord_) return Fail("Missing fingerprint type!", row_);
    if (!sawVersion_) return Fail("Missing fingerprint version!", row_);
    if (row_.shape == TypeShape::Hashed && (params.numbits == 0 || params.numbits == unsetParam)) {
      return Fail("Size cannot be initialized for `%s` type!", row_);
    }
    if (params.minDistance == unsetParam || params.maxDistance == unsetParam) {
      return Fail("Min or max distance cannot be initialized for `%s` type!", row_);
    }
    const bool noAtomType = params.atype == unsetParam;
    const bool noBondType = params.btype == unsetParam;
    if (noAtomType) Fail("Atom type cannot be initialized for `%s` type!", row_);
    if (noBondType) Fail("Bond type cannot be initialized for `%s` type!", row_);
    if (noAtomType || noBondType) return false;
    if (params.atype == QXFPAtomType::None && params.btype == QXFPBondType::None) {
      return Fail("The atom and bond type cannot be both None for `%s` type!", row_);
    }
    return true;
  }

  const TypeRow& row_;
  ParsedType& parsed_;
  bool sawWord_ = false;
  bool sawVersion_ = false;
};

}  // namespace

bool ParseTypeString(const TypeRow& row, const std::string& text, ParsedType& parsed) {
  if (row.shape == TypeShape::Plain) return ParsePlain(row, text, parsed.version);
  return GraphTypeParser(row, parsed).Parse(text);
}

}  // namespace QXFingrix
