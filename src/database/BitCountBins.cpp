#include "database/BitCountBins.h"

#include "database/MakeRoom.h"

namespace QXFingrix {

void BitCountBins::Append(const QXFingerPrint& fp, FingerPrintStore& store) {
  const unsigned bitCount = fp.CountBits();
  const unsigned binNumber = BinOf(bitCount);
  if (binNumber >= bins_.size()) bins_.resize(binNumber + 1);
  Bin& bin = bins_[binNumber];
  // Room first, so that nothing is left to fail once the entry is stored.
  MakeRoom(bin.entries);
  MakeRoom(bin.bitCounts);
  MakeRoom(bin.runs);
  const unsigned index = store.Size();
  const std::uint64_t* const words = store.Append(fp, bin.words);

  const unsigned numBits = fp.GetSize();
  bin.hasOneSize &= HasOneSize(binNumber, numBits);
  const auto isBeside = [&](const RunStart& run) {
    return run.numBits == numBits &&
           run.words + (bin.entries.size() - run.first) * NumWords(numBits) == words;
  };
  if (bin.runs.empty() || !isBeside(bin.runs.back())) {
    bin.runs.push_back({bin.entries.size(), words, numBits});
  }
  bin.entries.push_back(index);
  bin.bitCounts.push_back(bitCount);
}

}  // namespace QXFingrix
