// Many files at a time: several threads, a line or a bar of progress, failures that stop nothing but their
// own frame, and outputs that are there already left alone.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace qvn::tool {

struct BatchItem {
  std::string input;
  std::string output;                // as it is shown
  std::vector<std::string> outputs;  // the files that it becomes
};

/// Names of outputs: the inputs' own in `folder`, with the suffix. Throws Failure if two inputs would become
/// one file, or an output is an input.
std::vector<BatchItem> plan_batch(const std::vector<std::string>& inputs, const std::string& folder,
                                  const std::string& suffix,
                                  const std::function<std::vector<std::string>(const std::string&)>& names);

/// Runs `convert` for every item whose outputs are not there, or older than its input. Says how it went, and
/// throws Failure at the end if any frame failed.
void run_batch(const std::vector<BatchItem>& items, unsigned int jobs, bool again,
               const std::function<void(const BatchItem&)>& convert);

/// "12.3", of frames in so many seconds.
std::string rate_text(std::size_t frames, double seconds);

}  // namespace qvn::tool
