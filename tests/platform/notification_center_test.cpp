#include "platform/notification_center.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QObject>

#include <memory>
#include <string>
#include <vector>

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotificationCenterTest : public testing::Test {
 protected:
  NotificationCenter::Handler note(const std::string& who) {
    return [this, who](const Notification&) { calls.push_back(who); };
  }
  NotificationCenter center;
  std::vector<std::string> calls;
  QObject owner;
};

TEST_F(NotificationCenterTest, DeliversByNameInTheOrderOfRegistrationBeforePostReturns) {
  Notification seen;
  center.addObserver(owner, notifications::kSetupHeader,
                     [&](const Notification& notification) { seen = notification; });
  center.addObserver(owner, notifications::kSetupHeader, note("first"));
  const auto token = center.addObserver(notifications::kSetupHeader, note("second"));
  center.addObserver(owner, "b", note("other"));
  center.addObserver(owner, notifications::kSetupHeader, note("first again"));
  center.post(notifications::kSetupHeader, &calls,
              {{std::string(notifications::kWindowObject), &owner}});
  center.post("nobody listens");
  EXPECT_THAT(calls, ElementsAre("first", "second", "first again"));
  EXPECT_EQ(seen.name, "notificationSetupHeader");
  EXPECT_EQ(std::any_cast<std::vector<std::string>*>(seen.object), &calls);
  EXPECT_EQ(std::any_cast<QObject*>(seen.userInfo.at("WINDOW_OBJECT")), &owner);
}

TEST_F(NotificationCenterTest, RegistrationsEndWithTheirOwnersAndTokens) {
  auto mortal = std::make_unique<QObject>();
  auto token = center.addObserver("a", note("token"));
  center.addObserver(*mortal, "a", note("mortal"));
  center.addObserver(owner, "a", note("owner"));
  mortal.reset();
  center.post("a");
  EXPECT_THAT(calls, ElementsAre("token", "owner"));
  token.reset();
  center.removeObserver(owner);
  calls.clear();
  center.post("a");
  EXPECT_THAT(calls, IsEmpty());
}

TEST_F(NotificationCenterTest, ChangesDuringADeliveryTakeEffectAtOnceOrNextTime) {
  auto mortal = std::make_unique<QObject>();
  NotificationCenter::Token added;
  center.addObserver(owner, "a", [&](const Notification&) {
    calls.emplace_back("killer");
    mortal.reset();
    if (!added) added = center.addObserver("a", note("added"));
  });
  center.addObserver(*mortal, "a", note("mortal"));
  center.post("a");
  EXPECT_THAT(calls, ElementsAre("killer"));
  center.post("a");
  EXPECT_THAT(calls, ElementsAre("killer", "killer", "added"));
}

TEST_F(NotificationCenterTest, TokensAndOwnersMayOutliveTheCentre) {
  auto shortLived = std::make_unique<NotificationCenter>();
  auto token = shortLived->addObserver("a", note("token"));
  auto mortal = std::make_unique<QObject>();
  shortLived->addObserver(*mortal, "a", note("owner"));
  shortLived.reset();
  token.reset();
  mortal.reset();
  EXPECT_THAT(calls, IsEmpty());
}

}  // namespace
}  // namespace velmara
