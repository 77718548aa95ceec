#include "generators/maccs/KeyRules.h"

namespace QXFingrix {
namespace {

using namespace AtomClass;
namespace Kind = BondKind;

// Neighbours that a pattern names, each an atom of its own.
template <class... Bits>
constexpr NeighborCounts::Word Next(Bits... bits) {
  return (NeighborCounts::Of(bits) + ...);
}

// So many neighbours in all, those that the pattern names (Next) among them.
constexpr NeighborCounts::Word Any(unsigned count) {
  return NeighborCounts::Of(anyBit, count);
}

constexpr AtomRule atomRules[] = {
    {1, isotope},                                                // [!0*]
    {13, N, Next(oxygenBit, carbonBit, carbonBit)},              // [#8]~[#7](~[#6])~[#6]
    {15, C, Next(oxygenBit, oxygenBit, oxygenBit)},              // [#8]~[#6](~[#8])~[#8]
    {23, C, Next(nitrogenBit, oxygenBit, oxygenBit)},            // [#7]~[#6](~[#8])~[#8]
    {25, C, Next(nitrogenBit, nitrogenBit, nitrogenBit)},        // [#7]~[#6](~[#7])~[#7]
    {28, aliphaticCH2, Next(heteroBit) + Any(2)},                // [!#6;!#1]~[CH2]~[!#6,!#1]
    {30, notC, Next(carbonBit, carbonBit, carbonBit) + Any(4)},  // [#6]~[!#6](~[#6])(~[#6])~*
    {32, S, Next(carbonBit, nitrogenBit)},                       // [#6]~[#16]~[#7]
    {37, C, Next(nitrogenBit, oxygenBit, nitrogenBit)},          // [#7]~[#6](~[#8])~[#7]
    {38, C, Next(nitrogenBit, carbonBit, nitrogenBit)},          // [#7]~[#6](~[#6])~[#7]
    {39, S, Next(oxygenBit, oxygenBit, oxygenBit)},              // [#8]~[#16](~[#8])~[#8]
    {43, any, Next(heteroHBit, heteroHBit)},                     // [!#6;!#1H]~*~[!#6;!#1H]
    {47, any, Next(sulfurBit, nitrogenBit)},                     // [#16]~*~[#7]
    {48, Q, Next(oxygenBit, oxygenBit, oxygenBit)},              // [#8]~[!#6;!#1](~[#8])~[#8]
    {49, charged},                                               // [!+0]
    {51, S, Next(carbonBit, oxygenBit)},                         // [#6]~[#16]~[#8]
    {55, S, Next(oxygenBit, oxygenBit)},                         // [#8]~[#16]~[#8]
    {56, N, Next(oxygenBit, oxygenBit, carbonBit)},              // [#8]~[#7](~[#8])~[#6]
    {58, S, Next(heteroBit, heteroBit)},                         // [!#6;!#1]~[#16]~[!#6;!#1]
    {61, S | X3},                                                // [#16X3]
    {66, C, Next(carbonBit, carbonBit, carbonBit) + Any(4)},     // [#6]~[#6](~[#6])(~[#6])~*
    {70, N, Next(heteroBit, heteroBit)},                         // [!#6;!#1]~[#7]~[!#6;!#1]
    {74, any, Next(carbonH3Bit, carbonH3Bit)},                   // [#6H3]~*~[#6H3]
    {75, N | branch},                                            // [#7](@*)!@*
    {77, any, Next(nitrogenBit, nitrogenBit)},                   // [#7]~*~[#7]
    {81, any, Next(sulfurBit) + Any(3)},                         // [#16]~*(~*)~*
    {82, CH2, Next(heteroHBit) + Any(2)},                        // [#6H2](~[!#6;!#1H])~*
    {84, N | H2},                                                // [#7H2]
    {85, N, Next(carbonBit, carbonBit, carbonBit)},              // [#7](~[#6])(~[#6])~[#6]
    {86, Q, Next(carbonH2Bit, carbonH2Bit)},                     // [#6H2]~[!#6;!#1]~[#6H2]
    {92, C, Next(oxygenBit, nitrogenBit, carbonBit)},            // [#8]~[#6](~[#7])~[#6]
    {100, CH2, Next(nitrogenBit) + Any(2)},                      // [#7]~[#6H2]~*
    {105, ring3},                                                // *(@*)(@*)@*
    {106, any, Next(heteroBit, heteroBit, heteroBit)},           // *(~[!#6;!#1])(~[!#6;!#1])~[!#6;!#1]
    {107, any, Next(halogenBit) + Any(3)},                       // [#9,#17,#35,#53]~*(~*)~*
    {109, CH2, Next(oxygenBit) + Any(2)},                        // [#8]~[#6H2]~*
    {110, C, Next(nitrogenBit, oxygenBit)},                      // [#7]~[#6]~[#8]
    {112, X4},                                                   // [X4]
    {114, CH2, Next(carbonH3Bit) + Any(2)},                      // [#6H3]~[#6H2]~*
    {117, any, Next(nitrogenBit, oxygenBit)},                    // [#7]~*~[#8]
    {122, N | X3},                                               // [#7X3]
    {123, C, Next(oxygenBit, oxygenBit)},                        // [#8]~[#6]~[#8]
    {126, O | ring2},                                            // [#8](@*)@*
    {134, halogen},                                              // [#9,#17,#35,#53]
    {139, O | H1},                                               // [#8H]
    {148, Q | X3},                                               // [!#6;!#1X3]
    {151, N | H1},                                               // [#7H]
    {152, O, Next(carbonBit, carbonBit, carbonBit)},             // [#8](~[#6])(~[#6])~[#6]
    {155, CH2 | chain2},                                         // [#6H2](!@*)!@*
    {156, N | X3},                                               // [#7X3]
    {165, inRing},                                               // [!R0]
};

constexpr BondRule bondRules[] = {
    {14, aliphaticS, Kind::Type(Kind::single), aliphaticS},   // S-S
    {17, C, Kind::Type(Kind::threefold), C},                  // [#6]#[#6]
    {21, C, Kind::Type(Kind::twofold), cQ2},                  // [#6]=[#6](~[!#6;!#1])~[!#6;!#1]
    {24, N, Kind::Type(Kind::single), O},                     // [#7]-[#8]
    {26, C, Kind::Type(Kind::twofold) & Kind::ring, cRing3},  // [#6]@=[#6](@*)@*
    {31, Q, Kind::all, halogen},                              // [!#6;!#1]~[#9,#17,#35,#53]
    {33, S, Kind::all, N},                                    // [#7]~[#16]
    {34, aliphaticCH2, Kind::Type(Kind::twofold), any},       // [CH2]=*
    {36, S, Kind::ring, any},                                 // [#16]@*
    {40, S, Kind::Type(Kind::single), O},                     // [#16]-[#8]
    {41, C, Kind::Type(Kind::threefold), N},                  // [#6]#[#7]
    {45, C, Kind::Type(Kind::twofold), cN},                   // [#6]=[#6]~[#7]
    {50, C, Kind::Type(Kind::twofold), cC3},                  // [#6]=[#6](~[#6])~[#6]
    {52, N, Kind::all, N},                                    // [#7]~[#7]
    {57, O, Kind::ring, any},                                 // [#8]@*
    {59, S, Kind::notAromatic, aromaticBond},                 // [#16]!:*:*
    {60, S, Kind::Type(Kind::twofold), O},                    // [#16]=[#8]
    {62, ring1, Kind::chain, ring1},                          // *@*!@*@*
    {63, N, Kind::Type(Kind::twofold), O},                    // [#7]=[#8]
    {64, S, Kind::chain, ring1},                              // [#16]!@*@*
    {65, N, Kind::Type(Kind::aromatic), C},                   // [#7]:[#6]
    {67, S, Kind::all, Q},                                    // [#16]~[!#6;!#1]
    {68, QH, Kind::all, QH},                                  // [!#6;!#1H]~[!#6;!#1H]
    {69, Q, Kind::all, QH},                                   // [!#6;!#1]~[!#6;!#1H]
    {71, N, Kind::all, O},                                    // [#7]~[#8]
    {73, S, Kind::Type(Kind::twofold), any},                  // [#16]=*
    {76, C, Kind::Type(Kind::twofold), cDegree3},             // [#6]=[#6](~*)~*
    {78, N, Kind::Type(Kind::twofold), C},                    // [#7]=[#6]
    {87, clBrIN, Kind::chain, ring1},                         // [#7,#17,#35,#53]!@*@*
    {93, CH3, Kind::all, Q},                                  // [#6H3]~[!#6;!#1]
    {94, N, Kind::all, Q},                                    // [#7]~[!#6;!#1]
    {99, C, Kind::Type(Kind::twofold), C},                    // [#6]=[#6]
    {102, O, Kind::all, Q},                                   // [#8]~[!#6;!#1]
    {113, O, Kind::notAromatic, aromaticBond},                // [#8]!:*:*
    {119, N, Kind::Type(Kind::twofold), any},                 // [#7]=*
    {121, N, Kind::ring, any},                                // [#7]@*
    {127, O, Kind::chain, ring2},                             // [#8]!@*@*, twice
    {133, N, Kind::chain, ring1},                             // [#7]!@*@*
    {135, N, Kind::notAromatic, aromaticBond},                // [#7]!:*:*
    {136, O, Kind::Type(Kind::twofold), any},                 // [#8]=*
    {150, branch, Kind::ring, branch},                        // *!@*@*!@*
    {154, C, Kind::Type(Kind::twofold), O},                   // [#6]=[#8]
    {157, C, Kind::Type(Kind::single), O},                    // [#8]-[#6]
    {158, C, Kind::Type(Kind::single), N},                    // [#7]-[#6]
};

constexpr ChainRule chainRules[] = {
    {53, QH, 4, QH},     // [!#6;!#1H]~*~*~*~[!#6;!#1H]
    {54, QH, 3, QH},     // [!#6;!#1H]~*~*~[!#6;!#1H]
    {72, O, 3, O},       // [#8]~*~*~[#8]
    {79, N, 3, N},       // [#7]~*~*~[#7]
    {80, N, 4, N},       // [#7]~*~*~*~[#7]
    {89, O, 4, O},       // [#8]~*~*~*~[#8]
    {90, QH, 3, CH2},    // [#6H2](~*)~*~*~[!#6;!#1H]
    {91, QH, 4, CH2},    // [#6H2](~*)~*~*~*~[!#6;!#1H]
    {95, N, 3, O},       // [#7]~*~*~[#8]
    {97, N, 4, O},       // [#7]~*~*~*~[#8]
    {104, QH, 2, CH2},   // [#6H2](~*)~*~[!#6;!#1H]
    {108, CH3, 4, CH2},  // [#6H3]~*~*~*~[#6H2]~*
    {111, N, 2, CH2},    // [#7]~*~[#6H2]~*
    {115, CH3, 2, CH2},  // [#6H3]~*~[#6H2]~*
    {116, CH3, 3, CH2},  // [#6H3]~*~*~[#6H2]~*
    {128, CH2, 4, CH2},  // *~[#6H2]~*~*~*~[#6H2]~*
    {129, CH2, 3, CH2},  // *~[#6H2]~*~*~[#6H2]~*
    {132, O, 2, CH2},    // [#8]~*~[#6H2]~*
};

constexpr RingRule ringRules[] = {
    {8, Q, 4},     // [!#6;!#1]~1~*~*~*~1
    {11, any, 4},  // *~1~*~*~*~1
    {16, Q, 3},    // [!#6;!#1]~1~*~*~1
    {19, any, 7},  // *~1~*~*~*~*~*~*~1
    {22, any, 3},  // *~1~*~*~1
    {83, Q, 5},    // [!#6;!#1]~1~*~*~*~*~1
    {96, any, 5},  // *~1~*~*~*~*~1
    {98, Q, 6},    // [!#6;!#1]~1~*~*~*~*~*~1
};

constexpr CountRule countRules[] = {
    {131, QH, 2},   // [!#6;!#1H].[!#6;!#1H]
    {140, O, 4},    // [#8].[#8].[#8].[#8]
    {141, CH3, 3},  // [#6H3].[#6H3].[#6H3]
    {142, N, 2},    // [#7].[#7]
    {146, O, 2},    // [#8].[#8]
    {149, CH3, 2},  // [#6H3], twice
    {159, O, 2},    // [#8].[#8]
};

}  // namespace

std::span<const AtomRule> GetAtomRules() {
  return atomRules;
}
std::span<const BondRule> GetBondRules() {
  return bondRules;
}
std::span<const ChainRule> GetChainRules() {
  return chainRules;
}
std::span<const RingRule> GetRingRules() {
  return ringRules;
}
std::span<const CountRule> GetCountRules() {
  return countRules;
}

}  // namespace QXFingrix
