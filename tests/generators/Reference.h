#pragma once

// Bits of fingerprints against the Python programs of tests/reference, which were written from the rules and
// not from this library, and against bits that these gave once and for all (tests/golden).

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <span>
#include <sstream>

#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXMakeFP.h"
#include "generators/Molecules.h"

namespace QXFingrix::test {

inline std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : text) c == separator ? (void)parts.emplace_back() : parts.back().push_back(c);
  return parts;
}

// The set bits joined by commas, "-" for a molecule that cannot be read.
inline std::string OnBits(const std::string& smiles, const QXFPTypeBase* type) {
  QXFingerPrint fp;
  if (!QXMakeFP(fp, ReadSmiles(smiles), type)) return "-";
  std::string text;
  for (int bit = fp.FirstBit(); bit >= 0; bit = fp.NextBit(bit)) {
    if (!text.empty()) text += ',';
    text += std::to_string(bit);
  }
  return text;
}

// A Python that has the packages which the reference needs; empty when there is none.
inline std::string FindPython() {
  for (const char* const python : {"/usr/bin/python3", "python3"}) {
    const std::string probe = std::string(python) + " -c 'import numpy, rdkit' 2> /dev/null";
    if (std::system(probe.c_str()) == 0) return python;
  }
  return "";
}

// Runs a reference over the first lines of a file and compares line by line.
inline void CompareWithReference(const std::string& script, const std::string& file, std::size_t limit,
                                 std::span<const char* const> referenceTypes) {
  if (!std::filesystem::exists(file)) GTEST_SKIP() << "no " << file;
  const std::string python = FindPython();
  if (python.empty()) GTEST_SKIP() << "no Python with RDKit and NumPy";
  std::string command = python + " " QX_SOURCE_DIR "/tests/reference/" + script + " --limit " +
                        std::to_string(limit) + " '" + file + "'";
  std::vector<const QXFPTypeBase*> types;
  for (const char* const type : referenceTypes) {
    command += std::string(" '") + type + "'";
    types.push_back(QXGetFPType(std::string(type)));
    ASSERT_NE(types.back(), nullptr) << type;
  }
  std::ostringstream output;
  {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    ASSERT_NE(pipe, nullptr);
    char buffer[65536];
    while (const std::size_t n = std::fread(buffer, 1, sizeof buffer, pipe.get())) output.write(buffer, n);
  }
  std::istringstream input(output.str());
  const auto lines = ReadSmilesFile(file, limit);
  std::vector<unsigned> numDifferent(types.size());
  for (const SmilesLine& line : lines) {
    std::string answer;
    ASSERT_TRUE(std::getline(input, answer)) << "the reference stopped before " << line.name;
    const std::vector<std::string> columns = Split(answer, '\t');
    ASSERT_EQ(columns.size(), types.size() + 1) << answer.substr(0, 200);
    ASSERT_EQ(columns[0], line.name);
    for (std::size_t i = 0; i < types.size(); ++i) {
      const std::string bits = OnBits(line.smiles, types[i]);
      if (bits == columns[i + 1]) continue;
      if (++numDifferent[i] > 3) continue;  // the first few say enough
      EXPECT_EQ(bits, columns[i + 1]) << line.smiles << "\n" << referenceTypes[i];
    }
  }
  EXPECT_EQ(numDifferent, std::vector<unsigned>(types.size()));
}

// Columns: name, SMILES, bits under each type named in the header line. Lines starting with '#' are comments.
inline void CompareWithGoldenFile(const std::string& name) {
  std::ifstream golden(QX_SOURCE_DIR "/tests/golden/" + name);
  ASSERT_TRUE(golden.is_open());
  std::vector<const QXFPTypeBase*> types;
  std::size_t numChecked = 0;
  for (std::string line; std::getline(golden, line);) {
    if (line.starts_with('#')) continue;
    const std::vector<std::string> columns = Split(line, '\t');
    ASSERT_GT(columns.size(), 2u) << line;
    if (types.empty()) {
      for (std::size_t i = 2; i < columns.size(); ++i) types.push_back(QXGetFPType(columns[i]));
      continue;
    }
    ASSERT_EQ(columns.size(), types.size() + 2) << line;
    for (std::size_t i = 0; i < types.size(); ++i) {
      ASSERT_NE(types[i], nullptr);
      EXPECT_EQ(OnBits(columns[1], types[i]), columns[i + 2]) << columns[1];
      ++numChecked;
    }
  }
  EXPECT_GE(numChecked, 150u);
}

}  // namespace QXFingrix::test
