#pragma once

#include <chrono>
#include <cstdio>
#include <iostream>

#include "QXFingrix/QXSimScore.h"

namespace QXFingrix::Bench {

/// For each index below numEntries read from standard input, runs search(index) once and writes one line: its
/// nanoseconds, then index and score of every hit. Ends with the input.
template <class Search>
void AnswerQueries(std::size_t numEntries, Search search) {
  for (std::size_t query = 0; std::cin >> query && query < numEntries;) {
    const auto start = std::chrono::steady_clock::now();
    const auto hits = search(query);
    const std::chrono::nanoseconds time = std::chrono::steady_clock::now() - start;
    std::printf("%lld", static_cast<long long>(time.count()));
    for (const QXSimScore& hit : hits) std::printf(" %u %.9g", hit.GetIdx(), hit.GetScore());
    std::printf("\n");
    std::fflush(stdout);
  }
}

}  // namespace QXFingrix::Bench
