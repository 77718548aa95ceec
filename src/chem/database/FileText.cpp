#include "chem/database/FileText.h"

#include <utility>

#include "chem/database/Gunzip.h"
#include "chem/database/TempFile.h"

namespace QXChem {

bool FileText::Open(const std::string& path, std::string& reason) {
  QXPlatform::QXMappedFile file;
  if (!file.Open(path, reason)) return false;
  const std::string_view bytes(file.GetData(), file.GetSize());
  if (IsGzip(bytes)) {
    TempFile inflated;
    return inflated.Create(reason) && Gunzip(bytes, inflated, reason) && inflated.Map(mapped_, reason);
  }
  mapped_ = std::move(file);
  return true;
}

std::string_view FileText::GetText() const {
  const std::string_view text(mapped_.GetData(), mapped_.GetSize());
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  return text.starts_with(kByteOrderMark) ? text.substr(kByteOrderMark.size()) : text;
}

}  // namespace QXChem
