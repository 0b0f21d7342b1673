#pragma once

namespace velmara::cli {

/// From here on Ctrl-C (and a closed terminal, and a polite kill) ends the program at once with
/// exit code 130, except inside an UninterruptedSection.
void endOnInterrupt();

/// Holds an interrupt back until the section ends: a file being put in its place is put there
/// whole, and no temporary file stays behind.
class UninterruptedSection {
 public:
  UninterruptedSection();
  UninterruptedSection(const UninterruptedSection&) = delete;
  UninterruptedSection& operator=(const UninterruptedSection&) = delete;
  ~UninterruptedSection();
};

}  // namespace velmara::cli
