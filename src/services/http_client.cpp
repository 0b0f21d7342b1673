#include "services/http_client.h"

#include <QUrl>

#include <algorithm>
#include <array>
#include <cstring>
#include <curl/curl.h>
#include <memory>
#include <span>
#include <string_view>

#include "platform/late_library.h"
#include "services/service_addresses.h"

namespace velmara {
namespace {

using End = HttpAnswer::End;
using SteadyClock = std::chrono::steady_clock;

constexpr int kMostRedirects = 5;
constexpr std::size_t kPieceTold = std::size_t{16} * 1024;

// The operations of libcurl in use, by their names there without the prefix. The library is loaded
// with the first request: some twenty-five others come with it, and the window would have to wait
// for them.
// clang-format off
#define VELMARA_CURL_OPERATIONS(X)                                                               \
  X(easy_cleanup) X(easy_getinfo) X(easy_init) X(easy_setopt) X(easy_strerror) X(global_init)    \
  X(multi_add_handle) X(multi_cleanup) X(multi_info_read) X(multi_init) X(multi_perform)         \
  X(multi_poll) X(multi_remove_handle) X(multi_wakeup) X(slist_append) X(slist_free_all)
// clang-format on
struct CurlApi {
  CurlApi() {
    LateLibrary library(VELMARA_CURL_LIBRARY);
#define X(name) library.find(name, "curl_" #name);
    VELMARA_CURL_OPERATIONS(X)
#undef X
    isLoaded = library.isComplete() && global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  }
// A member's name cannot stand in parentheses.
#define X(name) decltype(&::curl_##name) name;  // NOLINT(bugprone-macro-parentheses)
  VELMARA_CURL_OPERATIONS(X)
#undef X
  bool isLoaded;  ///< whether the library was found, with all of them, and is ready
};

const CurlApi& curl() {
  static const CurlApi api;
  return api;
}

HttpAnswer failed(std::string reason) {
  return {.end = End::kFailed, .reason = std::move(reason)};
}

bool holdsLineEnd(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
}

bool isAnsweredByGet(int status) {
  return status == 301 || status == 302 || status == 303;
}

bool staysWithTheHost(const QUrl& from, const QUrl& to) {
  if (reachesNobody(to) || from.host().compare(to.host(), Qt::CaseInsensitive) != 0) return false;
  if (from.scheme() == to.scheme()) {
    const int usual = from.scheme() == QLatin1String("https") ? 443 : 80;
    return from.port(usual) == to.port(usual);
  }
  // The one change of scheme that is no step back.
  return from.scheme() == QLatin1String("http") && to.port() < 0 && from.port() < 0;
}

// One request and its answer. A redirect is told of only if it is not to be followed, which is
// known at its end.
class Transfer {
 public:
  /// Without a request, a GET.
  Transfer(const QUrl& url, const HttpRequest* request, const HttpOptions& options,
           const std::stop_token& stop, const std::function<void(HttpStep)>& told)
      : request_(request), options_(options), stop_(stop), told_(told) {
    if (easy_ == nullptr) return;
    if (request != nullptr) {
      for (const auto& [name, value] : request->fields) {
        if (!holdsLineEnd(name) && !holdsLineEnd(value))
          addField(std::string(name).append(": ").append(value));
      }
      set(CURLOPT_POST, 1L);
      set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request->bodySize));
      set(CURLOPT_READFUNCTION, &Transfer::forward<&Transfer::read>);
      set(CURLOPT_READDATA, this);
    }
    for (const char* field : {"Connection: close", "Accept:", "Expect:"}) addField(field);
    set(CURLOPT_HTTPHEADER, fields_.get());
    set(CURLOPT_URL, url.toEncoded().constData());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_HEADERFUNCTION, &Transfer::forward<&Transfer::header>);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &Transfer::forward<&Transfer::data>);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_ERRORBUFFER, error_.data());
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    // Addresses that do not answer leave time for the host's others.
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(options.timeout.count()));
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L);  // A slow name server does not hold up a stop.
    if (!options.certificates.empty()) set(CURLOPT_CAINFO, options.certificates.c_str());
  }
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  HttpAnswer run(bool mayRedirect) {
    const std::unique_ptr<CURLM, CURLMcode (*)(CURLM*)> multi(curl().multi_init(),
                                                              curl().multi_cleanup);
    if (multi == nullptr || easy_ == nullptr) return failed("out of memory");
    mayRedirect_ = mayRedirect;
    curl().multi_add_handle(multi.get(), easy_.get());
    const auto exchange = [&]() -> HttpAnswer {
      const std::stop_callback wake(stop_, [&] { curl().multi_wakeup(multi.get()); });
      for (;;) {
        int count = 0;
        curl().multi_perform(multi.get(), &count);
        if (stop_.stop_requested()) return {.end = End::kCancelled};
        if (const CURLMsg* message = curl().multi_info_read(multi.get(), &count)) {
          return ended(message->data.result);
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            progressed_ + options_.timeout - SteadyClock::now());
        if (left.count() <= 0) return failed("timed out");
        curl().multi_poll(multi.get(), nullptr, 0, static_cast<int>(left.count()), nullptr);
      }
    };
    HttpAnswer answer = exchange();
    curl().multi_remove_handle(multi.get(), easy_.get());
    return answer;
  }

  /// Where the answer sends the client; empty if nowhere.
  QUrl redirect() const {
    const char* target = nullptr;
    if (easy_ != nullptr) curl().easy_getinfo(easy_.get(), CURLINFO_REDIRECT_URL, &target);
    return target != nullptr ? QUrl(QString::fromUtf8(target)) : QUrl();
  }

  /// Tells of a redirect that is not followed after all.
  void tellHeldBack() {
    if (!isHeldBack_) return;
    tell(HttpStep::kDidReceiveResponse);
    if (!answer_.body.empty()) tell(HttpStep::kDidReceiveData);
  }

 private:
  template <typename Value>
  void set(CURLoption option, Value value) {
    curl().easy_setopt(easy_.get(), option, value);
  }
  void addField(const std::string& line) {
    fields_.reset(curl().slist_append(fields_.release(), line.c_str()));
  }
  void tell(HttpStep step) const {
    if (told_) told_(step);
  }

  // What libcurl calls with bytes to fill or to take.
  template <auto Operation>
  static std::size_t forward(char* bytes, std::size_t size, std::size_t count, void* self) {
    return (static_cast<Transfer*>(self)->*Operation)({bytes, size * count});
  }
  bool fits(std::size_t more) {
    received_ += more;
    return received_ <= options_.largestAnswer;
  }
  std::size_t read(std::span<char> buffer) {
    progressed_ = SteadyClock::now();
    const auto room = static_cast<std::size_t>(
        std::min<std::uint64_t>(buffer.size(), request_->bodySize - sent_));
    for (std::size_t count = 0; count < room;) {
      if (pieceSent_ == piece_.size()) {
        piece_ = request_->body();
        pieceSent_ = 0;
        if (piece_.empty() || stop_.stop_requested()) return CURL_READFUNC_ABORT;
      }
      const std::size_t part = std::min(room - count, piece_.size() - pieceSent_);
      std::memcpy(buffer.data() + count, piece_.data() + pieceSent_, part);
      pieceSent_ += part;
      count += part;
    }
    sent_ += room;
    tell(HttpStep::kDidSendBodyData);
    return room;
  }

  std::size_t header(std::string_view line) {
    if (!fits(line.size())) return 0;
    if (line != "\r\n" && line != "\n") return line.size();
    long status = 0;
    curl().easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
    if (status >= 200 && !std::exchange(hasHead_, true)) {  // Not an interim answer, nor a trailer.
      answer_.status = static_cast<int>(status);
      isHeldBack_ = mayRedirect_ && isAnsweredByGet(answer_.status);
      if (!isHeldBack_) tell(HttpStep::kDidReceiveResponse);
    }
    return line.size();
  }

  std::size_t data(std::string_view piece) {
    if (!fits(piece.size())) return 0;
    const std::size_t before = answer_.body.size();
    answer_.body += piece;
    const bool opensPiece = before == 0 || before / kPieceTold != answer_.body.size() / kPieceTold;
    if (opensPiece && !isHeldBack_) tell(HttpStep::kDidReceiveData);
    return piece.size();
  }

  HttpAnswer ended(CURLcode result) {
    // libcurl takes a head that the end of the connection cuts short for one.
    if (result == CURLE_OK && !hasHead_) return failed("the answer was cut short");
    if (result == CURLE_OK) {
      answer_.end = End::kFinished;
      return answer_;
    }
    if (received_ > options_.largestAnswer) return failed("the answer is too long");
    return failed(error_[0] != '\0' ? error_.data() : curl().easy_strerror(result));
  }

  const HttpRequest* request_;
  const HttpOptions& options_;
  const std::stop_token& stop_;
  const std::function<void(HttpStep)>& told_;
  std::unique_ptr<curl_slist, void (*)(curl_slist*)> fields_{nullptr, curl().slist_free_all};
  std::array<char, CURL_ERROR_SIZE> error_{};
  std::unique_ptr<CURL, void (*)(CURL*)> easy_{curl().easy_init(), curl().easy_cleanup};
  SteadyClock::time_point progressed_ = SteadyClock::now();
  std::string piece_;          ///< of the body, its first bytes sent
  std::size_t pieceSent_ = 0;  ///< of piece_
  std::uint64_t sent_ = 0;     ///< of the whole body
  std::size_t received_ = 0;
  bool mayRedirect_ = false;
  bool isHeldBack_ = false;
  bool hasHead_ = false;
  HttpAnswer answer_;
};

}  // namespace

HttpAnswer post(const HttpRequest& request, const HttpOptions& options, const std::stop_token& stop,
                const std::function<void(HttpStep)>& told) {
  QUrl url(QString::fromStdString(request.url));
  if (reachesNobody(url)) return failed("the address reaches nobody");
  if (stop.stop_requested()) return {.end = End::kCancelled};
  if (!curl().isLoaded) return failed("libcurl is missing");
  const HttpRequest* toSend = &request;
  for (int redirects = 0;; ++redirects) {
    Transfer transfer(url, toSend, options, stop, told);
    HttpAnswer answer = transfer.run(redirects < kMostRedirects);
    if (answer.end != End::kFinished || !isAnsweredByGet(answer.status)) return answer;
    const QUrl next = transfer.redirect();
    if (redirects == kMostRedirects || !staysWithTheHost(url, next)) {
      transfer.tellHeldBack();
      return answer;
    }
    url = next;
    toSend = nullptr;
  }
}

}  // namespace velmara
