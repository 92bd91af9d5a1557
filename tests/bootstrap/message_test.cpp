#include "vorlane/bootstrap/message_handler.h"

#include <gtest/gtest.h>

#include <iostream>
#include <stdexcept>
#include <string>

#include "bootstrap/child.h"
#include "vorlane/bootstrap/logger.h"

using zyl::test::inChild;

namespace {

TEST(MessageCatalog, HasAllTexts) {
  ZylKvlDefaultMessageHandler handler;
  std::string texts;
  for (const auto& [id, text] : handler.getMessageCatalog()) {
    texts += id + ": " + handler.localize(id.c_str(), "<0>", "<1>") + "\n";
  }
  EXPECT_EQ(texts, zyl::test::readFile(MESSAGES_FILE));
  EXPECT_EQ(handler.getMessageCatalog()["BOOTSTRAP_LAUNCH_ERROR"], "Error launching %s: %s");
}

TEST(MessageCatalog, FixesPlaceHolders) {
  const char* rows[][2] = {{"", ""},       {"%", "%"},         {"100%", "100%"},
                           {"%0", "%s"},   {"%1-%0", "%s-%s"}, {"%2 %% %", "%2 %% %"},
                           {"%%0", "%%s"}, {"%01", "%s1"}};
  for (const auto& row : rows) {
    EXPECT_EQ(ZylKvlDefaultMessageHandler::fixPlaceHolders(row[0]), row[1]);
  }
}

TEST(Localize, TakesTextsAndArgumentsOfAnyKind) {
  ZylKvlDefaultMessageHandler handler;
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(handler.localize("FOO", "a", nullptr), "FOO (a;)");
    EXPECT_EQ(handler.getMessageCatalog().at("FOO"), "");
  }
  EXPECT_EQ(handler.localize(nullptr, "%s", "%n"), " (%s;%n)");
  EXPECT_EQ(handler.localize("BOOTSTRAP_LAUNCH_ERROR", nullptr, nullptr), "Error launching : ");
  EXPECT_EQ(handler.localize("BOOTSTRAP_LAUNCH_ERROR", "%s%d", "%n"), "Error launching %s%d: %n");

  const char* rows[][2] = {
      {"%s %s %s %n", "A B %s %n"}, {"%d%5s%", "%d%5s%"}, {"100%% %s", "100% A"}};
  for (const auto& row : rows) {
    handler.getMessageCatalog()["BAR"] = row[0];
    EXPECT_EQ(handler.localize("BAR", "A", "B"), row[1]);
  }
  // Filled once, so that a text of the client's own stays, in this handler.
  handler.getMessageCatalog()["BOOTSTRAP_JAVA_NO_JVM"] = "own";
  EXPECT_EQ(handler.localize("BOOTSTRAP_JAVA_NO_JVM", nullptr, nullptr), "own");
  EXPECT_NE(ZylKvlDefaultMessageHandler().getMessageCatalog()["BOOTSTRAP_JAVA_NO_JVM"], "own");
  const std::string longText(1 << 20, 'x');
  EXPECT_EQ(handler.localize("BOOTSTRAP_JAVA_ERR_GET_JVM", longText.c_str(), nullptr),
            ("Error loading a Java Runtime Environment: " + longText).substr(0, 10239));
  EXPECT_EQ(handler.localize("FOO", longText.c_str(), "b").size(), 10239u);
}

TEST(DefaultMessageHandler, WritesAndKeepsEachLine) {
  const zyl::test::Outcome outcome = inChild({}, [] {
    ZylKvlDefaultMessageHandler handler;
    handler.info("I", "a", "b");
    handler.warning("W", nullptr, nullptr);
    handler.error("BOOTSTRAP_JAVA_NO_JVM", nullptr, nullptr);
    try {
      handler.fatal("BOOTSTRAP_NO_JVM", nullptr, nullptr);
      ADD_FAILURE() << "fatal returned";
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "FATAL:No JVM running, see previous messages");
    }
    std::string kept;
    for (const std::string& line : handler.getReportedMessages()) kept += line + "\n";
    std::cout << kept;

    ZylKvlNullMessageHandler silent;
    silent.info("I", nullptr, nullptr);
    silent.warning("I", nullptr, nullptr);
    silent.error("I", nullptr, nullptr);
    silent.fatal("I", nullptr, nullptr);
  });
  EXPECT_EQ(outcome.err,
            "INFO: I (a;b)\nWARNING: W (;)\n"
            "ERROR: Can't find/create a valid Java Runtime Environment.\n"
            "FATAL: No JVM running, see previous messages\n");
  EXPECT_EQ(outcome.out, outcome.err);
}

TEST(TraceLog, IndentsBetweenEntryAndExit) {
  const zyl::test::Outcome outcome = inChild({}, [] {
    {
      const TraceMethod silent("silent", "a", "b");
      ZylKvlLogger::_enabled = true;  // its exit is logged, at the indent that there is
    }
    try {
      const TraceMethod outer("outer");
      const TraceMethod inner("inner", "a");
      ZylKvlLogger::log("1", nullptr, "3", "4", "5");
      const TraceMethod innermost("innermost", "a", "b");
      throw 1;
    } catch (int) {
    }
    ZylKvlDefaultMessageHandler().localize("FOO", nullptr, nullptr);
    const TraceMethod unfinished("unfinished", nullptr, "b");
    ZylKvlLogger::_enabled = false;
    const TraceMethod silent("silent");
  });
  EXPECT_EQ(outcome.err,
            "Exiting method\n"
            "Entering outer\n"
            "--Entering inner with a\n"
            "----1345\n"
            "----Entering innermost with a;b\n"
            "----Exiting method\n"
            "--Exiting method\n"
            "Exiting method\n"
            "Message ID:FOO not found in messages catalog\n"
            "Entering unfinished;b\n");
}

}  // namespace
