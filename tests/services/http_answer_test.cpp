#include "services/http_answer.h"

#include <gtest/gtest.h>

namespace velmara {
namespace {

using State = HttpAnswerReader::State;

struct Read {
  State state = State::kReading;
  std::vector<int> heads;
  std::string body;
  std::string location;
};

Read readInPieces(std::string_view bytes, std::size_t piece, bool thenEnd) {
  Read read;
  HttpAnswerReader reader({[&](int status) { read.heads.push_back(status); },
                           [&](std::string_view part) { read.body += part; }});
  while (!bytes.empty()) {
    reader.feed(bytes.substr(0, piece));
    bytes.remove_prefix(std::min(piece, bytes.size()));
  }
  if (thenEnd) reader.endOfStream();
  read.state = reader.state();
  read.location = reader.location();
  return read;
}

TEST(HttpAnswer, IsReadTheSameInPiecesOfAnySize) {
  struct Case {
    std::string_view bytes;
    State state;  ///< while the connection stays open
    State atEnd;  ///< once it is closed
    std::string_view body;
  };
  for (const Case& it : std::initializer_list<Case>{
           {"HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabc", State::kComplete, State::kComplete,
            "abc"},
           {"HTTP/1.1 200\r\ncontent-length:0\r\n\r\n", State::kComplete, State::kComplete, ""},
           {"HTTP/1.0 500 No\n\nabc", State::kReading, State::kComplete, "abc"},
           {"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nabc", State::kReading, State::kFaulty,
            "abc"},
           {"HTTP/1.1 200 OK\r\nTransfer-Encoding: Chunked\r\n\r\n3\r\nabc\r\nA;x=y\r\n0123456789"
            "\r\n0\r\nTrailer: x\r\n\r\n",
            State::kComplete, State::kComplete, "abc0123456789"},
           {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n", State::kReading,
            State::kFaulty, "abc"},
           {"HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 204 None\r\n\r\n", State::kComplete,
            State::kComplete, ""},
           {"HTTP/1.1 200 O", State::kReading, State::kFaulty, ""},
       }) {
    for (const std::size_t piece :
         {std::size_t{1}, std::size_t{2}, std::size_t{7}, it.bytes.size()}) {
      const Read open = readInPieces(it.bytes, piece, false);
      EXPECT_EQ(open.state, it.state) << it.bytes;
      EXPECT_EQ(open.body, it.body);
      EXPECT_LE(open.heads.size(), 1U);
      EXPECT_EQ(readInPieces(it.bytes, piece, true).state, it.atEnd) << it.bytes;
    }
  }
}

TEST(HttpAnswer, NonsenseIsAFault) {
  for (const std::string& bytes :
       {std::string("SSH-2.0-server\r\n"), std::string("HTTP/2 200\r\n"),
        std::string("HTTP/1.1 2x0 OK\r\n"), std::string("HTTP/1.1 099 OK\r\n"),
        std::string("HTTP/1.1 200 OK\r\nno colon\r\n"),
        std::string("HTTP/1.1 200 OK\r\nContent-Length: -1\r\n"),
        std::string("HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999\r\n"),
        std::string("HTTP/1.1 200 OK\r\nContent-Length: 1\r\nContent-Length: 2\r\n"),
        std::string("HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip\r\n"),
        std::string("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nxyz\r\n"),
        std::string("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\nab\r\n"),
        "HTTP/1.1 200 OK\r\nX: " + std::string(70000, 'x'),
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + std::string(70000, '0')}) {
    EXPECT_EQ(readInPieces(bytes, bytes.size(), false).state, State::kFaulty)
        << bytes.substr(0, 60);
  }
}

TEST(HttpAnswer, TellsWhereARedirectLeads) {
  EXPECT_EQ(readInPieces("HTTP/1.1 302 Found\r\nLOCATION:\t /other \r\nContent-Length: 0\r\n\r\n",
                         5, false)
                .location,
            "/other");
}

}  // namespace
}  // namespace velmara
