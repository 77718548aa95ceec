// Counting against multisets of strings.

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <thread>

#include "QXChem/QXLingo.h"
#include "chem/SharedMolecules.h"

namespace QXChem {
namespace {

using Terms = std::array<unsigned, 3>;  // only in the profile, only in the text, in both

std::map<std::string, unsigned> Lingos(const std::string& text) {
  std::map<std::string, unsigned> lingos;
  if (text.size() >= 4) {
    for (std::size_t i = 0; i + 4 <= text.size(); ++i) ++lingos[text.substr(i, 4)];
  } else if (!text.empty()) {
    lingos[text] = 1;
  }
  return lingos;
}

Terms NaiveTerms(const std::map<std::string, unsigned>& a, const std::map<std::string, unsigned>& b) {
  Terms terms = {};
  for (const auto& [lingo, count] : a) terms[0] += count;
  for (const auto& [lingo, count] : b) {
    const auto found = a.find(lingo);
    const unsigned both = found == a.end() ? 0 : std::min(count, found->second);
    terms[0] -= both;
    terms[1] += count - both;
    terms[2] += both;
  }
  return terms;
}

Terms CountTerms(const QXLingoSim& profile, const std::string& text) {
  Terms terms = {};
  EXPECT_TRUE(profile.CountTerms(text, &terms[0], &terms[1], &terms[2]));
  return terms;
}

void CompareAllPairs(const std::vector<std::string>& profiles, const std::vector<std::string>& texts) {
  std::vector<std::map<std::string, unsigned>> lingos;
  for (const std::string& text : texts) lingos.push_back(Lingos(text));
  for (const std::string& text : profiles) {
    const QXLingoSim profile(text, 1);
    ASSERT_TRUE(profile.IsValid()) << text;
    const auto expected = Lingos(text);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      ASSERT_EQ(CountTerms(profile, texts[i]), NaiveTerms(expected, lingos[i]))
          << text.substr(0, 100) << " and " << texts[i].substr(0, 100);
    }
  }
}

std::string RandomText(std::mt19937& random, std::size_t length, char first, unsigned numCharacters) {
  std::string text;
  while (text.size() < length) text += static_cast<char>(first + random() % numCharacters);
  return text;
}

TEST(LingoSim, TermsOfRealMoleculesAreThoseOfMultisets) {
  std::ifstream file(QX_SOURCE_DIR "/data/molecules.smi");
  std::vector<std::string> texts;
  for (std::string line; texts.size() < 200 && std::getline(file, line);) {
    texts.push_back(line.substr(0, line.find(' ')));
  }
  ASSERT_EQ(texts.size(), 200u);
  CompareAllPairs(texts, texts);
}

TEST(LingoSim, TermsOfAnyTextsAreThoseOfMultisets) {
  std::mt19937 random(1);
  std::vector<std::string> texts = {"", "C", "O", "CO", "OC", "CCO", "CCOO", "CCCC", "CCCCC"};
  for (const std::size_t length : {6, 20, 300, 3000}) {
    for (const unsigned numCharacters : {1, 2, 5, 95}) {
      texts.push_back(RandomText(random, length, ' ', numCharacters));
    }
  }
  texts.push_back(RandomText(random, 100'000, ' ', 95));
  texts.push_back(std::string(100'000, 'C'));
  std::vector<std::string> withAnyBytes = texts;
  for (const std::size_t length : {1, 2, 3, 4, 5, 3000}) {
    withAnyBytes.push_back(std::string(length, '\0'));
    withAnyBytes.push_back(std::string(length, '\xff'));
    withAnyBytes.push_back(RandomText(random, length, '\0', 256));
    withAnyBytes.push_back("CO" + std::string(length, '\0') + "CCO");
  }
  withAnyBytes.push_back(std::string("CO\0\0", 4));
  withAnyBytes.push_back(std::string("\0CCO", 4));
  CompareAllPairs(texts, withAnyBytes);
}

TEST(LingoSim, WhatIsNoProfileLeavesTheCountsAlone) {
  QXLingoSim moved("CCCC", 1);
  const QXLingoSim taken = std::move(moved);
  EXPECT_TRUE(taken.IsValid());
  const QXLingoSim profiles[] = {QXLingoSim(),
                                 QXLingoSim("CCCC", 0),
                                 QXLingoSim("CCCC", 2),
                                 QXLingoSim("CC\nCC", 1),
                                 QXLingoSim("C\x80", 1),
                                 QXLingoSim("CCCC\x7f", 1),
                                 QXLingoSim(std::string_view("CCC\0", 4), 1),
                                 std::move(moved)};
  for (const QXLingoSim& profile : profiles) {
    Terms terms = {7, 8, 9};
    EXPECT_FALSE(profile.IsValid());
    EXPECT_FALSE(profile.CountTerms("CCCC", &terms[0], &terms[1], &terms[2]));
    EXPECT_EQ(terms, (Terms{7, 8, 9}));
  }
}

TEST(LingoSim, ThreadsShareAProfile) {
  std::mt19937 random(1);
  for (const std::size_t length : {40, 4000}) {
    const QXLingoSim profile(RandomText(random, length, 'A', 20), 1);
    std::vector<std::string> texts;
    std::vector<Terms> expected;
    for (unsigned i = 0; i < 100; ++i) {
      texts.push_back(RandomText(random, 500, 'A', 20));
      expected.push_back(CountTerms(profile, texts.back()));
    }
    std::vector<std::jthread> threads;
    for (unsigned t = 0; t < 4; ++t) {
      threads.emplace_back([&] {
        for (unsigned i = 0; i < 1000; ++i) {
          ASSERT_EQ(CountTerms(profile, texts[i % texts.size()]), expected[i % texts.size()]);
        }
      });
    }
  }
}

}  // namespace
}  // namespace QXChem
