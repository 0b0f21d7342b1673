#include "app/data_store/data_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/recorded_log.h"
#include "support/run_program.h"
#include "support/scripted_desktop.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::contentsOf;
using testing_support::ScratchFolder;
using testing_support::writeFile;

const ManagedObject kNote{"Note", {{"text", "a < b & \"c\" \r\n\tcaf\xC3\xA9 \xF0\x9F\x98\x80"}}};

class DataStoreTest : public testing::Test {
 protected:
  DataStoreTest() {
    setup.applicationSupportDirectory = support.file("share");
    setup.bundle.resourceFolders = {resources.path().string()};
    setup.alerts = &alerts;
    setup.presentError = [this](const DataStoreError& error) {
      errors.push_back(error);
      return canMend;
    };
    clear();
  }

  std::string folder() const { return support.file("share/KV.Tarnlet"); }
  std::string file() const { return folder() + "/OSXCoreDataObjC.storedata"; }
  // From now on nothing can be saved.
  void blockSaving() const { fs::create_directories(file() + "/blocked"); }
  // Without a store yet.
  void clear() {
    fs::remove_all(support.file("share"));
    writeFile(resources.file("Tarnlet.momd"),
              "<model name=\"Tarnlet\"><entity name=\"Note\"/><entity name=\"Tag\"/></model>");
    errors.clear();
    alerts.shown.clear();
  }

  ScratchFolder support;
  ScratchFolder resources;
  testing_support::ScriptedAlerts alerts;
  DataStoreSetup setup;
  std::vector<DataStoreError> errors;
  bool canMend = false;
  testing_support::RecordedLog log;
};

TEST_F(DataStoreTest, KeepsWhatIsSavedInAFileThatOtherProgramsCanRead) {
  DataStore store(setup);
  EXPECT_FALSE(fs::exists(folder())) << "made on first use only";
  ManagedObjectContext& context = *store.managedObjectContext();
  EXPECT_TRUE(context.insertObject(kNote));
  EXPECT_TRUE(context.insertObject({"Tag", {}}));
  EXPECT_FALSE(context.insertObject({"Nonsense", {}}));
  EXPECT_TRUE(context.hasChanges() && fs::is_empty(folder()));
  store.saveAction();
  EXPECT_FALSE(context.hasChanges());
  const auto parsed = testing_support::runProgram(
      {"python3", "-c",
       "import sys, xml.dom.minidom as m; d = m.parse(sys.argv[1]);"
       "print(repr(d.getElementsByTagName('attribute')[0].getAttribute('value')))",
       file()});
  EXPECT_EQ(parsed.output, "'a < b & \"c\" \\r\\n\\tcaf\xC3\xA9 \xF0\x9F\x98\x80'\n")
      << parsed.errors;
  DataStore again(setup);
  ASSERT_NE(again.managedObjectContext(), nullptr);
  EXPECT_THAT(again.managedObjectContext()->objects(),
              ElementsAre(kNote, ManagedObject{"Tag", {}}));

  // Undone changes are no changes, unless the file still has what was undone.
  context.deleteObject(kNote);
  context.undoManager().undo();
  EXPECT_FALSE(context.hasChanges());
  context.undoManager().undo();
  EXPECT_TRUE(context.hasChanges());
  context.undoManager().redo();

  // A failed save leaves the file whole: XML has no way to write these.
  const std::string held = contentsOf(file());
  for (const char* text : {"\x01", "\xFF", "\xEF\xBF\xBE", "\xED\xA0\x80"}) {
    context.insertObject({"Tag", {{"text", text}}});
    store.saveAction();
    EXPECT_TRUE(context.hasChanges());
    EXPECT_EQ(contentsOf(file()), held);
    context.undoManager().undo();
  }
  EXPECT_EQ(errors.size(), 4U);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder()), {}), 1);
}

TEST_F(DataStoreTest, SaysOnceWhyThereIsNoStoreAndGoesOnWithout) {
  const std::string general =
      "There was an error creating or loading the application's saved data.";
  const std::string isFile =
      "Expected a folder to store application data, found a file (" + folder() + ").";
  const std::string model = resources.file("Tarnlet.momd");
  struct Case {
    std::string path, contents, reason;
    const char* underlying;
  };
  const Case cases[] = {
      {folder(), "x", isFile, ""},
      {support.file("share"), "x", general, "Not a directory"},
      {model, "", general, ""},
      {model, "<model", general, ""},
      {file(), "", general, "store"},
      {file(), "\x89PNG", general, "store"},
      {file(), "<store model=\"Other\"/>", general, "store"},
      {file(), "<store model=\"Tarnlet\"><object entity=\"Note\">", general, "damaged"},
      {file(), "<store model=\"Tarnlet\"><object entity=\"Odd\"/></store>", general, "damaged"},
      {file(), "<store model=\"Tarnlet\"/><store/>", general, "damaged"},
      {file() + "/a file in a folder", "", general, "cannot be read"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path + c.contents);
    clear();
    fs::create_directories(fs::path(c.path).parent_path());
    writeFile(c.path, c.contents);
    DataStore store(setup);
    EXPECT_EQ(store.managedObjectContext(), nullptr);
    EXPECT_EQ(store.persistentStoreCoordinator(), nullptr);
    store.saveAction();
    EXPECT_EQ(store.applicationShouldTerminate(), TerminateReply::kNow);
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_EQ(errors[0].domain, "YOUR_ERROR_DOMAIN");
    EXPECT_EQ(errors[0].code, 9999);
    EXPECT_EQ(errors[0].failureReason, c.reason);
    EXPECT_THAT(errors[0].underlyingError, HasSubstr(c.underlying));
    EXPECT_EQ(contentsOf(c.path), c.contents);
  }
}

// The answers to the question of whether to go without saving are the delegate's affair.
TEST_F(DataStoreTest, AnEditOrAMendedFaultKeepsTheProgramFromEnding) {
  DataStore store(setup);
  EXPECT_EQ(store.applicationShouldTerminate(), TerminateReply::kNow) << "never used";
  store.managedObjectContext()->insertObject(kNote);
  int asked = 0;
  store.managedObjectContext()->objectDidBeginEditing([&] { return ++asked == 3; });
  EXPECT_EQ(store.applicationShouldTerminate(), TerminateReply::kCancel);
  EXPECT_FALSE(fs::exists(file()));
  // Saving goes on without it.
  store.saveAction();
  EXPECT_FALSE(store.managedObjectContext()->hasChanges());
  EXPECT_THAT(
      log.lines(),
      ElementsAre("AppDelegate:applicationShouldTerminate: unable to commit editing to terminate",
                  "AppDelegate:saveAction: unable to commit editing before saving"));
  for (int i = 0; i < 3; ++i) store.saveAction();
  EXPECT_EQ(asked, 3) << "an edit that was committed is over";
  fs::remove(file());
  blockSaving();
  store.managedObjectContext()->insertObject({"Tag", {}});
  canMend = true;
  EXPECT_EQ(store.applicationShouldTerminate(), TerminateReply::kCancel);
  EXPECT_EQ(errors.size(), 1U);
  EXPECT_TRUE(alerts.shown.empty());
}

}  // namespace
}  // namespace velmara
