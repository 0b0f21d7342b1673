#pragma once

namespace velmara::testing_support {

/// What a limit of time is multiplied by: other programs share the machine, and under a sanitizer
/// the program itself takes several times as long.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr int kSlowness = 10;
#else
inline constexpr int kSlowness = 2;
#endif

}  // namespace velmara::testing_support
