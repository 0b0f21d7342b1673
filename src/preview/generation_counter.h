#pragma once

#include <atomic>
#include <cstdint>

namespace velmara {

/// Tells work that is still wanted from work that was overtaken. Whoever starts something takes a
/// token along; whatever makes the earlier work worthless (another photo, another region) takes a
/// new one; and a result is shown only while its token is the current one. Any thread.
class GenerationCounter {
 public:
  /// Stands for one of the generations; equal to itself only.
  class Token {
   public:
    friend bool operator==(const Token&, const Token&) = default;

   private:
    friend class GenerationCounter;
    explicit Token(std::uint64_t number) : number_(number) {}
    std::uint64_t number_;
  };

  /// The token of what is current now.
  Token current() const { return Token(number_.load()); }
  /// Overtakes everything before; the token of what comes.
  Token advance() { return Token(number_.fetch_add(1) + 1); }
  /// Whether nothing has overtaken what took the token along.
  bool isCurrent(const Token& token) const { return token == current(); }

 private:
  std::atomic<std::uint64_t> number_{0};
};

}  // namespace velmara
