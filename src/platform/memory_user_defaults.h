#pragma once

#include <map>
#include <string>
#include <string_view>
#include <variant>

#include "platform/user_defaults.h"

namespace velmara {

/// Settings that live as long as the object: the base of the store in a file.
class MemoryUserDefaults : public UserDefaults {
 public:
  /// The identifier names the domain that removePersistentDomain accepts.
  explicit MemoryUserDefaults(std::string identifier);

  std::optional<std::string> stringForKey(std::string_view key) const override;
  std::optional<std::int64_t> integerForKey(std::string_view key) const override;
  std::optional<bool> boolForKey(std::string_view key) const override;
  std::optional<DefaultsArray> arrayForKey(std::string_view key) const override;

  void setString(std::string_view key, std::string value) override;
  void setInteger(std::string_view key, std::int64_t value) override;
  void setBool(std::string_view key, bool value) override;
  void setArray(std::string_view key, DefaultsArray value) override;
  void removeObjectForKey(std::string_view key) override;

  bool synchronize() override { return true; }
  void removePersistentDomain(std::string_view identifier) override;

 protected:
  using Stored = std::variant<std::string, std::int64_t, bool, DefaultsArray>;
  using Values = std::map<std::string, Stored, std::less<>>;

  const std::string& identifier() const { return identifier_; }
  Values values;

 private:
  std::string identifier_;
};

}  // namespace velmara
