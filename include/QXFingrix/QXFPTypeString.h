#pragma once

#include <cstdint>
#include <string>

#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXSystem/QXExport.h"

namespace QXFingrix {

// A type string is a list of tokens joined by ",": the bare type word, and keys with values joined by "=", in
// any order; of a key that occurs twice the last value counts. The canonical form, as the descriptors write
// it:
//
//   MACCS166,ver=V                  Path,ver=V,size=N,bonds=MIN-MAX,atype=A,btype=B
//   Lingo,ver=V                     Circular,ver=V,size=N,radius=MIN-MAX,atype=A,btype=B
//                                   Tree,ver=V,size=N,bonds=MIN-MAX,atype=A,btype=B
//   UHPath, UHTree, UHCircular: as Path, Tree, Circular without the size.
//
// V is a version (QXFPVersion.h); A and B are names of QXFPAtomTypes.h, "None" or combinations such as
// "AtmNum|Arom".

/// @name Type string parsers
/// Read the parameters out of a type string of one kind.
/// Shape    version: low 16 bits of the version read; for MACCS166 and Lingo 0 when the text is the type
///          word alone.
/// Errors   false and one Warning that says what is wrong (an unknown atom or bond type name fails silently;
///          a text without either type draws a Warning for each). The outputs then hold what was read before;
///          what was not is 0xFFFFFFFF, the version 0 (65535 for MACCS166 and Lingo). Neither min <= max nor
///          an upper bound is tested.
/// Threads  safe.
/// @{
QX_API bool QXGetPathFPTypeParams(const std::string& typeString, unsigned short& version, unsigned& numbits,
                                  unsigned& minbonds, unsigned& maxbonds, unsigned& atype, unsigned& btype);
QX_API bool QXGetCircularFPTypeParams(const std::string& typeString, unsigned short& version,
                                      unsigned& numbits, unsigned& minradius, unsigned& maxradius,
                                      unsigned& atype, unsigned& btype);
QX_API bool QXGetTreeFPTypeParams(const std::string& typeString, unsigned short& version, unsigned& numbits,
                                  unsigned& minbonds, unsigned& maxbonds, unsigned& atype, unsigned& btype);
QX_API bool QXGetUnhashedPathFPTypeParams(const std::string& typeString, unsigned short& version,
                                          unsigned& minbonds, unsigned& maxbonds, unsigned& atype,
                                          unsigned& btype);
QX_API bool QXGetUnhashedCircularFPTypeParams(const std::string& typeString, unsigned short& version,
                                              unsigned& minradius, unsigned& maxradius, unsigned& atype,
                                              unsigned& btype);
QX_API bool QXGetUnhashedTreeFPTypeParams(const std::string& typeString, unsigned short& version,
                                          unsigned& minbonds, unsigned& maxbonds, unsigned& atype,
                                          unsigned& btype);
QX_API bool QXGetMACCS166FPTypeParams(const std::string& typeString, unsigned short& version);
QX_API bool QXGetLingoFPTypeParams(const std::string& typeString, unsigned short& version);
/// @}

/// @name Type string formatters
/// Append the canonical type string of a descriptor class: the first for the kinds with parameters, the
/// second for MACCS166 and Lingo.
/// Errors   reserved bits that are set in the identifier draw the Warning of SetParamsFromID, for the
///          unhashed kinds "Unrecognised data!"; the text is written all the same.
/// @{
template <class FPType>
QX_API void QXGetFPTypeStringFromID(std::string& out, unsigned short version, std::uint64_t id);
template <class FPType>
QX_API void QXGetFPTypeStringFromID(std::string& out, unsigned short version);
/// @}

/// Whether a text is a well-formed type string of any kind.
/// Errors   a malformed one draws the parser's Warning; a version that is not the current one draws
///          "QXIsValidFPTypeString() fingerprint type with old version number", yet the answer is true.
QX_API bool QXIsValidFPTypeString(const std::string& typeString);

/// The low 16 bits of the version that a type string names; 0 for a text that is not a type string (with the
/// parser's Warning) and always for the unhashed kinds.
QX_API unsigned short QXGetFPTypeVersion(const std::string& typeString);

}  // namespace QXFingrix
