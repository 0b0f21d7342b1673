#pragma once

#include <string>

namespace velmara::testing_support {

/// Moves the calling thread into a new, empty network of its own (root only, or where users may do
/// so), loopback up. Gives "" or, in words, why it cannot be done.
std::string enterNewNetwork();

/// Runs "ip" with these words in the thread's network; a failure fails the test.
void ip(const std::string& words);

/// Runs "ip" once for many lines of words.
void ipBatch(const std::string& lines);

}  // namespace velmara::testing_support
