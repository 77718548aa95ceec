#include "generators/Reference.h"

namespace QXFingrix {
namespace {

constexpr const char* script = "path_reference.py";

constexpr const char* types[] = {
    "Path,ver=2.0.0,size=4096,bonds=0-5,atype=DefaultPathAtom,btype=DefaultPathBond",
    "Path,ver=2.0.0,size=1000,bonds=1-7,atype=AtmNum|Chiral|HCount,btype=Order|Chiral|InRing",
    "Path,ver=2.0.0,size=1021,bonds=0-4,atype=AtmNum|EqHalo|EqArom|EqHBAcc|EqHBDon|InRing|HCount,btype=Order|"
    "InRing",
    "Path,ver=2.0.0,size=65535,bonds=2-6,atype=AtmNum|Arom|Chiral|FCharge|HvyDeg|Hyb|InRing|EqHalo|EqHBAcc,"
    "btype=Order|Chiral|InRing",
    "Path,ver=2.0.0,size=16,bonds=3-3,atype=None,btype=Order",
    "Path,ver=2.0.0,size=16384,bonds=0-6,atype=AtmNum|Hyb|Arom|EqHBDon,btype=None",
};

TEST(PathReference, BitsAgreeForBundledMolecules) {
  test::CompareWithReference(script, QX_SOURCE_DIR "/data/molecules.smi", 300, types);
}

TEST(PathReference, BitsAgreeForFiveThousandDrugLikeMolecules) {
  test::CompareWithReference(script, QX_SHARED_DATA_DIR "/drug_5k.smi", 5000, types);
}

TEST(PathReference, BitsAreStillThoseOfTheGoldenFile) {
  test::CompareWithGoldenFile("path_bits.tsv");
}

}  // namespace
}  // namespace QXFingrix
