#pragma once

#include <unistd.h>
#include <utility>

namespace velmara {

/// An open descriptor that closes itself.
class Descriptor {
 public:
  /// Takes over what open() and its like return.
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  /// Negative if nothing was opened.
  int get() const { return fd_; }
  /// Closes now; false if the system reports a late write error.
  bool close() { return ::close(std::exchange(fd_, -1)) == 0; }

 private:
  int fd_;
};

}  // namespace velmara
