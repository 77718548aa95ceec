#pragma once

#include "QXFingrix/QXFingerPrint.h"
#include "QXSystem/QXExport.h"

namespace QXFingrix {

/// Counts what two fingerprints of one type have in common: bits, or the Lingos of their texts.
/// Shape    neither: may be null; on Lingo fingerprints it is not written.
/// Units    bits set in a alone, in b alone, in both and in neither; or Lingos, see QXGetLingoSimTerms.
/// Errors   false and nothing written: error "fingerprint type mismatch!" for different types; an error that
///          names the sizes when the bit vectors differ in size. See QXGetLingoSimTerms for Lingo.
/// Threads  safe.
/// Cost     one pass over the words, no allocation; on Lingo fingerprints a profile is built.
QX_API bool QXGetBitCounts(const QXFingerPrint& a, const QXFingerPrint& b, unsigned* onlyA, unsigned* onlyB,
                           unsigned* both, unsigned* neither = nullptr);

// The measures. Of the counts above let a = onlyA, b = onlyB, c = both and d = neither (0 for Lingo). Sums,
// products and roots are formed in single precision, in the order written.
//
// Two fingerprints with the same bits, two without any among them, score 1, or 0 by Manhattan. Otherwise two
// that have no bit in common score 0 by Tanimoto, Cosine, Dice and Tversky.
// Errors   fingerprints that QXGetBitCounts refuses score 0.0, Manhattan included, after its report if it
//          makes one: two different Lingo texts, one of fewer than four characters, score 0.0 in silence.
//          Of unhashed fingerprints only QXTanimoto compares the tokens; the others take their text for bits,
//          which tells nothing.
// Threads  safe.
// Cost     that of QXGetBitCounts.

/// c / (a + b + c), in [0, 1].
///
/// Unhashed fingerprints are compared by their tokens: of two with nA and nB tokens, k of them in common as
/// multisets, it is k / (nA + nB - k), and not a number when neither has a token.
/// Errors   its own text, "QXTanimoto() fingerprint type mismatch!", and 0.0.
/// Cost     on unhashed fingerprints both texts are split into lists of tokens, which are sorted unless the
///          texts already are; a database in memory splits each text once.
/// Source   Rogers, Tanimoto, Science 1960, 132, 1115.
QX_API float QXTanimoto(const QXFingerPrint& a, const QXFingerPrint& b);

/// c / sqrt((a + c) (b + c)), in [0, 1].
QX_API float QXCosine(const QXFingerPrint& a, const QXFingerPrint& b);

/// 2c / (2c + a + b), in [0, 1]; the denominator is formed in double precision and then rounded.
/// Source   Dice, Ecology 1945, 26, 297.
QX_API float QXDice(const QXFingerPrint& a, const QXFingerPrint& b);

/// sqrt((c + d) / (a + b + c + d)), in [0, 1]: bits that both leave clear count as agreement. 0 when no bit
/// agrees.
QX_API float QXEuclid(const QXFingerPrint& a, const QXFingerPrint& b);

/// c / (alpha a + beta b + c): in [0, 1] for weights that are not negative. Not symmetric unless alpha equals
/// beta. With both 1 it is Tanimoto, with both 0.5 Dice; with 1 and 0 the part of a that is found in b.
/// Source   Tversky, Psychol. Rev. 1977, 84, 327.
QX_API float QXTversky(const QXFingerPrint& a, const QXFingerPrint& b, float alpha, float beta);

/// (a + b) / (a + b + c + d), a distance in [0, 1]: 0 for the same bits, 1 when none agrees.
QX_API float QXManhattan(const QXFingerPrint& a, const QXFingerPrint& b);

}  // namespace QXFingrix
