#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace velmara {

/// Reads an HTTP/1.x answer (RFC 9112) as its bytes arrive and keeps nothing of its body: pieces go
/// to a sink and are gone. Heads beyond 64 KiB and framing that makes no sense are faults.
class HttpAnswerReader {
 public:
  enum class State { kReading, kComplete, kFaulty };

  /// Called when the head is complete, and for each piece of the body. They must not destroy the
  /// reader.
  struct Sink {
    std::function<void(int status)> head;
    std::function<void(std::string_view piece)> body;
  };

  explicit HttpAnswerReader(Sink sink) : sink_(std::move(sink)) {}

  /// Takes the next bytes. What follows a complete or faulty answer is ignored.
  State feed(std::string_view bytes);

  /// Says that the other side sends nothing more, which completes a body without a stated length.
  State endOfStream();

  State state() const { return state_; }

  /// After the head: the value of Location, empty if there is none.
  const std::string& location() const { return location_; }

 private:
  enum class Step { kHead, kSized, kUntilClose, kChunkSize, kChunk, kChunkEnd, kTrailer };

  bool takeLine(std::string_view& bytes);
  void headLine();
  void statusLine();
  void headerField(std::string_view line);
  void endOfHead();
  void chunkSize();
  void bodyPiece(std::string_view& bytes);
  void fault() { state_ = State::kFaulty; }

  Sink sink_;
  State state_ = State::kReading;
  Step step_ = Step::kHead;
  std::string line_;
  std::size_t headBytes_ = 0;
  int status_ = 0;
  bool chunked_ = false;
  bool sized_ = false;
  std::uint64_t remaining_ = 0;
  std::string location_;
};

}  // namespace velmara
