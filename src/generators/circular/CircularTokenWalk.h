#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "generators/circular/EnvironmentText.h"
#include "generators/circular/Environments.h"
#include "generators/circular/TokenList.h"

namespace QXFingrix {

/// Collects the environments of a molecule as readable tokens. An object is working memory.
class CircularTokenWalk {
 public:
  /// Collects the environments of a radius from minRadius to maxRadius; of the texts that the centres of one
  /// set of bonds give, the first in byte order.
  /// Shape    one label per atom and bond, none empty.
  /// Returns  false as soon as the tokens would give a text of more than maxSize bytes.
  bool Collect(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
               std::span<const std::string> bondLabels, unsigned minRadius, unsigned maxRadius,
               std::size_t maxSize);

  /// What was collected.
  TokenList& GetTokens() { return tokens_; }

 private:
  bool Add(std::size_t maxSize);

  Environments environments_;
  std::vector<Environments::Centre> centres_;
  EnvironmentText writer_;
  std::string token_;
  std::string other_;
  TokenList tokens_;
};

}  // namespace QXFingrix
