#include "support/recording_server.h"

#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <cstdlib>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace velmara::testing_support {

// Waits in short steps, so that the end of the test ends it too.
bool Peer::waitFor(short events) {
  while (!stopping_) {
    pollfd entry{.fd = socket_, .events = events, .revents = 0};
    if (::poll(&entry, 1, 10) > 0) return (entry.revents & (events | POLLHUP | POLLERR)) != 0;
  }
  return false;
}

std::string Peer::readUntil(std::string_view ending) {
  std::string all;
  std::array<char, 65536> piece{};
  const auto isWhole = [&] {
    return all.ends_with(ending) || (all.starts_with("GET ") && all.ends_with("\r\n\r\n"));
  };
  while (!isWhole() && waitFor(POLLIN)) {
    const ssize_t count = ::recv(socket_, piece.data(), piece.size(), 0);
    if (count <= 0) break;
    all.append(piece.data(), static_cast<std::size_t>(count));
  }
  return all;
}

bool Peer::send(std::string_view bytes) {
  while (!bytes.empty()) {
    if (!waitFor(POLLOUT)) return false;
    const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

void Peer::waitForClose() {
  waitFor(POLLRDHUP);
}

void Peer::reset() {
  const linger now{.l_onoff = 1, .l_linger = 0};
  ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
}

RecordingServer::RecordingServer(Script script)
    : script_(std::move(script)), listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  ::setenv("NO_PROXY", "127.0.0.1,localhost", 1);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof(address);
  if (::bind(listener_, reinterpret_cast<const sockaddr*>(&address), length) != 0) {
    throw std::runtime_error("no port is free");
  }
  ::listen(listener_, 16);
  ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] { accept(); });
}

RecordingServer::~RecordingServer() {
  stopping_ = true;
  acceptor_.join();
  ::close(listener_);
}

std::vector<std::string> RecordingServer::requests() const {
  const std::scoped_lock lock(mutex_);
  return requests_;
}

bool RecordingServer::waitForRequests(std::size_t count) const {
  for (int wait = 0; wait < 60000 && requests().size() < count; ++wait) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return requests().size() >= count;
}

void RecordingServer::accept() {
  std::vector<std::thread> connections;
  while (!stopping_) {
    pollfd entry{.fd = listener_, .events = POLLIN, .revents = 0};
    if (::poll(&entry, 1, 10) <= 0) continue;
    const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) continue;
    connections.emplace_back([this, socket] {
      Peer peer(socket, stopping_);
      std::string read = script_(peer);
      {
        const std::scoped_lock lock(mutex_);
        requests_.push_back(std::move(read));
      }
      ::close(socket);
    });
  }
  for (std::thread& connection : connections) connection.join();
}

RecordingServer::Script answering(std::string_view ending, std::string answer) {
  return [ending, answer = std::move(answer)](Peer& peer) {
    std::string request = peer.readUntil(ending);
    peer.send(answer);
    return request;
  };
}

RecordingServer::Script silent(std::string_view ending, std::atomic<int>& count) {
  return [ending, &count](Peer& peer) {
    std::string request = peer.readUntil(ending);
    ++count;
    peer.waitForClose();
    return request;
  };
}

}  // namespace velmara::testing_support
