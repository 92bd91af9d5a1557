// Who hears what the bootstrap has to say.

#ifndef ZYL_BOOTSTRAP_MESSAGE_HANDLER_H
#define ZYL_BOOTSTRAP_MESSAGE_HANDLER_H

#include <list>
#include <map>
#include <string>

#include "vorlane/env/export.h"

/// Receives the bootstrap's messages: an identifier of the catalogue and up to two arguments, both
/// of which may be null.
///
/// `fatal` may return or throw; whoever calls it must be right in both cases.
class ZYL_EXPORT ZylKvlMessageHandler {
 public:
  virtual ~ZylKvlMessageHandler();
  virtual void info(const char* id, const char* arg0, const char* arg1) = 0;
  virtual void warning(const char* id, const char* arg0, const char* arg1) = 0;
  virtual void error(const char* id, const char* arg0, const char* arg1) = 0;
  virtual void fatal(const char* id, const char* arg0, const char* arg1) = 0;

 protected:
  ZylKvlMessageHandler() = default;
  ZylKvlMessageHandler(const ZylKvlMessageHandler&) = default;
  ZylKvlMessageHandler& operator=(const ZylKvlMessageHandler&) = default;
};

/// Says nothing at all. Its `fatal` returns.
class ZYL_EXPORT ZylKvlNullMessageHandler : public ZylKvlMessageHandler {
 public:
  ~ZylKvlNullMessageHandler() override;
  void info(const char* id, const char* arg0, const char* arg1) override;
  void warning(const char* id, const char* arg0, const char* arg1) override;
  void error(const char* id, const char* arg0, const char* arg1) override;
  void fatal(const char* id, const char* arg0, const char* arg1) override;
};

/// Writes each message to the standard error stream and keeps it.
///
/// The catalogue is filled on first use and belongs to the handler.
class ZYL_EXPORT ZylKvlDefaultMessageHandler : public ZylKvlMessageHandler {
 public:
  ZylKvlDefaultMessageHandler();
  ~ZylKvlDefaultMessageHandler() override;

  void info(const char* id, const char* arg0, const char* arg1) override;
  void warning(const char* id, const char* arg0, const char* arg1) override;
  void error(const char* id, const char* arg0, const char* arg1) override;
  /// Reports, then throws `std::runtime_error` with "FATAL:" and the text. Never returns.
  void fatal(const char* id, const char* arg0, const char* arg1) override;
  /// Writes severity, ": " and text as one line, and keeps that line. The one operation to
  /// override in order to show messages elsewhere.
  virtual void report(const char* severity, const char* text);

  /// Returns the finished text of a message, cut to 10239 bytes.
  ///
  /// The arguments take the place of the first two "%s" of the text, in order, a null one as
  /// nothing; "%%" becomes "%", and any other "%" stands for itself. An identifier that the
  /// catalogue does not know is entered with an empty text and gives "id (arg0;arg1)".
  std::string localize(const char* id, const char* arg0, const char* arg1);

  /// Returns the catalogue, identifier to text with "%s" for each placeholder. The caller may
  /// change texts; what they hold beyond "%s" is never taken as a format.
  std::map<std::string, std::string>& getMessageCatalog();
  /// Returns `text` with "%s" in place of each "%0" and "%1".
  static std::string fixPlaceHolders(std::string text);
  /// Returns the lines reported so far, in order.
  std::list<std::string>& getReportedMessages();

 private:
  bool _catalogLoaded = false;
  std::map<std::string, std::string> _catalog;
  std::list<std::string> _reportedMessages;
};

#endif
