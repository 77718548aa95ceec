#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "generators/circular/Ball.h"

namespace QXFingrix {

/// Writes environments as canonical text: see docs/CircularFingerprint.md. An object is working memory.
class EnvironmentText {
 public:
  /// The molecule of what follows and its labels, which must outlive that.
  void Load(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
            std::span<const std::string> bondLabels);

  /// Replaces `text` by that of the environment of an atom.
  /// Cost     a few sorts of the environment's atoms by their bonds.
  void Write(unsigned centre, unsigned radius, std::string& text);

 private:
  // A bond as seen from one of its atoms.
  struct Step {
    unsigned bondRank;
    unsigned atom;  // by its place in the ball
  };

  void LoadSteps();
  void SortByDistanceAndLabel();
  bool Refine();
  bool Split(std::size_t begin, std::size_t end);
  void FindKey(unsigned atom);
  std::span<const std::uint64_t> Key(unsigned atom) const;
  std::span<const Step> Steps(unsigned atom) const;
  void WriteClass(std::size_t begin, std::size_t end, std::string& text);

  const QXChem::QXMolBase* mol_ = nullptr;
  std::span<const std::string> atomLabels_;
  std::vector<unsigned> atomRanks_;  // of the labels, ascending by text
  std::vector<unsigned> bondRanks_;
  std::vector<std::string> rankedBonds_;

  Ball ball_;
  std::vector<unsigned> placeOf_;  // in the ball, by atom of the molecule
  // All that follows is about the atoms of the ball by their places.
  std::vector<std::size_t> firstStep_;
  std::vector<Step> steps_;
  std::vector<std::uint64_t> keys_;    // beside steps_
  std::vector<unsigned> order_;        // the atoms, those of a class together
  std::vector<std::size_t> classOf_;   // where in order_ its class begins, by atom
  std::vector<std::size_t> numberOf_;  // of the class that begins there, by place in order_
  std::vector<std::pair<std::size_t, unsigned>> written_;
};

}  // namespace QXFingrix
