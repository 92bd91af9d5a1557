// Roots of the language's installation and of the decision-support product.

#ifndef ZYL_BOOTSTRAP_KVLVTQ_UTILS_H
#define ZYL_BOOTSTRAP_KVLVTQ_UTILS_H

#include <string>

class ZylKvlMessageHandler;

class KVLVTQUtils {
 public:
  KVLVTQUtils() = delete;

  static bool IsValidKvlRootDir(const char* path);
  static bool IsValidVtqRootDir(const char* path);

  /// Return the root, empty if there is none. The first call searches and warns about bad
  /// overrides.
  static std::string GetKVLRootDirInternal(ZylKvlMessageHandler& handler);
  static std::string GetVTQRootDirInternal(ZylKvlMessageHandler& handler, bool report);

  static std::string ZylKvlGetKVLRootDir(ZylKvlMessageHandler& handler);
  static bool ZylKvlHasValidKVLRoot(ZylKvlMessageHandler& handler);
  static std::string ZylKvlGetVTQRootDir(ZylKvlMessageHandler& handler);
  static bool ZylKvlIsVTQEnabled(ZylKvlMessageHandler& handler);

 private:
  static std::string _kvlRootDir;
  static bool _kvlRootDirInitDone;
  static std::string _vtqRootDir;
  static bool _vtqRootDirInitDone;
};

#endif
