#pragma once

#include <exception>
#include <thread>
#include <vector>

namespace QXFingrix {

/// Runs work on numThreads threads and waits for all of them. One thread is the calling one. Where the system
/// refuses to start as many, fewer run it, at least the calling one.
/// Shape    work takes its share from what the threads have in common, and does not throw.
template <class Work>
void RunThreads(unsigned numThreads, const Work& work) {
  if (numThreads == 1) {
    work();
    return;
  }
  std::vector<std::jthread> threads;
  try {
    threads.reserve(numThreads);
    while (threads.size() < numThreads) threads.emplace_back(work);
  } catch (const std::exception&) {  // no thread, or no memory for one
    if (threads.empty()) work();
  }
}

}  // namespace QXFingrix
