#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace velmara::testing_support {

/// The shortest answer that all is well.
inline const std::string kOk = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok";

/// The server's side of one connection. Calls end early when the other side or the test ends.
class Peer {
 public:
  Peer(int socket, const std::atomic<bool>& stopping) : socket_(socket), stopping_(stopping) {}

  /// Reads until what was read ends with this (a GET: with its head), or the other side stops.
  /// Gives all that was read.
  std::string readUntil(std::string_view ending);

  /// False when it could not all be sent.
  bool send(std::string_view bytes);

  /// Waits until the other side closes, reading nothing.
  void waitForClose();

  /// Ends the connection with a reset instead of a proper close.
  void reset();

 private:
  bool waitFor(short events);

  int socket_;
  const std::atomic<bool>& stopping_;
};

/// A server on a free port of loopback, on threads of its own, that does whatever its script says
/// with each connection and keeps what the script says it read.
class RecordingServer {
 public:
  /// The script gives back what is to be recorded.
  using Script = std::function<std::string(Peer&)>;

  /// Proxies that the environment names are not for it.
  explicit RecordingServer(Script script);
  RecordingServer(const RecordingServer&) = delete;
  RecordingServer& operator=(const RecordingServer&) = delete;
  ~RecordingServer();

  int port() const { return port_; }
  std::string url(const std::string& host = "127.0.0.1", const std::string& path = "/") const {
    return "http://" + host + ':' + std::to_string(port_) + path;
  }

  /// What was recorded of the connections that have ended.
  std::vector<std::string> requests() const;

  /// Waits, at most ten seconds, until so many have ended; the event loop stands still meanwhile.
  bool waitForRequests(std::size_t count) const;

 private:
  void accept();

  Script script_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<bool> stopping_ = false;
  mutable std::mutex mutex_;
  std::vector<std::string> requests_;
  std::thread acceptor_;
};

/// A script that reads until what ends a request, answers and records the request.
RecordingServer::Script answering(std::string_view ending, std::string answer);

/// One that says nothing until the other side goes; counts the requests that it has read whole.
RecordingServer::Script silent(std::string_view ending, std::atomic<int>& count);

}  // namespace velmara::testing_support
