#include "app/data_store/data_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/recorded_log.h"
#include "support/run_program.h"
#include "support/scratch_folder.h"
#include "support/scripted_desktop.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::contentsOf;
using testing_support::runProgram;
using testing_support::ScratchFolder;
using testing_support::ScriptedAlerts;
using testing_support::writeFile;

const ManagedObject kNote{"Note", {{"text", "a < b & \"c\" \r\n\tcaf\xC3\xA9 \xF0\x9F\x98\x80"}}};

class DataStoreTest : public testing::Test {
 protected:
  DataStoreTest() {
    writeFile(resources.file("Tarnlet.momd"),
              "<model name=\"Tarnlet\"><entity name=\"Note\"/><entity name=\"Tag\"/></model>");
    setup.applicationSupportDirectory = support.file("share");
    setup.bundle.resourceFolders = {resources.path().string()};
    setup.alerts = &alerts;
    setup.presentError = [this](const DataStoreError& error) {
      errors.push_back(error);
      return canMend;
    };
  }

  std::string folder() const { return support.file("share/KV.Tarnlet"); }
  std::string file() const { return folder() + "/OSXCoreDataObjC.storedata"; }
  std::string fileContents() const {
    return std::filesystem::is_regular_file(file()) ? contentsOf(file()) : std::string();
  }
  // From now on nothing can be saved.
  void blockSaving() const { std::filesystem::create_directories(file() + "/blocked"); }

  ScratchFolder support;
  ScratchFolder resources;
  ScriptedAlerts alerts;
  DataStoreSetup setup;
  std::vector<DataStoreError> errors;
  bool canMend = false;
  testing_support::RecordedLog log;
};

TEST_F(DataStoreTest, KeepsWhatIsSavedInAFileThatOtherProgramsCanRead) {
  {
    DataStore store(setup);
    EXPECT_FALSE(std::filesystem::exists(folder())) << "made on first use only";
    ManagedObjectContext* context = store.managedObjectContext();
    ASSERT_NE(context, nullptr);
    EXPECT_TRUE(std::filesystem::is_directory(folder()));
    EXPECT_FALSE(std::filesystem::exists(file()));
    EXPECT_TRUE(context->insertObject(kNote));
    EXPECT_TRUE(context->insertObject({"Tag", {}}));
    EXPECT_FALSE(context->insertObject({"Nonsense", {}}));
    EXPECT_TRUE(context->hasChanges());
    store.saveAction();
    EXPECT_FALSE(context->hasChanges());
  }
  const auto parsed =
      runProgram({"python3", "-c",
                  "import sys, xml.dom.minidom as m; d = m.parse(sys.argv[1]);"
                  "print(repr(d.getElementsByTagName('attribute')[0].getAttribute('value')))",
                  file()});
  EXPECT_EQ(parsed.output, "'a < b & \"c\" \\r\\n\\tcaf\xC3\xA9 \xF0\x9F\x98\x80'\n")
      << parsed.errors;
  DataStore again(setup);
  ASSERT_NE(again.managedObjectContext(), nullptr);
  EXPECT_THAT(again.managedObjectContext()->objects(),
              ElementsAre(kNote, ManagedObject{"Tag", {}}));
  EXPECT_TRUE(errors.empty());
}

TEST_F(DataStoreTest, UndoneChangesAreNoChanges) {
  DataStore store(setup);
  ManagedObjectContext& context = *store.managedObjectContext();
  context.insertObject(kNote);
  EXPECT_TRUE(context.save().ok());
  context.deleteObject(kNote);
  EXPECT_TRUE(context.hasChanges());
  context.undoManager().undo();
  EXPECT_FALSE(context.hasChanges());
  context.undoManager().undo();
  EXPECT_TRUE(context.hasChanges()) << "the file still has what was undone";
}

TEST_F(DataStoreTest, SaysOnceWhyThereIsNoStoreAndGoesOnWithout) {
  const std::string general =
      "There was an error creating or loading the application's saved data.";
  const std::string isFile =
      "Expected a folder to store application data, found a file (" + folder() + ").";
  struct Case {
    const char* name;
    std::function<void()> spoil;
    std::string reason;
    const char* underlying;
  };
  const auto put = [this](const char* contents) {
    return [this, contents] {
      std::filesystem::create_directories(folder());
      writeFile(file(), contents);
    };
  };
  const Case cases[] = {
      {"file",
       [&] {
         std::filesystem::create_directories(support.file("share"));
         writeFile(folder(), "x");
       },
       isFile, ""},
      {"no folder can be made", [&] { writeFile(support.file("share"), "x"); }, general,
       "Not a directory"},
      {"no model", [&] { std::filesystem::remove(resources.file("Tarnlet.momd")); }, general, ""},
      {"damaged model", [&] { writeFile(resources.file("Tarnlet.momd"), "<model"); }, general, ""},
      {"empty store", put(""), general, "store"},
      {"no xml", put("\x89PNG"), general, "store"},
      {"another model", put("<store model=\"Other\"/>"), general, "store"},
      {"cut off", put("<store model=\"Tarnlet\"><object entity=\"Note\">"), general, "damaged"},
      {"unknown kind", put("<store model=\"Tarnlet\"><object entity=\"Odd\"/></store>"), general,
       "damaged"},
      {"something after it", put("<store model=\"Tarnlet\"/><store/>"), general, "damaged"},
      {"a folder", [&] { blockSaving(); }, general, "cannot be read"},
  };
  const std::string model = contentsOf(resources.file("Tarnlet.momd"));
  for (const Case& c : cases) {
    std::filesystem::remove_all(support.file("share"));
    writeFile(resources.file("Tarnlet.momd"), model);
    errors.clear();
    c.spoil();
    const std::string held = fileContents();
    DataStore store(setup);
    EXPECT_EQ(store.managedObjectContext(), nullptr) << c.name;
    EXPECT_EQ(store.persistentStoreCoordinator(), nullptr) << c.name;
    store.saveAction();
    EXPECT_EQ(store.applicationShouldTerminate(), TerminateReply::kNow) << c.name;
    ASSERT_EQ(errors.size(), 1U) << c.name;
    EXPECT_EQ(errors[0].domain, "YOUR_ERROR_DOMAIN");
    EXPECT_EQ(errors[0].code, 9999);
    EXPECT_EQ(errors[0].description, "Failed to initialize the application's saved data");
    EXPECT_EQ(errors[0].failureReason, c.reason) << c.name;
    EXPECT_THAT(errors[0].underlyingError, HasSubstr(c.underlying)) << c.name;
    EXPECT_EQ(fileContents(), held) << c.name;
  }
}

