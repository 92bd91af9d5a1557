// The catalogue of messages.

#ifndef ZYL_BOOTSTRAP_MESSAGE_CATALOG_H
#define ZYL_BOOTSTRAP_MESSAGE_CATALOG_H

#include <span>

namespace zyl::detail {

struct CatalogRow {
  const char* id;
  /// `%0` and `%1` stand for the arguments. Their numbers are lost when a handler takes the text
  /// over, so no text has `%1` before `%0`.
  const char* text;
};

/// Returns all messages, those that no operation issues any more included: handlers of clients may
/// know them.
std::span<const CatalogRow> catalogRows();

// The identifiers that are issued.
inline constexpr char BOOTSTRAP_BAD_VTQROOT_ENV[] = "BOOTSTRAP_BAD_VTQROOT_ENV";
inline constexpr char BOOTSTRAP_BAD_JAVAHOME[] = "BOOTSTRAP_BAD_JAVAHOME";
inline constexpr char BOOTSTRAP_BAD_JAVAPATH[] = "BOOTSTRAP_BAD_JAVAPATH";
inline constexpr char BOOTSTRAP_BAD_KVLROOT_ENV[] = "BOOTSTRAP_BAD_KVLROOT_ENV";
inline constexpr char BOOTSTRAP_JAVA_CREATED_JVM[] = "BOOTSTRAP_JAVA_CREATED_JVM";
inline constexpr char BOOTSTRAP_JAVA_NO_JVM[] = "BOOTSTRAP_JAVA_NO_JVM";
inline constexpr char BOOTSTRAP_NO_KVLROOT[] = "BOOTSTRAP_NO_KVLROOT";
inline constexpr char BOOTSTRAP_NO_VTQROOT[] = "BOOTSTRAP_NO_VTQROOT";
inline constexpr char BOOTSTRAP_NO_JVM[] = "BOOTSTRAP_NO_JVM";
inline constexpr char BOOTSTRAP_JAVA_ERR_GET_JVM[] = "BOOTSTRAP_JAVA_ERR_GET_JVM";
inline constexpr char BOOTSTRAP_JAVA_ERR_CREATE_JVM[] = "BOOTSTRAP_JAVA_ERR_CREATE_JVM";
inline constexpr char BOOTSTRAP_LAUNCH_ERROR[] = "BOOTSTRAP_LAUNCH_ERROR";

}  // namespace zyl::detail

#endif
