#pragma once

#include "QXSystem/QXExport.h"

namespace QXFingrix {

/// The modulus that turns an identifier into a bit of a fingerprint of numbits bits: the largest prime not
/// above numbits. A size that is prime is its own modulus.
/// Shape    3 to 65536; 0 for any other size.
/// Threads  safe.
/// Cost     nine common sizes (the powers of two from 64 to 16384) at once, else a binary search.
QX_API unsigned QXGetHashSize(unsigned numbits);

/// The largest prime not above n, by binary search.
/// Shape    3 to 65536; 0 for any other n.
/// Threads  safe.
/// Cost     about 13 comparisons.
QX_API unsigned QXGetNearestSmallerPrimeNumber(unsigned n);

/// The largest prime not above n, by a scan from the smallest prime upwards.
/// Shape    2 to 65536; 0 for any other n.
/// Threads  safe.
/// Cost     up to 6,543 comparisons.
QX_API unsigned QXGetNearestSmallerPrimeNumberBruteForce(unsigned n);

}  // namespace QXFingrix
