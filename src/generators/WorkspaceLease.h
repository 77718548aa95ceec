#pragma once

#include <memory>
#include <utility>

#include "QXChem/QXMolBase.h"

namespace QXFingrix {

/// Lends what a thread keeps between calls, so that a call allocates little after the first few. A call made
/// meanwhile, out of an error sink, gets a workspace of its own. One that is not given back, because of an
/// exception or because it has grown too large, is freed.
template <class Workspace>
class WorkspaceLease {
 public:
  WorkspaceLease() : workspace_(std::move(kept_)) {
    if (!workspace_) workspace_ = std::make_unique<Workspace>();
  }
  WorkspaceLease(const WorkspaceLease&) = delete;
  WorkspaceLease& operator=(const WorkspaceLease&) = delete;

  Workspace& Get() { return *workspace_; }
  void GiveBack() { kept_ = std::move(workspace_); }

 private:
  static inline thread_local std::unique_ptr<Workspace> kept_;
  std::unique_ptr<Workspace> workspace_;
};

/// Whether the memory for a molecule is too much to be kept.
inline bool IsGiant(const QXChem::QXMolBase& mol) {
  constexpr unsigned giant = 10000;
  return mol.NumAtoms() >= giant || mol.NumBonds() >= giant;
}

}  // namespace QXFingrix
