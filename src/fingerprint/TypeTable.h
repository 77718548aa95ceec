#pragma once

#include <string_view>

#include "QXFingrix/QXFPTypeBase.h"
#include "fingerprint/TypeParams.h"

namespace QXFingrix {

/// The shared descriptor of a class; MACCS166 and Lingo look at the version only.
template <class FPType>
const QXFPTypeBase* CachedType(unsigned short version, const TypeParams& params);

/// The newest version of the VS variants of the kinds.
inline constexpr unsigned latestVSVersion = 2;

/// How the parameters of a kind are kept.
enum class TypeShape { Plain, Hashed, Unhashed };

/// All that tells one kind of fingerprint from the others.
struct TypeRow {
  unsigned code;
  TypeShape shape;
  unsigned short version;   // the current one
  const char* word;         // starts, and is a token of, the type strings of the kind
  const char* sizeKey;      // null: none. Unhashed kinds read a number and ignore it
  const char* distanceKey;  // null: none
  const char* className;
  const QXFPTypeBase* (*cached)(unsigned short version, const TypeParams& params);
  TypeParams defaults;
};

/// The row of a code, null for an unknown one.
const TypeRow* FindTypeRow(unsigned code);

/// The row whose type word a text starts with, null for none.
const TypeRow* FindTypeRowByPrefix(std::string_view text);

/// The code of the row whose type word a text starts with, 0 for none.
unsigned GetFPTypeFromTypeStringPrefix(std::string_view text);

}  // namespace QXFingrix
