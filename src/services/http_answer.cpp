#include "services/http_answer.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace velmara {
namespace {

constexpr std::size_t kLongestHead = std::size_t{64} * 1024;

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return std::tolower(x) == std::tolower(y);
  });
}

std::string_view withoutBlanks(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
  const std::size_t end = text.find_last_not_of(" \t") + 1;
  return begin < end ? text.substr(begin, end - begin) : std::string_view();
}

// The whole text as a number without sign.
bool parseNumber(std::string_view text, int base, std::uint64_t& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  return !text.empty() && error == std::errc() && end == text.data() + text.size();
}

}  // namespace

HttpAnswerReader::State HttpAnswerReader::feed(std::string_view bytes) {
  while (state_ == State::kReading && !bytes.empty()) {
    switch (step_) {
      case Step::kSized:
      case Step::kUntilClose:
      case Step::kChunk:
        bodyPiece(bytes);
        break;
      case Step::kHead:
        if (takeLine(bytes)) headLine();
        break;
      case Step::kChunkSize:
        if (takeLine(bytes)) chunkSize();
        break;
      case Step::kChunkEnd:
        if (takeLine(bytes)) {
          if (!line_.empty()) fault();
          step_ = Step::kChunkSize;
          line_.clear();
        }
        break;
      case Step::kTrailer:
        if (takeLine(bytes)) {
          if (line_.empty()) state_ = State::kComplete;
          line_.clear();
        }
        break;
    }
  }
  return state_;
}

HttpAnswerReader::State HttpAnswerReader::endOfStream() {
  if (state_ == State::kReading) {
    state_ = step_ == Step::kUntilClose ? State::kComplete : State::kFaulty;
  }
  return state_;
}

// Moves bytes up to a line end into line_; true when the line is whole, its end taken off.
bool HttpAnswerReader::takeLine(std::string_view& bytes) {
  const std::size_t end = bytes.find('\n');
  const std::size_t taken = end == std::string_view::npos ? bytes.size() : end + 1;
  headBytes_ += taken;
  if (headBytes_ > kLongestHead) {
    fault();
    return false;
  }
  line_.append(bytes.substr(0, taken));
  bytes.remove_prefix(taken);
  if (end == std::string_view::npos) return false;
  line_.pop_back();
  if (!line_.empty() && line_.back() == '\r') line_.pop_back();
  return true;
}

void HttpAnswerReader::headLine() {
  if (status_ == 0) {
    statusLine();
  } else if (line_.empty()) {
    endOfHead();
  } else {
    headerField(line_);
  }
  line_.clear();
}

void HttpAnswerReader::statusLine() {
  // "HTTP/1.1 200 OK": the reason may be missing.
  std::uint64_t number = 0;
  const std::string_view line = line_;
  if (!line.starts_with("HTTP/1.") || line.size() < 12 || line[8] != ' ' ||
      (line.size() > 12 && line[12] != ' ') || !parseNumber(line.substr(9, 3), 10, number) ||
      number < 100) {
    fault();
    return;
  }
  status_ = static_cast<int>(number);
}

void HttpAnswerReader::headerField(std::string_view line) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) {
    fault();
    return;
  }
  const std::string_view name = line.substr(0, colon);
  const std::string_view value = withoutBlanks(line.substr(colon + 1));
  if (equalsIgnoringCase(name, "Content-Length")) {
    std::uint64_t length = 0;
    if (!parseNumber(value, 10, length) || (sized_ && length != remaining_)) {
      fault();
      return;
    }
    sized_ = true;
    remaining_ = length;
  } else if (equalsIgnoringCase(name, "Transfer-Encoding")) {
    // Any other coding could not be taken apart.
    if (!equalsIgnoringCase(value, "chunked")) fault();
    chunked_ = true;
  } else if (equalsIgnoringCase(name, "Location")) {
    location_ = value;
  }
}

void HttpAnswerReader::endOfHead() {
  if (status_ < 200) {  // An interim answer; the real one follows.
    *this = HttpAnswerReader(std::move(sink_));
    return;
  }
  headBytes_ = 0;
  sink_.head(status_);
  if (status_ == 204 || status_ == 304) {
    state_ = State::kComplete;
  } else if (chunked_) {
    step_ = Step::kChunkSize;
  } else if (sized_) {
    step_ = Step::kSized;
    if (remaining_ == 0) state_ = State::kComplete;
  } else {
    step_ = Step::kUntilClose;
  }
}

void HttpAnswerReader::chunkSize() {
  const std::string_view line = line_;
  const std::string_view digits = withoutBlanks(line.substr(0, line.find(';')));
  if (!parseNumber(digits, 16, remaining_)) {
    fault();
  } else {
    step_ = remaining_ == 0 ? Step::kTrailer : Step::kChunk;
  }
  line_.clear();
  if (step_ == Step::kChunk) headBytes_ = 0;
}

void HttpAnswerReader::bodyPiece(std::string_view& bytes) {
  std::size_t taken = bytes.size();
  if (step_ != Step::kUntilClose) {
    taken = static_cast<std::size_t>(std::min<std::uint64_t>(taken, remaining_));
    remaining_ -= taken;
  }
  sink_.body(bytes.substr(0, taken));
  bytes.remove_prefix(taken);
  if (step_ == Step::kUntilClose || remaining_ > 0) return;
  if (step_ == Step::kSized) {
    state_ = State::kComplete;
  } else {
    step_ = Step::kChunkEnd;
  }
}

}  // namespace velmara
