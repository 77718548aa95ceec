#pragma once

#include <cstdint>
#include <vector>

#include "QXChem/QXAtomBondSet.h"
#include "chem/subsearch/Pattern.h"
#include "chem/subsearch/Target.h"

namespace QXChem {

/// Whether the molecule has the elements and bonds without which there can be no match.
bool CanMatch(const Pattern& pattern, const Target& target);

/// Which matches a search has to find; it may find others too.
enum class Wanted : std::uint8_t {
  All,
  OneOfEachSet,  // of each set of atoms
  One
};

/// A search for the matches of a pattern in a molecule, one at a time. It may be used again and allocates
/// nothing once its buffers are large enough; a copy goes on independently from the same match.
class Search {
 public:
  /// Pattern and target must stay; the target knows what the pattern asks of it.
  void Start(const Pattern& pattern, const Target& target, Wanted wanted);
  /// Finds the next match; false when there is none left.
  bool Next();

  /// Of the match found, in the order of the pattern's atoms and bonds.
  void GetMatch(QXAtomBondSet& match);

 private:
  // Where a step stands: among the neighbours of the atom it is linked to, or among all atoms.
  struct Place {
    std::uint32_t next;
    std::uint32_t end;
    std::uint32_t lowest;  // index that the atom may have
    std::uint32_t atom;    // the one chosen
  };
  enum class Known : std::uint8_t { Nothing, No, Yes };

  void Prepare(const Pattern& pattern, const Target& target, Wanted wanted);
  void StartAt(unsigned firstAtom, unsigned endAtom);
  void Enter(unsigned depth);
  bool IsFree(const Place& place, unsigned atom) const;
  bool Advance(const SearchStep& step, Place& place);
  bool Takes(const SearchStep& step, unsigned atom);
  bool HasClosures(const SearchStep& step, unsigned atom) const;
  bool GoesRightWay(const BondStep& bond, unsigned placed, unsigned atom) const;
  bool Passes(const AtomTest& test, unsigned atom);
  bool MatchesRecursive(unsigned recursive, unsigned atom);

  const Pattern* pattern_ = nullptr;
  const Target* target_ = nullptr;
  bool isPrepared_ = false;  // of a recursive pattern's search: for the search it belongs to
  bool hasMatch_ = false;
  bool isOver_ = true;
  bool usesBounds_ = false;
  const unsigned* twins_ = nullptr;
  std::vector<Place> places_;    // one for each step
  std::vector<unsigned> atoms_;  // of the match, in the order of the pattern
  std::vector<char> used_;       // atoms chosen, but for the last one
  // Of every recursive pattern a search of its own and what it has said about each atom.
  std::vector<Search> recursive_;
  std::vector<Known> known_;
};

}  // namespace QXChem
