#pragma once

#include <cstdint>
#include <initializer_list>

namespace velmara {

/// A set of the values of an enumeration that counts from 0 and has at most 32 of them.
template <typename Enum>
class EnumSet {
 public:
  constexpr EnumSet() = default;
  /// The set of the values listed.
  constexpr EnumSet(std::initializer_list<Enum> values) {
    for (const Enum value : values) bits_ |= bit(value);
  }

  /// Whether the value is in it.
  constexpr bool contains(Enum value) const { return (bits_ & bit(value)) != 0; }
  /// What is in this set or in the others.
  constexpr EnumSet with(EnumSet others) const { return EnumSet(bits_ | others.bits_); }
  /// What is in this set and not in the others.
  constexpr EnumSet without(EnumSet others) const { return EnumSet(bits_ & ~others.bits_); }

  friend constexpr bool operator==(EnumSet, EnumSet) = default;

 private:
  constexpr explicit EnumSet(std::uint32_t bits) : bits_(bits) {}
  static constexpr std::uint32_t bit(Enum value) {
    return std::uint32_t{1} << static_cast<unsigned>(value);
  }

  std::uint32_t bits_ = 0;
};

}  // namespace velmara
