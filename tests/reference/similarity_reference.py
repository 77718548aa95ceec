"""The six measures in NumPy's single precision, with this library's order of sums, written apart from its code.

Counts are arrays of integers: bits set in A alone (a), in B alone (b), in both (c) and in neither (d).
"""

import numpy as np

F = np.float32


def bit_counts(bits):
    """The counts of every pair of rows of a matrix of zeros and ones, as square matrices."""
    on = bits.astype(np.int64)
    off = 1 - on
    return on @ off.T, off @ on.T, on @ on.T, off @ off.T


def score(measure, counts, alpha=0.0, beta=0.0):
    exact_a, exact_b, exact_c, exact_d = counts
    a, b, c, d = (count.astype(F) for count in counts)
    alpha, beta = F(alpha), F(beta)
    with np.errstate(invalid="ignore", divide="ignore"):
        result = {
            "QXTanimoto": lambda: c / (a + b + c),
            "QXCosine": lambda: c / np.sqrt((a + c) * (b + c)),
            "QXDice": lambda: (c + c) / (2 * c.astype(float) + (a.astype(float) + b.astype(float))).astype(F),
            "QXEuclid": lambda: np.sqrt((c + d) / (a + b + c + d)),
            "QXTversky": lambda: c / (alpha * a + beta * b + c),
            "QXManhattan": lambda: (a + b) / (a + b + c + d),
        }[measure]()
    if measure == "QXEuclid":
        result[exact_c + exact_d == 0] = 0
    elif measure != "QXManhattan":
        result[exact_c == 0] = 0
    result[exact_a + exact_b == 0] = 0 if measure == "QXManhattan" else 1
    assert result.dtype == F
    return result
