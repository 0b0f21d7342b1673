#pragma once

namespace velmara {

/// Tells a connection that the other side reset from one that it closed, which the library's
/// sockets report alike. It matters to an answer that only the close completes.
class ResetWatch {
 public:
  ResetWatch() = default;
  ResetWatch(const ResetWatch&) = delete;
  ResetWatch& operator=(const ResetWatch&) = delete;
  ~ResetWatch() { stop(); }

  /// Watches a TCP socket, which stays open until stop(), its owner's close notwithstanding.
  void start(int socket);
  void stop();

  /// After the end of the connection: whether it was a reset.
  bool wasReset() const;

 private:
  int socket_ = -1;
};

}  // namespace velmara
