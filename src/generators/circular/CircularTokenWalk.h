#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "generators/circular/EnvironmentText.h"
#include "generators/circular/Environments.h"
#include "generators/circular/TokenList.h"

namespace QXFingrix {

/// Writes the environments of a molecule as readable tokens. An object is working memory.
class CircularTokenWalk {
 public:
  /// Calls visit(centre, radius, token) for the environments of a radius from minRadius to maxRadius until it
  /// answers false. Of the texts that the centres of one set of bonds give, token is the first in byte order;
  /// centre is the first atom that gives it.
  /// Shape    one label per atom and bond, none empty.
  /// Returns  false when a visit did.
  template <class Visit>
  bool Walk(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
            std::span<const std::string> bondLabels, unsigned minRadius, unsigned maxRadius, Visit visit);

  /// Collects the tokens of a walk.
  /// Returns  false as soon as they would give a text of more than maxSize bytes.
  bool Collect(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
               std::span<const std::string> bondLabels, unsigned minRadius, unsigned maxRadius,
               std::size_t maxSize);

  /// What was collected.
  TokenList& GetTokens() { return tokens_; }

 private:
  Environments environments_;
  std::vector<Environments::Centre> centres_;
  EnvironmentText writer_;
  std::string token_;
  std::string other_;
  TokenList tokens_;
};

template <class Visit>
bool CircularTokenWalk::Walk(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
                             std::span<const std::string> bondLabels, unsigned minRadius, unsigned maxRadius,
                             Visit visit) {
  writer_.Load(mol, atomLabels, bondLabels);
  for (unsigned atom = 0; minRadius == 0 && atom < mol.NumAtoms(); ++atom) {
    writer_.Write(atom, 0, token_);
    if (!visit(atom, 0U, token_)) return false;
  }
  environments_.Load(mol);
  for (unsigned radius = 1; radius <= maxRadius; ++radius) {
    const auto centres = environments_.Grow();
    if (centres.empty()) break;
    if (radius < minRadius) continue;
    centres_.assign(centres.begin(), centres.end());
    std::ranges::sort(centres_, {}, [](const Environments::Centre& centre) {
      return std::pair(centre.environment, centre.atom);
    });
    for (std::size_t i = 0; i < centres_.size();) {
      auto [first, environment] = centres_[i];
      writer_.Write(first, radius, token_);
      for (++i; i < centres_.size() && centres_[i].environment == environment; ++i) {
        writer_.Write(centres_[i].atom, radius, other_);
        if (other_ >= token_) continue;
        token_.swap(other_);
        first = centres_[i].atom;
      }
      if (!visit(first, radius, token_)) return false;
    }
  }
  return true;
}

}  // namespace QXFingrix