TEST_F(DataStoreTest, AFailedSaveLeavesTheFileWhole) {
  DataStore store(setup);
  ManagedObjectContext& context = *store.managedObjectContext();
  context.insertObject(kNote);
  store.saveAction();
  const std::string held = contentsOf(file());
  // XML has no way to write these.
  for (const char* text : {"\x01", "\xFF", "\xEF\xBF\xBE", "\xED\xA0\x80"}) {
    context.insertObject({"Tag", {{"text", text}}});
    store.saveAction();
    EXPECT_TRUE(context.hasChanges());
    EXPECT_EQ(contentsOf(file()), held);
    context.undoManager().undo();
  }
  EXPECT_EQ(errors.size(), 4U);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder()), {}), 1);
}

TEST_F(DataStoreTest, AnswersWhetherTheProgramMayEnd) {
  enum class Store { kUnused, kUnchanged, kChanged, kEditing, kFailing, kMended };
  struct Case {
    const char* name;
    Store store;
    int answer;
    TerminateReply reply;
    std::size_t questions;
  };
  const Case cases[] = {
      {"never used", Store::kUnused, 0, TerminateReply::kNow, 0},
      {"nothing changed", Store::kUnchanged, 0, TerminateReply::kNow, 0},
      {"saved", Store::kChanged, 0, TerminateReply::kNow, 0},
      {"an edit that cannot be committed", Store::kEditing, 0, TerminateReply::kCancel, 0},
      {"Quit anyway goes on", Store::kFailing, 0, TerminateReply::kCancel, 1},
      {"Cancel ends", Store::kFailing, 1, TerminateReply::kNow, 1},
      {"mended", Store::kMended, 0, TerminateReply::kCancel, 0},
  };
  for (const Case& c : cases) {
    std::filesystem::remove_all(support.file("share"));
    errors.clear();
    alerts.shown.clear();
    log.clear();
    alerts.answers = {c.answer};
    canMend = c.store == Store::kMended;
    DataStore store(setup);
    if (c.store != Store::kUnused) store.managedObjectContext();
    const bool fails = c.store == Store::kFailing || c.store == Store::kMended;
    if (fails || c.store == Store::kChanged) store.managedObjectContext()->insertObject(kNote);
    if (c.store == Store::kEditing) {
      store.managedObjectContext()->objectDidBeginEditing([] { return false; });
    }
    if (fails) blockSaving();
    EXPECT_EQ(store.applicationShouldTerminate(), c.reply) << c.name;
    EXPECT_EQ(alerts.shown.size(), c.questions) << c.name;
    EXPECT_EQ(errors.size(), fails ? 1U : 0U) << c.name;
    EXPECT_EQ(std::filesystem::is_regular_file(file()), c.store == Store::kChanged) << c.name;
    if (c.questions > 0) {
      EXPECT_EQ(alerts.shown[0].messageText, "Could not save changes while quitting. Quit anyway?");
      EXPECT_EQ(alerts.shown[0].informativeText,
                "Quitting now will lose any changes you have made since the last successful save");
      EXPECT_THAT(alerts.shown[0].buttons, ElementsAre("Quit anyway", "Cancel"));
    }
    if (c.store == Store::kEditing) {
      EXPECT_THAT(log.lines(),
                  ElementsAre("AppDelegate:applicationShouldTerminate: unable to commit "
                              "editing to terminate"));
    }
  }
}

TEST_F(DataStoreTest, SavesEvenWhenAnEditCannotBeCommitted) {
  DataStore store(setup);
  ManagedObjectContext& context = *store.managedObjectContext();
  bool canCommit = false;
  int asked = 0;
  context.objectDidBeginEditing([&] {
    ++asked;
    return canCommit;
  });
  context.insertObject(kNote);
  store.saveAction();
  EXPECT_THAT(log.lines(),
              ElementsAre("AppDelegate:saveAction: unable to commit editing before saving"));
  EXPECT_FALSE(context.hasChanges());
  canCommit = true;
  store.saveAction();
  store.saveAction();
  EXPECT_EQ(asked, 2) << "a committed edit is over";
}

}  // namespace
}  // namespace velmara
