#pragma once

#include <curl/curl.h>

namespace velmara {

/// The operations of libcurl in use, by their names there without the prefix. The library is loaded
/// with the first request: some twenty-five others come with it, and the window would have to wait
/// for them.
// clang-format off
#define VELMARA_CURL_OPERATIONS(X)                                                               \
  X(easy_cleanup) X(easy_getinfo) X(easy_init) X(easy_setopt) X(easy_strerror) X(global_init)    \
  X(multi_add_handle) X(multi_cleanup) X(multi_info_read) X(multi_init) X(multi_perform)         \
  X(multi_poll) X(multi_remove_handle) X(multi_wakeup) X(slist_append) X(slist_free_all)
// clang-format on

struct CurlApi {
// A member's name cannot stand in parentheses.
#define X(name) decltype(&::curl_##name) name = nullptr;  // NOLINT(bugprone-macro-parentheses)
  VELMARA_CURL_OPERATIONS(X)
#undef X
  /// Whether the library was found, with all of them, and is ready.
  bool isLoaded = false;
};

/// Loads the library with the first call, on any thread.
const CurlApi& curl();

}  // namespace velmara
